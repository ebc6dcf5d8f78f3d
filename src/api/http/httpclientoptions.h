#pragma once

#include <QList>
#include <QPair>
#include <QString>

// Request headers in the order they were inserted; inserting a name again
// replaces its value.
class HttpClientHeaders
{
public:
    void insert(QString const& name, QString const& value);
    QString value(QString const& name) const;
    bool isEmpty() const { return mItems.isEmpty(); }
    QList<QPair<QString, QString>> const& items() const { return mItems; }

private:
    QList<QPair<QString, QString>> mItems;
};

class HttpClientOptions
{
public:
    static constexpr int NoReadSizeLimit = -1;
    static constexpr int NoTimeout = 0;

    void setHeaders(HttpClientHeaders const& headers) { mHeaders = headers; }
    HttpClientHeaders const& headers() const { return mHeaders; }

    // Largest body accepted, in bytes; 0 accepts only an empty body, a
    // negative value means no limit.
    void setReadSizeLimit(int bytes) { mReadSizeLimit = bytes; }
    int readSizeLimit() const { return mReadSizeLimit; }

    // Time for the whole transfer, from the call to the last byte; 0 or less
    // means that the transfer may take as long as the server takes.
    void setTimeoutMs(int ms) { mTimeoutMs = ms; }
    int timeoutMs() const { return mTimeoutMs; }

private:
    HttpClientHeaders mHeaders;
    int mReadSizeLimit = NoReadSizeLimit;
    int mTimeoutMs = 30000;
};
