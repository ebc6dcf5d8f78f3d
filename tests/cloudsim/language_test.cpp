#include "cloudserver.h"
#include "device.h"
#include "phrasebook.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <functional>

namespace {

class Languages : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        german.setLocale("de-DE");
        ASSERT_TRUE(german.authenticate());
        ASSERT_TRUE(english.authenticate());
    }

    cloudsim::CloudServer cloud;
    Device german{cloud, "AA:00:00:00:00:01"};
    Device english{cloud, "AA:00:00:00:00:02"};
};

TEST_F(Languages, anyLocaleOfGermanIsGermanAndAllOthersEnglish)
{
    for (char const* locale : {"de", "de-AT", "de_DE", "DE-ch"}) {
        Device device(cloud, "AA:00:00:00:00:03");
        device.setLocale(locale);
        ASSERT_TRUE(device.authenticate()) << locale;
        EXPECT_EQ(device.get("/").string("/title"), "Musikdienste") << locale;
    }
    for (char const* locale : {"en-GB", "fr-FR", "deu", ""}) {
        Device device(cloud, "AA:00:00:00:00:03");
        device.setLocale(locale);
        ASSERT_TRUE(device.authenticate()) << locale;
        EXPECT_EQ(device.get("/").string("/title"), "Music services") << locale;
    }
}

TEST_F(Languages, theCataloguesContentKeepsItsOwnWords)
{
    Device::Reply const radio = german.get("/airable/radios/r1001");
    Device::Reply const same = english.get("/airable/radios/r1001");
    ASSERT_FALSE(radio.string("/title").empty());
    for (char const* pointer : {"/title", "/description", "/slogan", "/place/title"})
        EXPECT_EQ(radio.string(pointer), same.string(pointer)) << pointer;
    EXPECT_EQ(radio.string("/actions/0/title"), "Zu Favoriten hinzufügen") << "an action is the cloud's own";

    // A text the cloud fills in with a title: the title stays as it is.
    EXPECT_EQ(german.get("/airable/actions/favorite.add?radio=r1001").string("/message"),
              "„" + radio.string("/title") + "“ ist jetzt in Ihren Favoriten.");

    EXPECT_EQ(german.get("/images/r1001.svg").body, english.get("/images/r1001.svg").body);
    EXPECT_EQ(german.get("/airable/radios/r1001/streams/1").body, english.get("/airable/radios/r1001/streams/1").body)
        << "no text of the cloud's own: the answer as it was";
}

TEST_F(Languages, onlyTheCloudsOwnTextsAreTranslated)
{
    cloudsim::Phrasebook phrasebook;
    QString error;
    ASSERT_TRUE(phrasebook.load(":/cloudsim/languages", &error)) << error.toStdString();
    cloudsim::Answer answer{200, R"({"id":["x","album","a"],"title":"Stop","description":"Cancel",)"
                                 R"("actions":[{"id":["x","button","b"],"title":"Stop","url":"Stop"}]})"};
    phrasebook.translate("de-DE", &answer);
    EXPECT_EQ(answer.body, R"({"id":["x","album","a"],"title":"Stop","description":"Cancel",)"
                           R"("actions":[{"id":["x","button","b"],"title":"Beenden","url":"Stop"}]})");

    cloudsim::Answer page{200, R"({"title":"Stop"})", "text/html"};
    phrasebook.translate("de-DE", &page);
    EXPECT_EQ(page.body, R"({"title":"Stop"})");
}

// A form, message or error added to the catalogue needs its German too.
TEST_F(Languages, everyTextOfTheCataloguesFormsMessagesAndErrorsHasItsGerman)
{
    cloudsim::Phrasebook phrasebook;
    QString error;
    ASSERT_TRUE(phrasebook.load(":/cloudsim/languages", &error)) << error.toStdString();
    QStringList missing;
    int checked = 0;
    auto const check = [&](rapidjson::Value const& text) {
        ++checked;
        if (!phrasebook.knows("de", text.GetString()))
            missing << text.GetString();
    };
    std::function<void(rapidjson::Value const&, bool)> walk = [&](rapidjson::Value const& v, bool own) {
        if (v.IsArray()) {
            for (auto const& element : v.GetArray())
                walk(element, own);
            return;
        }
        if (!v.IsObject())
            return;
        auto const id = v.FindMember("id");
        if (id != v.MemberEnd() && id->value.IsArray() && id->value.Size() > 1 && id->value[1].IsString())
            own = QStringList{"form", "field", "button", "message", "error"}.contains(id->value[1].GetString());
        for (auto const& m : v.GetObject()) {
            bool const text = m.name == "title" || m.name == "description" || m.name == "message";
            if (own && text && m.value.IsString()) {
                check(m.value);
            } else if (own && m.name == "options" && m.value.IsObject()) {
                for (auto const& option : m.value.GetObject()) {
                    if (option.value.IsString())
                        check(option.value);
                }
            } else {
                walk(m.value, own);
            }
        }
    };
    QDir const data(":/cloudsim/data");
    for (QString const& name : data.entryList({"*.json"})) {
        QFile file(data.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        QByteArray const bytes = file.readAll();
        rapidjson::Document document;
        document.Parse(bytes.constData(), bytes.size());
        ASSERT_FALSE(document.HasParseError()) << name.toStdString();
        walk(document, false);
    }
    EXPECT_GT(checked, 50) << "the catalogue's forms, messages and errors were all seen";
    EXPECT_TRUE(missing.isEmpty()) << missing.join(" | ").toStdString();
}

} // namespace
