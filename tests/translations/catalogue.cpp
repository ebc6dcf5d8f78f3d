#include "catalogue.h"

#include <QFile>
#include <QSaveFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <algorithm>

void Catalogue::sort()
{
    std::sort(entries.begin(), entries.end(), [](CatalogueEntry const& a, CatalogueEntry const& b) {
        return a.context != b.context ? a.context < b.context : a.source < b.source;
    });
}

CatalogueEntry const* Catalogue::find(QString const& key) const
{
    for (auto const& e : entries) {
        if (e.key() == key)
            return &e;
    }
    return nullptr;
}

bool readCatalogue(QString const& file, Catalogue* catalogue, QString* error)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly)) {
        *error = file + QStringLiteral(": ") + in.errorString();
        return false;
    }
    QXmlStreamReader xml(&in);
    QString context;
    CatalogueEntry entry;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            auto const name = xml.name();
            if (name == QLatin1String("TS")) {
                catalogue->language = xml.attributes().value(QLatin1String("language")).toString();
            } else if (name == QLatin1String("name")) {
                context = xml.readElementText();
            } else if (name == QLatin1String("message")) {
                entry = CatalogueEntry();
                entry.context = context;
                entry.numerus = xml.attributes().value(QLatin1String("numerus")) == QLatin1String("yes");
            } else if (name == QLatin1String("source")) {
                entry.source = xml.readElementText();
            } else if (name == QLatin1String("translation")) {
                entry.finished = xml.attributes().value(QLatin1String("type")).isEmpty();
                if (!entry.numerus) {
                    QString const text = xml.readElementText();
                    if (!text.isEmpty())
                        entry.translations << text;
                }
            } else if (name == QLatin1String("numerusform")) {
                QString const text = xml.readElementText();
                if (!text.isEmpty())
                    entry.translations << text;
            }
        } else if (xml.isEndElement() && xml.name() == QLatin1String("message")) {
            catalogue->entries << entry;
        }
    }
    if (xml.hasError()) {
        *error = QStringLiteral("%1:%2: %3").arg(file).arg(xml.lineNumber()).arg(xml.errorString());
        return false;
    }
    return true;
}

bool writeCatalogue(QString const& file, Catalogue const& catalogue)
{
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(4);
    xml.writeStartDocument();
    xml.writeDTD(QStringLiteral("<!DOCTYPE TS>"));
    xml.writeStartElement(QStringLiteral("TS"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("2.1"));
    if (!catalogue.language.isEmpty())
        xml.writeAttribute(QStringLiteral("language"), catalogue.language);
    xml.writeAttribute(QStringLiteral("sourcelanguage"), QStringLiteral("en_US"));
    QString context;
    for (int i = 0; i < catalogue.entries.size(); ++i) {
        CatalogueEntry const& e = catalogue.entries.at(i);
        if (i == 0 || e.context != context) {
            if (i > 0)
                xml.writeEndElement();
            context = e.context;
            xml.writeStartElement(QStringLiteral("context"));
            xml.writeTextElement(QStringLiteral("name"), context);
        }
        xml.writeStartElement(QStringLiteral("message"));
        if (e.numerus)
            xml.writeAttribute(QStringLiteral("numerus"), QStringLiteral("yes"));
        xml.writeTextElement(QStringLiteral("source"), e.source);
        xml.writeStartElement(QStringLiteral("translation"));
        if (!e.finished)
            xml.writeAttribute(QStringLiteral("type"), QStringLiteral("unfinished"));
        if (e.numerus) {
            for (QString const& form : e.translations)
                xml.writeTextElement(QStringLiteral("numerusform"), form);
        } else if (!e.translations.isEmpty()) {
            xml.writeCharacters(e.translations.first());
        }
        xml.writeEndElement();
        xml.writeEndElement();
    }
    if (!catalogue.entries.isEmpty())
        xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    return out.commit();
}
