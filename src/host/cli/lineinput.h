#pragma once

#include <QString>

// Lines of commands: from a prompt with line editing and history when
// standard input is a terminal, else plainly, one per line.
class LineInput
{
public:
    LineInput();
    ~LineInput();
    LineInput(LineInput const&) = delete;
    LineInput& operator=(LineInput const&) = delete;

    bool isInteractive() const { return mInteractive; }
    // False at the end of input.
    bool read(QString const& prompt, QString* line);

private:
    bool mInteractive;
    QString mHistoryFile;
};

// Splits a line into words as a shell does: blanks separate, quotes
// (single or double) group, a backslash takes the next character as it is.
// False, with the reason in *error, for an unclosed quote.
bool splitWords(QString const& line, QStringList* words, QString* error);
