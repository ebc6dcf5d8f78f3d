#pragma once

#include "httpclientoptions.h"
#include "httpclientresult.h"
#include "tarnurl.h"

#include <QObject>
#include <QPointer>

#include <functional>

class QNetworkReply;
class QTimer;

// The server as error texts name it: the URL's host, with its port when
// the URL gives one.
QString serverOf(TarnUrl const& url);

// One GET in flight: watches the time and the read limit, turns whatever
// ends the transfer into one HttpClientResult and hands it on once.
class HttpTransfer : public QObject
{
    Q_OBJECT

public:
    using Completion = std::function<void(HttpClientResult const&)>;

    HttpTransfer(QObject* parent, QNetworkReply* reply, TarnUrl const& url,
                 HttpClientOptions const& options, Completion completion);
    ~HttpTransfer() override;

private:
    void readAvailable();
    void checkAnnouncedLength();
    void finish();
    void fail(HttpClientError error, QString const& reason);
    void complete(HttpClientResult const& result);
    bool overLimit(qint64 bytes) const;

    QPointer<QNetworkReply> mReply;
    TarnUrl mUrl;
    int mReadSizeLimit;
    QByteArray mBody;
    QString mCertificateErrors;
    Completion mCompletion;
    QTimer* mTimer = nullptr;
    bool mDone = false;
};
