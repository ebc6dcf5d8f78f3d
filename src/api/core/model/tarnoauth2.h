#pragma once

#include "cmpath.h"
#include "tarnhash.h"

// What a client needs to offer a login on a service's own page: whether the
// user is logged in already, and the paths to activate for each way of
// logging in (in a browser, or in the companion app).
class TarnOAuth2Info : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnOAuth2Info() = default;
    TarnOAuth2Info(TarnHash const& h) : TarnHash(h) {}

    bool loggedIn() const { return value(QStringLiteral("loggedIn")).toBool(); }
    TarnOAuth2Info& setLoggedIn(bool v) { insert(QStringLiteral("loggedIn"), v); return *this; }

    CMPath browserAuthFlowPath() const { return path(QStringLiteral("browserAuthFlowPath")); }
    TarnOAuth2Info& setBrowserAuthFlowPath(CMPath const& p)
    {
        insert(QStringLiteral("browserAuthFlowPath"), p.toEncoded());
        return *this;
    }

    CMPath appAuthFlowPath() const { return path(QStringLiteral("appAuthFlowPath")); }
    TarnOAuth2Info& setAppAuthFlowPath(CMPath const& p)
    {
        insert(QStringLiteral("appAuthFlowPath"), p.toEncoded());
        return *this;
    }

private:
    CMPath path(QString const& key) const { return CMPath::fromEncoded(value(key).toString()); }
};

// The answer to the activation of a login flow: the page to open.
class TarnOAuth2LoginData : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnOAuth2LoginData() = default;
    TarnOAuth2LoginData(TarnHash const& h) : TarnHash(h) {}

    QString url() const { return value(QStringLiteral("url")).toString(); }
    TarnOAuth2LoginData& setUrl(QString const& v) { insert(QStringLiteral("url"), v); return *this; }
};

Q_DECLARE_METATYPE(TarnOAuth2Info)
Q_DECLARE_METATYPE(TarnOAuth2LoginData)
