#include "showntexts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

namespace {
ShownTexts* gShown = nullptr;
}

ShownTexts::ShownTexts()
{
    gShown = this;
}

ShownTexts::~ShownTexts()
{
    // Out of the application's hands before the texts go: a module's thread
    // may still be showing one.
    QCoreApplication::removeTranslator(this);
    gShown = nullptr;
}

void ShownTexts::note(char const* context, char const* source, int n)
{
    if (gShown)
        gShown->translate(context, source, nullptr, n);
}

bool ShownTexts::write(QString const& file) const
{
    QStringList lines;
    {
        std::lock_guard<std::mutex> const lock(mMutex);
        lines = mTexts.values();
    }
    std::sort(lines.begin(), lines.end());
    QDir().mkpath(QFileInfo(file).path());
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    for (QString const& line : lines)
        out.write(line.toUtf8() + '\n');
    return out.commit();
}

QString ShownTexts::translate(char const* context, char const* source, char const*, int n) const
{
    if (context && *context && source && *source) {
        QString line = QString::fromUtf8(context) + QLatin1Char('\t') + QString::fromUtf8(source);
        if (n >= 0)
            line += QLatin1String("\tn");
        std::lock_guard<std::mutex> const lock(mMutex);
        mTexts.insert(line);
    }
    return QString();
}
