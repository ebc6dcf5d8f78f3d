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
    if (text.startsWith(mPrefix)) {
        QString const body = text.mid(mPrefix.size());
        if (body.isEmpty())
            text = QStringLiteral("/");
        else if (!mBaseUrl.isEmpty() && body.startsWith(mBaseUrl + QLatin1Char('/')))
            text = body.mid(mBaseUrl.size());
        else if (!body.startsWith(QLatin1Char('/')) && parse(body) == path)
            text = body;
    }
    return text.replace(kUnitSeparator, kSeparatorSymbol);
}
