#include "configfile.h"
#include "hostsettings.h"

#include <QFile>
#include <QTextStream>

bool readConfigFile(QString const& fileName, SettingList* settings, QString* error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        *error = QStringLiteral("cannot read %1: %2").arg(fileName, file.errorString());
        return false;
    }
    QTextStream in(&file);
    int lineNumber = 0;
    while (!in.atEnd()) {
        QString const line = in.readLine().trimmed();
        ++lineNumber;
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')) || line.startsWith(QLatin1Char(';'))
            || line.startsWith(QLatin1Char('[')))
            continue;
        int const eq = line.indexOf(QLatin1Char('='));
        QString const key = line.left(eq).trimmed();
        SettingSpec const* spec = findSetting(key);
        if (!spec || !spec->inConfigFile) {
            *error = QStringLiteral("%1:%2: unknown key '%3'").arg(fileName).arg(lineNumber).arg(key);
            return false;
        }
        if (eq < 0 && !spec->valueName.isEmpty()) {
            *error = QStringLiteral("%1:%2: '%3' needs a value").arg(fileName).arg(lineNumber).arg(key);
            return false;
        }
        QString value = eq < 0 ? QString() : line.mid(eq + 1).trimmed();
        if (value.size() >= 2 && value.startsWith(QLatin1Char('"')) && value.endsWith(QLatin1Char('"')))
            value = value.mid(1, value.size() - 2);
        settings->append({key, value});
    }
    return true;
}
