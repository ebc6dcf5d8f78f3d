#include "fault.h"

namespace cloudsim {

namespace {

bool routeMatches(QString const& route, QString const& path)
{
    if (route.endsWith('*'))
        return path.startsWith(route.left(route.size() - 1));
    return route == path;
}

} // namespace

bool parseFault(QString const& text, QString* route, Fault* fault)
{
    int const equals = text.indexOf('=');
    if (equals <= 0)
        return false;
    *route = text.left(equals);
    QString rule = text.mid(equals + 1);

    Fault parsed;
    bool ok = true;
    int const at = rule.indexOf('@');
    if (at >= 0) {
        parsed.times = rule.mid(at + 1).toInt(&ok);
        if (!ok || parsed.times == 0)
            return false;
        rule = rule.left(at);
    }
    QString const kind = rule.section(':', 0, 0);
    QString const value = rule.section(':', 1);
    struct Word
    {
        char const* name;
        Fault::Kind kind;
        bool needsValue;
    };
    static Word const words[] = {
        {"status", Fault::Kind::Status, true},          {"delay", Fault::Kind::Delay, true},
        {"garbage", Fault::Kind::Garbage, false},       {"truncated", Fault::Kind::Truncated, false},
        {"oversize", Fault::Kind::Oversize, true},      {"close", Fault::Kind::CloseConnection, false},
        {"expired-token", Fault::Kind::ExpiredToken, false},
    };
    for (Word const& word : words) {
        if (kind != word.name)
            continue;
        if (word.needsValue == value.isEmpty())
            return false;
        parsed.kind = word.kind;
        parsed.value = word.needsValue ? value.toInt(&ok) : 0;
        if (!ok)
            return false;
        *fault = parsed;
        return true;
    }
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
