#include "catalogue.h"
#include "cmroot.h"
#include "moduletranslator.h"
#include "patience.h"
#include "tarnconstants.h"
#include "testprograms.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <gtest/gtest.h>

// The module's translation catalogue is made from what the module shows: every
// test program leaves behind the translatable texts it turned into strings,
// each with the context the module gave it (the signature of the function
// that raised it). These tests run after all the others and hold the
// catalogue to that. With TARN_UPDATE_TRANSLATIONS=1 they write it instead:
// the template anew, and each language with its translations kept, new texts
// left to translate and dropped ones gone.

namespace {

QString const kSources = QStringLiteral(TARN_SOURCE_DIR "/src/modules/airable");
QString const kTranslations = QStringLiteral(TARN_SOURCE_DIR "/translations");
QString const kTemplate = kTranslations + QStringLiteral("/tarn_cb_airable.ts");

QString languageFile(QString const& language)
{
    return kTranslations + QStringLiteral("/tarn_cb_airable_%1.ts").arg(language);
}

// The languages the module ships: one catalogue each beside the template.
QStringList languages()
{
    QStringList found;
    for (QString const& name : QDir(kTranslations).entryList({QStringLiteral("tarn_cb_airable_*.ts")}, QDir::Files))
        found << name.mid(int(qstrlen("tarn_cb_airable_"))).chopped(3);
    return found;
}

QString moduleSource()
{
    QString all;
    QDirIterator it(kSources, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            all += QString::fromUtf8(file.readAll());
    }
    return all;
}

QString unescaped(QString text)
{
    return text.replace(QLatin1String("\\\""), QLatin1String("\"")).replace(QLatin1String("\\\\"), QLatin1String("\\"));
}

// The texts the module's code hands to a translatable string as literals.
QSet<QString> literalTexts(QString const& source)
{
    static QRegularExpression const call(
        QStringLiteral(R"re((?:translatedError\(\s*\w+\s*,|TrCharData\(\s*[^,()]+(?:\([^()]*\))?\s*,)\s*)re"
                       R"re(QStringLiteral\("((?:[^"\\]|\\.)*)"\))re"));
    QSet<QString> texts;
    for (auto it = call.globalMatch(source); it.hasNext();)
        texts.insert(unescaped(it.next().captured(1)));
    return texts;
}

// A context belongs to the module when it names one of the module's classes,
// or the module's own context for the texts of its forms.
bool isModuleContext(QString const& context, QSet<QString> const& classes)
{
    return classes.contains(context.section(QLatin1String("::"), 0, 0).section(QLatin1Char('('), 0, 0));
}

QSet<QString> moduleClasses(QString const& source)
{
    static QRegularExpression const declaration(QStringLiteral(R"(\b(?:class|struct)\s+(\w+)\s*(?:final\s*)?[:{])"));
    QSet<QString> classes{QStringLiteral("airable")};
    for (auto it = declaration.globalMatch(source); it.hasNext();)
        classes.insert(it.next().captured(1));
    return classes;
}

// What the test programs made the module show: key to whether a count came
// with it.
QMap<QString, bool> shownTexts(QSet<QString> const& classes, QStringList* programs)
{
    QMap<QString, bool> shown;
    QDir const dir(QStringLiteral(TARN_SHOWN_TEXTS_DIR));
    for (QString const& name : dir.entryList({QStringLiteral("*.txt")}, QDir::Files)) {
        *programs << name;
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (QByteArray const& line : file.readAll().split('\n')) {
            QStringList const fields = QString::fromUtf8(line).split(QLatin1Char('\t'));
            if (fields.size() < 2 || !isModuleContext(fields.at(0), classes))
                continue;
            bool& numerus = shown[fields.at(0) + QLatin1Char('\t') + fields.at(1)];
            numerus = numerus || fields.size() > 2;
        }
    }
    return shown;
}

QStringList placeholders(QString const& text)
{
    static QRegularExpression const marker(QStringLiteral("%(?:n|L?\\d+)"));
    QStringList found;
    for (auto it = marker.globalMatch(text); it.hasNext();)
        found << it.next().captured();
    std::sort(found.begin(), found.end());
    return found;
}

class TranslationCatalogue : public ::testing::Test
{
protected:
    void SetUp() override
    {
        source = moduleSource();
        ASSERT_FALSE(source.isEmpty()) << "no module sources in " << kSources.toStdString();
        classes = moduleClasses(source);
        shown = shownTexts(classes, &programs);
        ASSERT_FALSE(programs.isEmpty()) << "no test program has left its shown texts in " TARN_SHOWN_TEXTS_DIR;
        QString error;
        ASSERT_TRUE(readCatalogue(kTemplate, &catalogue, &error)) << error.toStdString();
    }

    bool inSource(QString const& text) const
    {
        QString const quoted = QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QLatin1String("\\\"")) + QLatin1Char('"');
        return source.contains(quoted);
    }

    QString source;
    QSet<QString> classes;
    QStringList programs;
    QMap<QString, bool> shown;
    Catalogue catalogue;
};

} // namespace

TEST_F(TranslationCatalogue, holdsEveryTextTheModuleShowedUnderItsContext)
{
    if (qEnvironmentVariableIntValue("TARN_UPDATE_TRANSLATIONS"))
        GTEST_SKIP() << "writing the catalogue";
    for (auto it = shown.cbegin(); it != shown.cend(); ++it) {
        CatalogueEntry const* entry = catalogue.find(it.key());
        EXPECT_TRUE(entry) << "shown but not in the catalogue: " << it.key().toStdString()
                           << "\n(TARN_UPDATE_TRANSLATIONS=1 build/bin/translations_test writes it)";
        if (entry) {
            EXPECT_EQ(entry->numerus, it.value()) << it.key().toStdString();
        }
    }
}

TEST_F(TranslationCatalogue, holdsOnlyTextsTheModuleStillHasAndEveryOneItHandsOver)
{
    if (qEnvironmentVariableIntValue("TARN_UPDATE_TRANSLATIONS"))
        GTEST_SKIP() << "writing the catalogue";
    QSet<QString> sources;
    for (auto const& e : catalogue.entries) {
        sources.insert(e.source);
        EXPECT_TRUE(inSource(e.source)) << "no longer in the module: " << e.key().toStdString();
        EXPECT_TRUE(isModuleContext(e.context, classes)) << e.key().toStdString();
    }
    // Texts the play logic hands only to itself or to the streamer, which
    // the retrievers' own checks keep from any client: no test can show
    // them, so they have no context to be translated under.
    QSet<QString> const unseen{QStringLiteral("Not supported"), QStringLiteral("Empty next track url"),
                               QStringLiteral("Failed to get track"), QStringLiteral("Track is not playable")};
    for (QString const& text : literalTexts(source)) {
        EXPECT_TRUE(sources.contains(text) || unseen.contains(text))
            << "translatable, but no test shows it: " << text.toStdString();
        EXPECT_FALSE(sources.contains(text) && unseen.contains(text)) << "shown now: " << text.toStdString();
    }
}

TEST_F(TranslationCatalogue, everyLanguageTranslatesEveryEntryWithItsPlaceholders)
{
    if (qEnvironmentVariableIntValue("TARN_UPDATE_TRANSLATIONS"))
        GTEST_SKIP() << "writing the catalogue";
    ASSERT_TRUE(languages().contains(QStringLiteral("de")));
    for (QString const& language : languages()) {
        SCOPED_TRACE(language.toStdString());
        Catalogue translated;
        QString error;
        ASSERT_TRUE(readCatalogue(languageFile(language), &translated, &error)) << error.toStdString();
        EXPECT_EQ(translated.entries.size(), catalogue.entries.size());
        for (auto const& e : catalogue.entries) {
            CatalogueEntry const* t = translated.find(e.key());
            ASSERT_TRUE(t) << "missing: " << e.key().toStdString();
            EXPECT_TRUE(t->finished && !t->translations.isEmpty()) << "untranslated: " << e.key().toStdString();
            EXPECT_EQ(t->numerus, e.numerus) << e.key().toStdString();
            for (QString const& text : t->translations)
                EXPECT_EQ(placeholders(text), placeholders(e.source)) << e.key().toStdString();
        }
    }
}

// Not a check: the road by which the catalogue is made.
TEST_F(TranslationCatalogue, write)
{
    if (!qEnvironmentVariableIntValue("TARN_UPDATE_TRANSLATIONS"))
        GTEST_SKIP() << "TARN_UPDATE_TRANSLATIONS=1 writes the catalogue";
    // Texts no test showed this time stay while the module still has them.
    Catalogue made;
    QSet<QString> keys;
    for (auto it = shown.cbegin(); it != shown.cend(); ++it) {
        QStringList const key = it.key().split(QLatin1Char('\t'));
        made.entries << CatalogueEntry{key.at(0), key.at(1), it.value(), {}, false};
        keys.insert(it.key());
    }
    for (auto const& e : catalogue.entries) {
        if (!keys.contains(e.key()) && inSource(e.source))
            made.entries << CatalogueEntry{e.context, e.source, e.numerus, {}, false};
    }
    made.sort();
    ASSERT_TRUE(writeCatalogue(kTemplate, made));
    for (QString const& language : languages()) {
        Catalogue old;
        QString error;
        readCatalogue(languageFile(language), &old, &error);
        Catalogue updated{old.language.isEmpty() ? language : old.language, made.entries};
        for (auto& e : updated.entries) {
            if (CatalogueEntry const* t = old.find(e.key())) {
                e.translations = t->translations;
                e.finished = t->finished;
            }
        }
        ASSERT_TRUE(writeCatalogue(languageFile(language), updated));
    }
}

namespace {

void setLanguage(QString const& language)
{
    CMRootWorker::instance()->putValue(TarnUILanguagePath(), TarnValue().setString_(language));
}

// The platform's watchers hear of a value on the next turn of the event loop.
bool settles(std::function<bool()> const& done)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < kPatienceMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    return done();
}

} // namespace

TEST(ModuleTranslator, showsTheModulesTextsInTheUiLanguageAndFollowsItsChanges)
{
    QString const german = QStringLiteral(TARN_GERMAN_CATALOGUE);
    if (!QFileInfo::exists(german))
        GTEST_SKIP() << "built without lrelease: no " << german.toStdString();
    Catalogue catalogue;
    QString error;
    ASSERT_TRUE(readCatalogue(languageFile(QStringLiteral("de")), &catalogue, &error)) << error.toStdString();
    ASSERT_FALSE(catalogue.entries.isEmpty());
    CatalogueEntry const entry = catalogue.entries.first();
    auto shown = [&entry] {
        return QCoreApplication::translate(entry.context.toUtf8().constData(), entry.source.toUtf8().constData());
    };

    setLanguage(QStringLiteral("de_DE"));
    ModuleTranslator const translator(QStringLiteral(TARN_MODULE_FILE));
    ASSERT_TRUE(settles([&] { return shown() == entry.translations.value(0); })) << shown().toStdString();
    EXPECT_EQ(translator.catalogueFile(), german);

    // A device set to a language the module has no catalogue for shows the
    // module's own texts; a country without one of its own takes its
    // language's.
    setLanguage(QStringLiteral("fr_FR"));
    ASSERT_TRUE(settles([&] { return shown() == entry.source; })) << shown().toStdString();
    EXPECT_TRUE(translator.catalogueFile().isEmpty());
    setLanguage(QStringLiteral("de_AT"));
    EXPECT_TRUE(settles([&] { return shown() == entry.translations.value(0); })) << shown().toStdString();
    setLanguage(QStringLiteral("en_US"));
    EXPECT_TRUE(settles([&] { return shown() == entry.source; })) << shown().toStdString();
}
