#include "../translations/catalogue.h"
#include "sharedcloud.h"
#include "testprograms.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>

namespace {

// The English texts a person could be shown: the module's (its catalogue's
// sources) and the simulated cloud's own (what its German table translates).
QStringList englishTexts()
{
    QStringList texts;
    Catalogue catalogue;
    QString error;
    if (readCatalogue(QStringLiteral(TARN_SOURCE_DIR "/translations/tarn_cb_airable.ts"), &catalogue, &error)) {
        for (auto const& entry : catalogue.entries)
            texts << entry.source;
    }
    QFile cloud(QStringLiteral(TARN_SOURCE_DIR "/tools/cloudsim/languages/de.json"));
    if (cloud.open(QIODevice::ReadOnly)) {
        QJsonObject const table = QJsonDocument::fromJson(cloud.readAll()).object();
        for (auto it = table.begin(); it != table.end(); ++it) {
            if (it.value().toString() != it.key())
                texts << it.key();
        }
    }
    texts.removeDuplicates();
    return texts;
}

void collectStrings(QJsonValue const& value, QStringList* strings)
{
    if (value.isString()) {
        *strings << value.toString();
    } else if (value.isArray()) {
        for (auto const& v : value.toArray())
            collectStrings(v, strings);
    } else if (value.isObject()) {
        QJsonObject const object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it)
            collectStrings(it.value(), strings);
    }
}

// A text of the output is English when it is one of the English texts, or
// holds one that is long enough not to be part of a German word.
QStringList englishIn(QList<QJsonObject> const& output, QStringList const& english)
{
    QStringList strings;
    for (auto const& object : output)
        collectStrings(object, &strings);
    QStringList found;
    for (QString const& s : strings) {
        for (QString const& e : english) {
            if (s == e || (e.size() >= 12 && s.contains(e)))
                found << s;
        }
    }
    found.removeDuplicates();
    return found;
}

class CliLanguage : public SharedCloud
{
protected:
    void SetUp() override
    {
        SharedCloud::SetUp();
        if (!QFileInfo::exists(QStringLiteral(TARN_GERMAN_CATALOGUE)))
            GTEST_SKIP() << "built without lrelease: no " TARN_GERMAN_CATALOGUE;
        english = englishTexts();
        ASSERT_GT(english.size(), 40);
    }

    HostRun german(QByteArray const& commands) const { return host({"--language", "de_DE", "--json", "shell"}, commands); }

    QStringList english;
};

} // namespace

TEST_F(CliLanguage, aGermanSessionShowsNoEnglishTextOfTheModuleOrTheCloud)
{
    cloud->setFault("/airable/radios/r1001/streams/*", cloudsim::Fault::status(503));
    logIn("deezer", "me@example.com");
    QByteArray const skips = QByteArray("player next\n").repeated(7);
    HostRun const run = german("play /airable/radios/r1001\n"
                               "ls /deezer\n"
                               "play 0 --tracks 1\n"
                               + skips + "player stop\n");
    QList<QJsonObject> const out = run.objects();
    ASSERT_GE(out.size(), 10) << run.out.toStdString();
    EXPECT_EQ(englishIn(out, english), QStringList()) << run.out.toStdString();

    QString const& all = run.out;
    for (QString const text : {"Der Titel konnte nicht vom Server abgerufen werden", "Abonnieren"})
        EXPECT_TRUE(all.contains(text)) << text.toStdString() << "\n" << run.out.toStdString();
}

TEST_F(CliLanguage, aGermanLoginWithAWrongPasswordIsGermanThroughout)
{
    HostRun const run = german("ls /deezer\n"
                               "set 0 value '\"me@example.com\"'\n"
                               "set 1 value '\"not-the-password\"'\n"
                               "set 3 activate true\n"
                               "set 1 activate true\n");
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 5) << run.out.toStdString();
    EXPECT_EQ(dialogOf(out[0]).value("kind").toString(), "form");
    EXPECT_EQ(dialogOf(out[3].value("listing").toObject()).value("kind").toString(), "message")
        << run.out.toStdString();
    EXPECT_EQ(englishIn(out, english), QStringList()) << run.out.toStdString();

    // A required field left empty is refused by the module, in German.
    HostRun const empty = german("ls /deezer\nset 1 value '\"secret\"'\nset 3 activate true\n");
    QString const message = empty.objects().value(2).value("error").toObject().value("message").toString();
    EXPECT_TRUE(message.startsWith("Die Eingaben sind ungültig!")) << message.toStdString();
}
