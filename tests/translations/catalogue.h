#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// A Qt Linguist catalogue (.ts) of the module's texts: the template, whose
// translations are empty, or one language's.
struct CatalogueEntry
{
    QString context;
    QString source;
    bool numerus = false;
    // One text, or one per plural form; empty while untranslated.
    QStringList translations;
    bool finished = false;

    QString key() const { return context + QLatin1Char('\t') + source; }
};

struct Catalogue
{
    QString language;
    QList<CatalogueEntry> entries;

    // Entries in the order of their contexts and sources, as the files keep
    // them so that a change shows as a small difference.
    void sort();
    CatalogueEntry const* find(QString const& key) const;
};

bool readCatalogue(QString const& file, Catalogue* catalogue, QString* error);
bool writeCatalogue(QString const& file, Catalogue const& catalogue);
