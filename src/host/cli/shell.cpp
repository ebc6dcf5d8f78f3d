#include "shell.h"
#include "command.h"
#include "lineinput.h"
#include "printer.h"
#include "session.h"

#include <QStringList>

int runShell(Session* session, Printer* printer)
{
    LineInput input;
    int worst = ExitOk;
    QString line;
    while (input.read(QStringLiteral("tarn> "), &line)) {
        QString const trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#')))
            continue;
        QStringList words;
        QString error;
        Command command;
        int status = ExitOk;
        if (!splitWords(trimmed, &words, &error) || !parseCommand(words, true, &command, &error)) {
            printer->error(QStringLiteral("usage"), error);
            status = ExitUsage;
        } else if (command.name == QLatin1String("quit") && !command.help) {
            break;
        } else {
            status = session->run(command);
        }
        worst = qMax(worst, status);
    }
    return worst;
}
