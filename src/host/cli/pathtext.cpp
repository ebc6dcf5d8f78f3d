#include "pathtext.h"

#include "cmroot.h"

namespace {
QChar const kUnitSeparator(0x1f);
QChar const kSeparatorSymbol(0x241f);

bool isUrl(QString const& text)
{
    return text.startsWith(QLatin1String("http://")) || text.startsWith(QLatin1String("https://"));
}
} // namespace

PathText::PathText(QString workerPrefix, QString baseUrl)
    : mPrefix(std::move(workerPrefix)), mBaseUrl(std::move(baseUrl))
{
    while (mBaseUrl.endsWith(QLatin1Char('/')))
        mBaseUrl.chop(1);
}

CMPath PathText::parse(QString const& typed) const
{
    QString text = typed;
    text.replace(kSeparatorSymbol, kUnitSeparator);
    if (text.isEmpty() || text == QLatin1String("/"))
        return CMPath(mPrefix, QString());
    if (text.startsWith(mPrefix))
        return CMPath::fromEncoded(text);
    if (text.startsWith(QLatin1Char('/')))
        return CMPath::fromEncoded(mPrefix + mBaseUrl + text);
    // Other workers' paths and the platform's stored values are reachable
    // as they stand; everything else lives below this worker.
    CMPath const asIs = CMPath::fromEncoded(text);
    auto* root = CMRootWorker::instance();
    if (!isUrl(text) && !asIs.prefix().isEmpty()
        && (root->hasValue(asIs) || root->workerFor(asIs) || root->workerFor(CMPath(asIs.prefix(), QString()))))
        return asIs;
    return CMPath::fromEncoded(mPrefix + text);
}

QString PathText::shortText(CMPath const& path) const
{
    QString text = path.toEncoded();
    // Only the worker's root and cloud URLs strictly below the base URL have
    // a short form; the module's other paths (dialogs, logout, contexts)
    // carry words after the prefix that a short form could not tell apart
    // from other workers' paths, so they stay whole.
    if (text == mPrefix) {
        text = QStringLiteral("/");
    } else if (!mBaseUrl.isEmpty() && text.startsWith(mPrefix + mBaseUrl + QLatin1Char('/'))) {
        QString const below = text.mid(mPrefix.size() + mBaseUrl.size());
        if (below.size() > 1)
            text = below;
    }
    return text.replace(kUnitSeparator, kSeparatorSymbol);
}
