#include "phrasebook.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <functional>

namespace cloudsim {

namespace {

QRegularExpression const& placeholder()
{
    static QRegularExpression const p(QStringLiteral("%(\\d)"));
    return p;
}

// The members that hold what a person reads; ids, URLs, codec names and
// the like are left alone.
bool isText(rapidjson::Value const& name)
{
    return name == "title" || name == "description" || name == "message";
}

// The catalogue's content keeps its own words in every language: a station
// or an album is called what its makers call it.
bool isContent(rapidjson::Value const& object)
{
    static QSet<QString> const kinds{"radio",  "radio.stream", "stream",   "feed",    "feed.episode", "feed.stream",
                                     "track",  "album",        "artist",   "playlist", "program",     "place"};
    auto const id = object.FindMember("id");
    if (id == object.MemberEnd() || !id->value.IsArray() || id->value.Size() < 2 || !id->value[1].IsString())
        return false;
    return kinds.contains(QString::fromUtf8(id->value[1].GetString(), id->value[1].GetStringLength()));
}

// Fills each "%N" of a translation in one pass, so that a part that itself
// holds "%1" stays as it is.
QString filledIn(QString const& translation, QHash<int, QString> const& parts)
{
    QString result;
    int from = 0;
    auto matches = placeholder().globalMatch(translation);
    while (matches.hasNext()) {
        QRegularExpressionMatch const m = matches.next();
        result += translation.midRef(from, m.capturedStart() - from);
        int const number = m.captured(1).toInt();
        result += parts.contains(number) ? parts.value(number) : m.captured();
        from = m.capturedEnd();
    }
    return result + translation.midRef(from);
}

} // namespace

bool Phrasebook::Language::lookUp(QString const& english, QString* translation) const
{
    auto const found = texts.constFind(english);
    if (found != texts.constEnd()) {
        *translation = *found;
        return true;
    }
    for (Pattern const& p : patterns) {
        QRegularExpressionMatch const m = p.english.match(english);
        if (!m.hasMatch())
            continue;
        QHash<int, QString> parts;
        for (int i = 0; i < p.numbers.size(); ++i)
            parts.insert(p.numbers[i], m.captured(i + 1));
        *translation = filledIn(p.translation, parts);
        return true;
    }
    return false;
}

bool Phrasebook::load(QString const& directory, QString* error)
{
    QDir const dir(directory);
    for (QString const& name : dir.entryList({"*.json"}, QDir::Files, QDir::Name)) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            *error = QString("%1: %2").arg(file.fileName(), file.errorString());
            return false;
        }
        QByteArray const text = file.readAll();
        rapidjson::Document document;
        document.Parse(text.constData(), text.size());
        if (document.HasParseError()) {
            *error = QString("%1: offset %2: %3")
                         .arg(file.fileName())
                         .arg(document.GetErrorOffset())
                         .arg(rapidjson::GetParseError_En(document.GetParseError()));
            return false;
        }
        if (!document.IsObject()) {
            *error = QString("%1: not an object of texts").arg(file.fileName());
            return false;
        }
        Language language;
        for (auto const& member : document.GetObject()) {
            QString const english = QString::fromUtf8(member.name.GetString(), member.name.GetStringLength());
            if (!member.value.IsString()) {
                *error = QString("%1: \"%2\": a translation is a text").arg(file.fileName(), english);
                return false;
            }
            QString const translation = QString::fromUtf8(member.value.GetString(), member.value.GetStringLength());
            if (!english.contains(placeholder())) {
                language.texts.insert(english, translation);
                continue;
            }
            Pattern pattern;
            QString expression;
            int from = 0;
            auto matches = placeholder().globalMatch(english);
            while (matches.hasNext()) {
                QRegularExpressionMatch const m = matches.next();
                expression += QRegularExpression::escape(english.mid(from, m.capturedStart() - from)) + "(.*)";
                pattern.numbers << m.captured(1).toInt();
                from = m.capturedEnd();
            }
            expression += QRegularExpression::escape(english.mid(from));
            pattern.english.setPattern(QRegularExpression::anchoredPattern(expression));
            pattern.translation = translation;
            language.patterns << pattern;
        }
        mLanguages.insert(QFileInfo(name).completeBaseName(), language);
    }
    return true;
}

QString Phrasebook::languageOf(QString const& locale)
{
    int end = 0;
    while (end < locale.size() && locale[end] != '-' && locale[end] != '_')
        ++end;
    return locale.left(end).toLower();
}

Phrasebook::Language const* Phrasebook::languageFor(QString const& locale) const
{
    auto const found = mLanguages.constFind(languageOf(locale));
    return found == mLanguages.constEnd() ? nullptr : &*found;
}

QString Phrasebook::translated(QString const& locale, QString const& english) const
{
    QString translation;
    Language const* language = languageFor(locale);
    return language && language->lookUp(english, &translation) ? translation : english;
}

bool Phrasebook::knows(QString const& locale, QString const& english) const
{
    QString translation;
    Language const* language = languageFor(locale);
    return language && language->lookUp(english, &translation);
}

namespace {

class Translator
{
public:
    Translator(std::function<bool(QString const&, QString*)> lookUp, rapidjson::Document::AllocatorType& alloc)
        : mLookUp(std::move(lookUp)), mAlloc(alloc)
    {
    }

    void walk(rapidjson::Value& value)
    {
        if (value.IsArray()) {
            for (auto& element : value.GetArray())
                walk(element);
            return;
        }
        if (!value.IsObject())
            return;
        bool const own = !isContent(value);
        for (auto& member : value.GetObject()) {
            if (own && member.value.IsString() && isText(member.name)) {
                replace(member.value);
            } else if (own && member.name == "options" && member.value.IsObject()) {
                // A select field's choices: option value to what it shows.
                for (auto& option : member.value.GetObject()) {
                    if (option.value.IsString())
                        replace(option.value);
                }
            } else {
                walk(member.value);
            }
        }
    }

    bool changed() const { return mChanged; }

private:
    void replace(rapidjson::Value& text)
    {
        QString translation;
        if (!mLookUp(QString::fromUtf8(text.GetString(), text.GetStringLength()), &translation))
            return;
        QByteArray const utf8 = translation.toUtf8();
        text.SetString(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()), mAlloc);
        mChanged = true;
    }

    std::function<bool(QString const&, QString*)> mLookUp;
    rapidjson::Document::AllocatorType& mAlloc;
    bool mChanged = false;
};

} // namespace

void Phrasebook::translate(QString const& locale, Answer* answer) const
{
    Language const* language = languageFor(locale);
    if (!language || answer->type.rfind("application/json", 0) != 0 || answer->body.empty())
        return;
    rapidjson::Document document;
    document.Parse<rapidjson::kParseFullPrecisionFlag>(answer->body.c_str(), answer->body.size());
    if (document.HasParseError())
        return;
    Translator translator([language](QString const& english, QString* translation) {
        return language->lookUp(english, translation);
    }, document.GetAllocator());
    translator.walk(document);
    if (!translator.changed())
        return;
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    document.Accept(writer);
    answer->body.assign(buffer.GetString(), buffer.GetSize());
}

} // namespace cloudsim
