#pragma once

#include <QList>
#include <QPair>
#include <QString>

#include <mutex>

namespace cloudsim {

// What a route does wrong on demand. A fault hits the requests that passed
// the token check (or need none), `times` of them, or all while it is set
// when `times` is negative.
struct Fault
{
    enum class Kind
    {
        Status,          // answer with `value` as the status and an error body
        Delay,           // wait `value` ms, then answer as usual
        Garbage,         // 200 with a body that is no JSON
        Truncated,       // 200 with the first half of the usual body
        Oversize,        // the usual answer padded to at least `value` bytes
        CloseConnection, // close the connection without any answer
        ExpiredToken,    // the token is expired at this request
        RefusedSecret,   // on "/authentication": the signature is refused as if the secret were wrong
    };

    Kind kind = Kind::Status;
    int value = 0;
    int times = -1;

    static Fault status(int code, int times = -1) { return {Kind::Status, code, times}; }
    static Fault delay(int ms, int times = -1) { return {Kind::Delay, ms, times}; }
    static Fault garbage(int times = -1) { return {Kind::Garbage, 0, times}; }
    static Fault truncated(int times = -1) { return {Kind::Truncated, 0, times}; }
    static Fault oversize(int bytes, int times = -1) { return {Kind::Oversize, bytes, times}; }
    static Fault closeConnection(int times = -1) { return {Kind::CloseConnection, 0, times}; }
    static Fault expiredToken(int times = 1) { return {Kind::ExpiredToken, 0, times}; }
    static Fault refusedSecret(int times = -1) { return {Kind::RefusedSecret, 0, times}; }
};

// Reads "ROUTE=KIND[:VALUE][@TIMES]", e.g. "/airable/radios=status:500",
// "/tidal/*=delay:35000@1", "/deezer=close". Kinds: status, delay, garbage,
// truncated, oversize, close, expired-token, refused-secret. On false, *why
// (if given) says what is wrong, for a person who typed it.
bool parseFault(QString const& text, QString* route, Fault* fault, QString* why = nullptr);

// Faults by route. A route is a path ("/airable/radios"), or a prefix when
// it ends with "*" ("/tidal/*"); the route set first wins.
class FaultTable
{
public:
    void set(QString const& route, Fault const& fault);
    void clear();
    // Each takes one use of a fault that hits the path, if there is one:
    // the first an ExpiredToken, the second any other kind.
    bool takeTokenFault(QString const& path);
    bool takeAnswerFault(QString const& path, Fault* hit);

private:
    bool takeMatching(QString const& path, bool expiredToken, Fault* hit);

    std::mutex mMutex;
    QList<QPair<QString, Fault>> mFaults;
};

} // namespace cloudsim
