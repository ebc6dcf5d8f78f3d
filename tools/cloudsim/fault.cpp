#include "fault.h"

#include <QStringList>

namespace cloudsim {

namespace {

bool routeMatches(QString const& route, QString const& path)
{
    if (route.endsWith('*'))
        return path.startsWith(route.left(route.size() - 1));
    return route == path;
}

} // namespace

bool parseFault(QString const& text, QString* route, Fault* fault, QString* why)
{
    QString reason;
    QString& error = why ? *why : reason;
    int const equals = text.indexOf('=');
    if (equals < 0) {
        error = QString("'%1' is not ROUTE=KIND[:VALUE][@TIMES]").arg(text);
        return false;
    }
    QString const path = text.left(equals);
    if (!path.startsWith('/')) {
        error = QString("the route '%1' doesn't start with '/'").arg(path);
        return false;
    }
    QString rule = text.mid(equals + 1);

    Fault parsed;
    bool ok = true;
    int const at = rule.indexOf('@');
    if (at >= 0) {
        QString const times = rule.mid(at + 1);
        parsed.times = times.toInt(&ok);
        if (!ok || parsed.times <= 0) {
            error = QString("the count '%1' after '@' is not a number above 0").arg(times);
            return false;
        }
        rule = rule.left(at);
    }
    QString const kind = rule.section(':', 0, 0);
    QString const value = rule.section(':', 1);
    struct Word
    {
        char const* name;
        Fault::Kind kind;
        char const* value; // what the value means, or null for none
    };
    static Word const words[] = {
        {"status", Fault::Kind::Status, "an HTTP status"},
        {"delay", Fault::Kind::Delay, "milliseconds"},
        {"garbage", Fault::Kind::Garbage, nullptr},
        {"truncated", Fault::Kind::Truncated, nullptr},
        {"oversize", Fault::Kind::Oversize, "bytes"},
        {"close", Fault::Kind::CloseConnection, nullptr},
        {"expired-token", Fault::Kind::ExpiredToken, nullptr},
        {"refused-secret", Fault::Kind::RefusedSecret, nullptr},
    };
    QStringList known;
    for (Word const& word : words) {
        known << word.name;
        if (kind != word.name)
            continue;
        if (!word.value && !value.isEmpty()) {
            error = QString("%1 takes no value, but has '%2'").arg(kind, value);
            return false;
        }
        if (word.value) {
            parsed.value = value.toInt(&ok);
            if (!ok || parsed.value < 0) {
                error = QString("%1 needs a number of %2, as in %1:%3, not '%4'")
                            .arg(kind, word.value, kind == "status" ? "500" : "1000", value);
                return false;
            }
        }
        parsed.kind = word.kind;
        *route = path;
        *fault = parsed;
        return true;
    }
    error = QString("unknown kind '%1' (one of %2)").arg(kind, known.join(", "));
    return false;
}

void FaultTable::set(QString const& route, Fault const& fault)
{
    std::lock_guard<std::mutex> lock(mMutex);
    for (auto& entry : mFaults) {
        bool const sameStage = (entry.second.kind == Fault::Kind::ExpiredToken) == (fault.kind == Fault::Kind::ExpiredToken);
        if (entry.first == route && sameStage) {
            entry.second = fault;
            return;
        }
    }
    mFaults.append(qMakePair(route, fault));
}

void FaultTable::clear()
{
    std::lock_guard<std::mutex> lock(mMutex);
    mFaults.clear();
}

bool FaultTable::takeTokenFault(QString const& path)
{
    Fault unused;
    return takeMatching(path, true, &unused);
}

bool FaultTable::takeAnswerFault(QString const& path, Fault* hit)
{
    return takeMatching(path, false, hit);
}

// A route can hold one token fault and one answer fault side by side, so
// that "expire the token, then time out" can be staged on one path.
bool FaultTable::takeMatching(QString const& path, bool expiredToken, Fault* hit)
{
    std::lock_guard<std::mutex> lock(mMutex);
    for (int i = 0; i < mFaults.size(); ++i) {
        Fault& fault = mFaults[i].second;
        if ((fault.kind == Fault::Kind::ExpiredToken) != expiredToken || !routeMatches(mFaults[i].first, path))
            continue;
        *hit = fault;
        if (fault.times > 0 && --fault.times == 0)
            mFaults.removeAt(i);
        return true;
    }
    return false;
}

} // namespace cloudsim
