#include "lineinput.h"

#include <QDir>
#include <QStringList>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <unistd.h>

#include <readline/history.h>
#include <readline/readline.h>

LineInput::LineInput() : mInteractive(isatty(STDIN_FILENO) && isatty(STDOUT_FILENO))
{
    if (!mInteractive)
        return;
    mHistoryFile = QDir::home().filePath(QStringLiteral(".tarn_host_history"));
    read_history(QFile::encodeName(mHistoryFile).constData());
}

LineInput::~LineInput()
{
    if (!mInteractive)
        return;
    write_history(QFile::encodeName(mHistoryFile).constData());
    history_truncate_file(QFile::encodeName(mHistoryFile).constData(), 1000);
}

bool LineInput::read(QString const& prompt, QString* line)
{
    if (!mInteractive) {
        std::string text;
        if (!std::getline(std::cin, text))
            return false;
        *line = QString::fromStdString(text);
        return true;
    }
    char* text = readline(prompt.toLocal8Bit().constData());
    if (!text)
        return false;
    *line = QString::fromLocal8Bit(text);
    if (!line->trimmed().isEmpty())
        add_history(text);
    std::free(text);
    return true;
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
