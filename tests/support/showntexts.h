#pragma once

#include <QSet>
#include <QTranslator>

#include <mutex>

// Remembers every translatable text that the test program turned into a
// string, with its context, and leaves each text as it is. What the tests
// made the module show is what its translation catalogue is checked against.
class ShownTexts : public QTranslator
{
public:
    ShownTexts();
    ~ShownTexts() override;

    // A translator that a test installs over this one answers first; it
    // tells of the texts it was asked for here.
    static void note(char const* context, char const* source, int n);

    // One text per line, sorted: "context<TAB>source", with "<TAB>n" after
    // a text that was given a count.
    bool write(QString const& file) const;

    bool isEmpty() const override { return false; }
    QString translate(char const* context, char const* source, char const* disambiguation, int n) const override;

private:
    // The module shows texts on its own threads. A standard mutex: the
    // thread sanitizer sees it, not Qt's, which is built without it.
    mutable std::mutex mMutex;
    mutable QSet<QString> mTexts;
};
