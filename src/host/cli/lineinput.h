#pragma once

#include <QString>

class InterruptListener;

// Lines of commands: from a prompt with line editing and history when
// standard input is a terminal, else plainly, one per line. At the prompt
// Ctrl-C clears the line, as in a shell; each line is added to the history
// file as soon as it is read.
class LineInput
{
public:
    // interrupts: the session's listener; needed at a terminal only.
    explicit LineInput(InterruptListener* interrupts);
    ~LineInput();
    LineInput(LineInput const&) = delete;
    LineInput& operator=(LineInput const&) = delete;

    bool isInteractive() const { return mInteractive; }
    // False at the end of input, or when the process is asked to end.
    bool read(QString const& prompt, QString* line);

private:
    bool readFromPrompt(QString const& prompt, QString* line);
    void remember(QString const& line);

    bool mInteractive;
    InterruptListener* mInterrupts;
    QString mHistoryFile;
};

// Splits a line into words as a shell does: blanks separate, quotes
// (single or double) group, a backslash takes the next character as it is.
// False, with the reason in *error, for an unclosed quote.
bool splitWords(QString const& line, QStringList* words, QString* error);
