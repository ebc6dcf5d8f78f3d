#pragma once

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
};

QVector<CommandSpec> const& commandSpecs();
CommandSpec const* findCommand(QString const& name);

// Parses the words of one command, its options among them. False, with the
// reason in *error, when the words are no valid command.
bool parseCommand(QStringList const& words, bool inShell, Command* command, QString* error);
