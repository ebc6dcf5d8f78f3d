#include "loginpage.h"

#include "cloudjson.h"
#include "returntoken.h"
#include "cloudsimlog.h"

#include <QFile>

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace cloudsim {

namespace {

char const* const HtmlType = "text/html; charset=utf-8";

Answer plainText(int status, QString const& text)
{
    return Answer{status, text.toStdString() + "\n", "text/plain; charset=utf-8", std::string()};
}

QString pageTemplate()
{
    static QString const page = [] {
        QFile file(":/cloudsim/web/login.html");
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }();
    return page;
}

QString titleOf(rapidjson::Value const* message, QString const& service)
{
    auto const title = message ? message->FindMember("title") : rapidjson::Value::ConstMemberIterator();
    return message && title != message->MemberEnd() && title->value.IsString()
               ? QString::fromUtf8(title->value.GetString(), title->value.GetStringLength())
               : "Log in to " + service;
}

} // namespace

LoginPage::LoginPage(Catalogue const& catalogue, Accounts& accounts, OAuthSessions const& sessions,
                     QString const& secret)
    : mCatalogue(catalogue), mAccounts(accounts), mSessions(sessions), mSecret(secret)
{
}

QString LoginPage::pathOf(QString const& service)
{
    return "/web/" + service + "/authorize";
}

bool LoginPage::answer(Call const& call, Answer* out)
{
    QString service;
    for (QString const& s : mCatalogue.oauthServices()) {
        if (call.path == pathOf(s))
            service = s;
    }
    if (service.isEmpty())
        return false;
    ReturnAddress const back = readReturnToken(call.param("return"), mSecret);
    if (!back.isValid()) {
        LOG4CPLUS_INFO(logger, call.method.toStdString() << " " << call.path.toStdString()
                                                         << " refused: " << back.error.toStdString());
        *out = plainText(400, "This login link is broken: " + back.error + ".");
        return true;
    }
    OAuthSessions::Owner const owner = mSessions.ownerOf(call.param("session"));
    if (owner.device.isEmpty() || owner.service != service) {
        *out = plainText(400, "This login link names no session of a device with this service: "
                              "start the login again on your device.");
        return true;
    }
    *out = call.method == "POST" ? logIn(call, service, owner, back.url) : form(call, service, QString());
    return true;
}

Answer LoginPage::form(Call const& call, QString const& service, QString const& error) const
{
    // The form goes back to this very page, with the session and the token.
    QString const action = QString::fromStdString(call.path.toStdString() + "?session="
                                                  + percentEncoded(call.param("session"))
                                                  + "&return=" + percentEncoded(call.param("return")));
    QString page = pageTemplate();
    page.replace("{{title}}", titleOf(mCatalogue.oauthMessage(service), service).toHtmlEscaped());
    page.replace("{{action}}", action.toHtmlEscaped());
    page.replace("{{user}}", call.form.value("user").toHtmlEscaped());
    page.replace("{{error}}", error.isEmpty() ? QString()
                                              : "<p class=\"error\" role=\"alert\">" + error.toHtmlEscaped() + "</p>");
    return Answer{200, page.toStdString(), HtmlType, std::string()};
}

Answer LoginPage::logIn(Call const& call, QString const& service, OAuthSessions::Owner const& owner,
                        QString const& returnUrl)
{
    Accounts::User const user = mAccounts.verify(call.form.value("user"), call.form.value("password"));
    if (user.email.isEmpty()) {
        LOG4CPLUS_INFO(logger, "device " << owner.device.toStdString() << ": wrong e-mail or password on the page of "
                                         << service.toStdString());
        return form(call, service, "Wrong e-mail or password.");
    }
    mAccounts.logIn(owner.device, service, user.email);
    LOG4CPLUS_INFO(logger, "device " << owner.device.toStdString() << " logged in to " << service.toStdString()
                                     << " as " << user.email.toStdString() << " on the service's page");
    QString const link = returnUrl.toHtmlEscaped();
    return Answer{302,
                  "<!DOCTYPE html><title>Logged in</title><p>Logged in. <a href=\"" + link.toStdString()
                      + "\">Back to your device</a></p>\n",
                  HtmlType, returnUrl.toStdString()};
}

} // namespace cloudsim
