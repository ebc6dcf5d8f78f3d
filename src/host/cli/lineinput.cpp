#include "lineinput.h"
#include "interruptlistener.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QStringList>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <unistd.h>

#include <readline/history.h>
#include <readline/readline.h>

namespace {

int const kHistoryLines = 1000;

// Readline's callback interface hands a finished line to a plain function;
// one prompt is open at a time, and this is where its line lands.
struct PendingLine
{
    QEventLoop* loop = nullptr;
    bool done = false;
    bool end = false;
    QString text;
};
PendingLine* gPending = nullptr;

void takeLine(char* text)
{
    // Removed here, so that readline doesn't show the next prompt before
    // the command has run.
    rl_callback_handler_remove();
    gPending->done = true;
    gPending->end = text == nullptr;
    if (text)
        gPending->text = QString::fromLocal8Bit(text);
    std::free(text);
    gPending->loop->quit();
}

void clearLine()
{
    rl_free_line_state();
    rl_callback_sigcleanup();
    std::fputs("^C", rl_outstream ? rl_outstream : stdout);
    rl_crlf();
    rl_replace_line("", 0);
    rl_on_new_line();
    rl_redisplay();
}

} // namespace

LineInput::LineInput(InterruptListener* interrupts)
    : mInteractive(isatty(STDIN_FILENO) && isatty(STDOUT_FILENO)), mInterrupts(interrupts)
{
    if (!mInteractive)
        return;
    // Signals are the session's: Ctrl-C must reach its listener, never end
    // the process from inside readline.
    rl_catch_signals = 0;
    mHistoryFile = QDir::home().filePath(QStringLiteral(".tarn_host_history"));
    // The history in memory keeps what the file keeps, however long the
    // session.
    stifle_history(kHistoryLines);
    read_history(QFile::encodeName(mHistoryFile).constData());
}

LineInput::~LineInput() = default;

bool LineInput::read(QString const& prompt, QString* line)
{
    if (mInteractive)
        return readFromPrompt(prompt, line);
    std::string text;
    if (!std::getline(std::cin, text))
        return false;
    *line = QString::fromStdString(text);
    return true;
}

bool LineInput::readFromPrompt(QString const& prompt, QString* line)
{
    QEventLoop loop;
    PendingLine pending;
    pending.loop = &loop;
    gPending = &pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &loop, [] { rl_callback_read_char(); });
    if (mInterrupts) {
        QObject::connect(mInterrupts, &InterruptListener::interrupted, &loop, [] { clearLine(); });
        QObject::connect(mInterrupts, &InterruptListener::terminated, &loop, [&pending, &loop] {
            pending.end = true;
            loop.quit();
        });
    }
    rl_callback_handler_install(prompt.toLocal8Bit().constData(), takeLine);
    loop.exec();
    if (!pending.done) {
        rl_callback_handler_remove();
        rl_crlf();
    }
    gPending = nullptr;
    if (pending.end)
        return false;
    *line = pending.text;
    if (!line->trimmed().isEmpty())
        remember(*line);
    return true;
}

void LineInput::remember(QString const& line)
{
    add_history(line.toLocal8Bit().constData());
    QByteArray const file = QFile::encodeName(mHistoryFile);
    // append_history needs the file to exist.
    if (QFileInfo::exists(mHistoryFile))
        append_history(1, file.constData());
    else
        write_history(file.constData());
    history_truncate_file(file.constData(), kHistoryLines);
}

bool splitWords(QString const& line, QStringList* words, QString* error)
{
    QString word;
    bool inWord = false;
    QChar quote;
    for (int i = 0; i < line.size(); ++i) {
        QChar const c = line[i];
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            else if (c == QLatin1Char('\\') && quote == QLatin1Char('"') && i + 1 < line.size())
                word += line[++i];
            else
                word += c;
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            quote = c;
            inWord = true;
        } else if (c == QLatin1Char('\\') && i + 1 < line.size()) {
            word += line[++i];
            inWord = true;
        } else if (c.isSpace()) {
            if (inWord)
                *words << word;
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (!quote.isNull()) {
        *error = QStringLiteral("unclosed %1").arg(quote);
        return false;
    }
    if (inWord)
        *words << word;
    return true;
}
