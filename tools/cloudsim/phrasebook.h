#pragma once

#include "catalogue.h"

#include <QHash>
#include <QList>
#include <QRegularExpression>
#include <QString>

namespace cloudsim {

// The cloud's own texts in the languages it speaks besides English: those of
// its forms, messages, errors and listings, never those of the catalogue's
// content (stations, tracks, albums, artists, podcasts). A device gets them
// in the language of the locale it authenticated with.
//
// A language is a file "<language>.json" that maps each English text to its
// translation. "%1", "%2" stand for a part that the cloud fills in, such as a
// title: the same number in the translation takes that part.
class Phrasebook
{
public:
    bool load(QString const& directory, QString* error);

    // The language of a locale as devices write it: "de" of "de-DE",
    // "de_AT", "DE" or "de".
    static QString languageOf(QString const& locale);

    // The text in the locale's language; the text itself when the
    // phrasebook has none for it.
    QString translated(QString const& locale, QString const& english) const;
    bool knows(QString const& locale, QString const& english) const;

    // Rewrites the cloud's own texts of a JSON answer in the locale's
    // language. Other answers, and answers with nothing to translate, stay
    // as they are, byte for byte.
    void translate(QString const& locale, Answer* answer) const;

private:
    struct Pattern
    {
        QRegularExpression english;
        // Which placeholder each captured part fills, in capture order.
        QList<int> numbers;
        QString translation;
    };
    struct Language
    {
        QHash<QString, QString> texts;
        QList<Pattern> patterns;

        bool lookUp(QString const& english, QString* translation) const;
    };

    Language const* languageFor(QString const& locale) const;

    QHash<QString, Language> mLanguages;
};

} // namespace cloudsim
