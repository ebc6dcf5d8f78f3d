#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

// One command as the user typed it, on the command line or in the shell.
struct Command
{
    QString name;
    QStringList args;
    // Empty: the command's own choice of roles.
    QStringList roles;
    bool follow = true;
    bool help = false;
    // The command's own options by name; a flag given holds "true".
    QHash<QString, QString> options;

    QString option(QString const& name, QString const& fallback = QString()) const
    {
        return options.value(name, fallback);
    }
};

// An option of one command, such as play's --tracks N.
struct OptionSpec
{
    QString name;
    QString valueName; // empty for a flag
    QString help;
};

struct CommandSpec
{
    QString name;
    QString synopsis;
    QString summary;
    int minArgs;
    int maxArgs;
    bool takesRoles;
    bool takesNoFollow;
    // Meaningful only with the state of a shell session (cd, back, ...).
    bool shellOnly;
    QVector<OptionSpec> options;
};

QVector<CommandSpec> const& commandSpecs();
CommandSpec const* findCommand(QString const& name);

// Parses the words of one command, its options among them. False, with the
// reason in *error, when the words are no valid command.
bool parseCommand(QStringList const& words, bool inShell, Command* command, QString* error);
