#include "cb_airable.h"

#include "cmroot.h"
#include "airablelog.h"

#include <QMap>
#include <QRegularExpression>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

QString CMAirableWorker::processDescription(QString const& description)
{
    LOG4CPLUS_TRACE(logger, "description: " << description.toStdString());
    // A text per language, each behind its two-letter code: "EN: ...\r\nDE: ...".
    static QRegularExpression const pattern(
        QStringLiteral("(?s)(\\b[A-Z]{2})\\s*:((?:(?!\\r\\n\\b[A-Z]{2}\\s*:).)*)"));
    QMap<QString, QString> languages;
    auto it = pattern.globalMatch(description);
    while (it.hasNext()) {
        auto const match = it.next();
        languages.insert(match.captured(1), match.captured(2).trimmed());
    }
    QString const current
        = TarnValue::fromVariant(CMRoot()->getValue(m_languageItem->path())).string_().left(2).toUpper();

    QStringList mapText;
    for (auto entry = languages.cbegin(); entry != languages.cend(); ++entry)
        mapText << entry.key() + QLatin1Char('=') + entry.value();
    LOG4CPLUS_DEBUG(logger, "languageMap: " << mapText.join(QStringLiteral(", ")).toStdString()
                                            << "currentLang: " << current.toStdString());

    if (languages.contains(current))
        return languages.value(current);
    if (languages.contains(QStringLiteral("EN")))
        return languages.value(QStringLiteral("EN"));
    return description.trimmed();
}
