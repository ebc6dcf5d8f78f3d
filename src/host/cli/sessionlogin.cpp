#include "session.h"
#include "dialogview.h"
#include "sessionrows.h"

#include "cmglobal.h"

#include <QProcess>

int Session::oauth(Command const& command)
{
    QString const flow = command.option(QStringLiteral("flow"), QStringLiteral("browser"));
    if (flow != QLatin1String("browser") && flow != QLatin1String("app"))
        return fail("usage", QStringLiteral("--flow is browser or app, not '%1'").arg(flow), ExitUsage);
    QString const& given = command.args[0];
    QJsonObject row;
    if (isRowNumber(given)) {
        int index = 0;
        if (!lastRow(given, &index))
            return ExitErrorReply;
        row = mLast.rows.at(index).toObject();
    } else {
        // The dialog becomes the last listing, so that the module keeps it
        // while the login runs.
        Listing listing;
        Failure failure;
        if (!open(mPaths.parse(given), 0, mPageSize - 1, CMAllRoles(), true, &listing, &failure))
            return fail(failure.name, failure.message, ExitErrorReply);
        show(listing);
        for (auto const& r : mLast.rows) {
            if (DialogView::isLogin(r.toObject())) {
                row = r.toObject();
                break;
            }
        }
    }
    if (!DialogView::isLogin(row))
        return fail("noLogin",
                    QStringLiteral("%1 is no login on a service's page")
                        .arg(isRowNumber(given) ? QStringLiteral("Row ") + given : given),
                    ExitErrorReply);
    TarnOAuth2Info const login = DialogView::loginOf(row);
    CMPath const dialog = mLast.read.path;
    OAuthLogin const flows([this](CMVoidReply const& reply) { return settle(reply, &mReadFailure); }, mReturnPoints);

    if (flow == QLatin1String("app")) {
        OAuthLogin::Outcome const page = flows.appPage(login.appAuthFlowPath());
        if (page.status != OAuthLogin::Status::Done)
            return fail(mReadFailure.name, mReadFailure.message, ExitErrorReply);
        mPrinter->print(Printer::Kind::Login,
                        {{"path", login.appAuthFlowPath().toEncoded()}, {"flow", flow}, {"url", page.url}});
        return ExitOk;
    }

    bool const openPage = command.options.contains(QStringLiteral("open"));
    OAuthLogin::Outcome const done =
        flows.browser(login.browserAuthFlowPath(), [this, openPage](QString const& url, QString const& back) {
            mPrinter->loginPage(url, back);
            if (openPage && !QProcess::startDetached(QStringLiteral("xdg-open"), {url}))
                mPrinter->errorLine(QStringLiteral("xdg-open could not be started; open the page yourself"));
        });
    switch (done.status) {
    case OAuthLogin::Status::Done:
        break;
    case OAuthLogin::Status::NoReturn:
        return fail("oauth", done.why, ExitErrorReply);
    case OAuthLogin::Status::Failed:
        // Waiting for the browser is the wait a person sees.
        if (!done.url.isEmpty() && done.returned.isEmpty() && mReadFailure.name == QLatin1String("timeout"))
            return fail("timeout",
                        QStringLiteral("The browser did not come back within %1 s").arg(mWaiter.timeoutMs() / 1000),
                        ExitErrorReply);
        return fail(mReadFailure.name, mReadFailure.message, ExitErrorReply);
    }

    QJsonObject body{{"path", login.browserAuthFlowPath().toEncoded()},
                     {"flow", flow},
                     {"url", done.url},
                     {"returned", done.returned}};
    // The module closed the login dialog and sends whoever reads it on to
    // where the login was asked for.
    int status = ExitOk;
    ListingReader::Rows closed;
    if (mReader.open(dialog, 0, 0, {TarnRoles::Path()}, false, &closed) == ListingReader::Status::Ok
        && !closed.redirect.isEmpty()) {
        body.insert("closed", QJsonArray{dialog.toEncoded()});
        status = goTo(closed.redirect, &body);
    }
    mPrinter->print(Printer::Kind::Login, body);
    return status;
}
