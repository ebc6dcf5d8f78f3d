#include "commandline.h"
#include "configfile.h"

bool parseCommandLine(QStringList const& arguments, CommandLine* line, QString* error)
{
    SettingList fromOptions;
    QString configFile;
    QStringList commandWords;
    for (int i = 0; i < arguments.size(); ++i) {
        QString const& word = arguments[i];
        if (word == QLatin1String("--")) {
            commandWords << arguments.mid(i);
            break;
        }
        if ((word == QLatin1String("--help") || word == QLatin1String("-h")) && commandWords.isEmpty()) {
            line->toolHelp = true;
            return true;
        }
        int const eq = word.indexOf(QLatin1Char('='));
        QString const name = word.startsWith(QLatin1String("--")) ? word.mid(2, eq < 0 ? -1 : eq - 2) : QString();
        SettingSpec const* spec = name.isEmpty() ? nullptr : findSetting(name);
        if (!spec) {
            commandWords << word;
            continue;
        }
        QString value = eq < 0 ? QString() : word.mid(eq + 1);
        if (eq < 0 && !spec->valueName.isEmpty()) {
            if (++i == arguments.size()) {
                *error = QStringLiteral("--%1 needs a value").arg(name);
                return false;
            }
            value = arguments[i];
        }
        if (name == QLatin1String("config"))
            configFile = value;
        else
            fromOptions.append({name, value});
    }

    SettingList settings;
    if (!configFile.isEmpty() && !readConfigFile(configFile, &settings, error))
        return false;
    settings << fromOptions;
    for (auto const& s : settings) {
        if (!applySetting(&line->settings, s.first, s.second, error))
            return false;
    }
    if (line->settings.cloudGiven && !line->settings.secretGiven) {
        *error = QStringLiteral("--cloud needs --secret");
        return false;
    }
    return parseCommand(commandWords, false, &line->command, error);
}
