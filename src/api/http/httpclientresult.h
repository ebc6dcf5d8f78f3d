#pragma once

#include "tarnurl.h"

#include <QByteArray>
#include <QString>

// Why a GET did not end with the answer the server meant to give. HttpStatus
// means that the server answered, with a status that is an error.
enum class HttpClientError
{
    None,
    HttpStatus,
    Timeout,
    ConnectionRefused,
    HostNotFound,
    ConnectionClosed,
    TlsFailure,
    ReadLimitExceeded,
    InvalidUrl,
    Network,
};

// The outcome of one GET. A transfer that ended without an HTTP answer has
// the status 0, so that no failure can pass for a 200.
class HttpClientResult
{
public:
    HttpClientResult() = default;
    HttpClientResult(TarnUrl const& url, int statusCode, QByteArray const& body,
                     HttpClientError error = HttpClientError::None, QString const& errorString = QString())
        : mUrl(url), mStatusCode(statusCode), mBody(body), mError(error), mErrorString(errorString)
    {
    }

    TarnUrl const& url() const { return mUrl; }
    int statusCode() const { return mStatusCode; }
    QByteArray const& body() const { return mBody; }
    HttpClientError error() const { return mError; }
    QString const& errorString() const { return mErrorString; }

private:
    TarnUrl mUrl;
    int mStatusCode = 0;
    QByteArray mBody;
    HttpClientError mError = HttpClientError::None;
    QString mErrorString;
};
