#include "shell.h"
#include "command.h"
#include "interruptlistener.h"
#include "lineinput.h"
#include "printer.h"
#include "session.h"

#include <QStringList>
#include <memory>
#include <unistd.h>

int runShell(Session* session, Printer* printer)
{
    // At a terminal Ctrl-C belongs to the session for its whole length: it
    // clears the prompt's line or abandons a wait. A script's Ctrl-C ends it.
    std::unique_ptr<InterruptListener> interrupts;
    if (isatty(STDIN_FILENO) && isatty(STDOUT_FILENO))
        interrupts = std::make_unique<InterruptListener>();
    session->setInterrupts(interrupts.get());
    LineInput input(interrupts.get());
    int worst = ExitOk;
    QString line;
    while (!session->ended() && input.read(QStringLiteral("tarn> "), &line)) {
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
    session->setInterrupts(nullptr);
    return worst;
}
