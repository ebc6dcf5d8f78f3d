#include "browser.h"

#include <QRegularExpression>
#include <QStringList>

#include <httplib.h>

namespace {

QString unescaped(QString text)
{
    return text.replace(QLatin1String("&quot;"), QLatin1String("\""))
        .replace(QLatin1String("&#39;"), QLatin1String("'"))
        .replace(QLatin1String("&lt;"), QLatin1String("<"))
        .replace(QLatin1String("&gt;"), QLatin1String(">"))
        .replace(QLatin1String("&amp;"), QLatin1String("&"));
}

QString attribute(QString const& tag, QString const& name)
{
    QRegularExpression const pattern(QStringLiteral("\\b%1=\"([^\"]*)\"").arg(name));
    return unescaped(pattern.match(tag).captured(1));
}

std::string target(QUrl const& url)
{
    return url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment).toStdString();
}

QByteArray encoded(QString const& value)
{
    return QUrl::toPercentEncoding(value);
}

} // namespace

Browser::Result Browser::logIn(QUrl const& page, QString const& user, QString const& password)
{
    Result result;
    httplib::Client site(page.toString(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment).toStdString());
    if (!mCaCertificates.isEmpty())
        site.set_ca_cert_path(mCaCertificates.toStdString());
    auto const opened = site.Get(target(page).c_str());
    if (!opened || opened->status != 200) {
        result.error = QStringLiteral("the page %1 answered %2")
                           .arg(page.toString())
                           .arg(opened ? QString::number(opened->status) : QStringLiteral("nothing"));
        return result;
    }
    QString const html = QString::fromStdString(opened->body);
    QRegularExpressionMatch const form = QRegularExpression(QStringLiteral("<form\\b[^>]*>")).match(html);
    if (!form.hasMatch()) {
        result.error = QStringLiteral("the page %1 holds no form").arg(page.toString());
        return result;
    }
    QStringList fields;
    auto inputs = QRegularExpression(QStringLiteral("<input\\b[^>]*>")).globalMatch(html, form.capturedEnd());
    while (inputs.hasNext()) {
        QString const input = inputs.next().captured();
        QString const type = attribute(input, QStringLiteral("type"));
        QString const value = type == QLatin1String("password") ? password
                              : type == QLatin1String("hidden") ? attribute(input, QStringLiteral("value"))
                                                                : user;
        fields << QString::fromLatin1(encoded(attribute(input, QStringLiteral("name"))) + '=' + encoded(value));
    }
    QUrl const action = page.resolved(QUrl(attribute(form.captured(), QStringLiteral("action"))));
    auto const posted = site.Post(target(action).c_str(), fields.join(QLatin1Char('&')).toStdString(),
                                  "application/x-www-form-urlencoded");
    if (!posted) {
        result.error = QStringLiteral("posting the form of %1 got no answer").arg(page.toString());
        return result;
    }
    result.status = posted->status;
    result.location = QString::fromStdString(posted->get_header_value("Location"));
    return result;
}
