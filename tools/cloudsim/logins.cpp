#include "logins.h"

#include "cloudjson.h"
#include "cloudsimlog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

namespace cloudsim {

Logins::Logins(Catalogue const& catalogue, Accounts& accounts, OAuthSessions& sessions)
    : mCatalogue(catalogue), mAccounts(accounts), mSessions(sessions)
{
}

QString Logins::serviceOf(QString const& path) const
{
    for (QString const& service : mCatalogue.loginServices() + mCatalogue.oauthServices()) {
        QString const home = '/' + service;
        if (path == home || path.startsWith(home + '/') || path.startsWith("/id" + home + '/'))
            return service;
    }
    return QString();
}

bool Logins::answer(Call const& call, Answer* out)
{
    QString const service = serviceOf(call.path);
    if (service.isEmpty())
        return false;
    QString const home = '/' + service;
    if (call.path == home + "/login" && mCatalogue.loginForm(service)) {
        *out = submit(call, service);
        return true;
    }
    // A logout ends the login, if there was one, and is answered as any
    // other path of the catalogue.
    if (call.path == home + "/logout") {
        if (mAccounts.logOut(call.device, service))
            LOG4CPLUS_INFO(logger, "device " << call.device.toStdString() << " logged out of " << service.toStdString());
        return false;
    }
    if (!mAccounts.userOf(call.device, service).isEmpty())
        return false;
    *out = dialog(call, service);
    return true;
}

Answer Logins::dialog(Call const& call, QString const& service)
{
    Answer answer;
    if (rapidjson::Value const* form = mCatalogue.loginForm(service)) {
        answer.body = serialize(*form);
        return answer;
    }
    answer.body = serialize(*mCatalogue.oauthMessage(service));
    replaceAll(answer.body, "{session}", mSessions.sessionOf(call.device, service).toStdString());
    return answer;
}

Answer Logins::submit(Call const& call, QString const& service)
{
    QString const home = '/' + service;
    Answer answer;
    bool const credentials = call.params.contains("username") || call.params.contains("password");
    if (!credentials && mAccounts.userOf(call.device, service).isEmpty()) {
        answer.body = serialize(*mCatalogue.loginForm(service));
        return answer;
    }
    if (credentials) {
        Accounts::User const user = mAccounts.verify(call.param("username"), call.param("password"));
        if (user.email.isEmpty()) {
            LOG4CPLUS_INFO(logger, "device " << call.device.toStdString() << ": wrong e-mail or password for "
                                             << service.toStdString());
            answer.body = messageObject(service, "login.failed", "Login failed", "Wrong e-mail or password",
                                        {{"retry", "Try again", "{base}" + home}, {"cancel", "Cancel", "{base}/"}});
            return answer;
        }
        mAccounts.logIn(call.device, service, user.email);
        LOG4CPLUS_INFO(logger, "device " << call.device.toStdString() << " logged in to " << service.toStdString()
                                         << " as " << user.email.toStdString());
    }
    // What the cloud answers after a login: the service's home.
    mCatalogue.answer(home, 1, &answer);
    return answer;
}

} // namespace cloudsim
