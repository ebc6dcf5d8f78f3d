#include "cmpath.h"
#include "tarnconstants.h"
#include "tarnurl.h"

#include <QHash>
#include <QRegExp>
#include <gtest/gtest.h>

TEST(Path, encodedFormRoundTripsWithParameters)
{
    CMPath path(QStringLiteral("oauth:"), QStringLiteral("airable"));
    path.addParam(QStringLiteral("url"), QStringLiteral("http://x/a?b=1&c=:return:"));
    path.addParam(QStringLiteral("oauthType"), QStringLiteral("app"));
    CMPath const back = CMPath::fromEncoded(path.toEncoded());
    EXPECT_EQ(back, path);
    EXPECT_EQ(back.param(QStringLiteral("url")), QStringLiteral("http://x/a?b=1&c=:return:"));
    EXPECT_EQ(back.base(), QStringLiteral("airable"));

    CMPath const plain = CMPath::fromPrefixWithBase(QStringLiteral("airable:https://cloud/x?p=1"));
    EXPECT_EQ(CMPath::fromEncoded(plain.toEncoded()), plain);
    EXPECT_EQ(plain.toEncoded(), QStringLiteral("airable:https://cloud/x?p=1"));
}

TEST(Path, prefixIsTheTextUpToTheFirstColon)
{
    CMPath const p = CMPath::fromPrefixWithBase(QStringLiteral("airable:http://a:80/b"));
    EXPECT_EQ(p.prefix(), QStringLiteral("airable:"));
    EXPECT_EQ(p.base(), QStringLiteral("http://a:80/b"));
    EXPECT_EQ(p.baseWithPrefix(), QStringLiteral("airable:http://a:80/b"));
    EXPECT_TRUE(CMPath::fromPrefixWithBase(QStringLiteral("relative/x")).prefix().isEmpty());
}

TEST(Path, startsWithComparesPrefixAndBaseAndGivesTheRest)
{
    CMPath const form(QStringLiteral("airable:"), QStringLiteral("form"));
    CMPath const row(QStringLiteral("airable:"), QStringLiteral("form12:user"));
    QString rest;
    EXPECT_TRUE(row.startsWith(form, &rest));
    EXPECT_EQ(rest, QStringLiteral("12:user"));
    EXPECT_TRUE(row.startsWith(form, nullptr));
    EXPECT_FALSE(CMPath(QStringLiteral("other:"), QStringLiteral("form12")).startsWith(form));
    EXPECT_FALSE(form.startsWith(row));
}

TEST(Path, appendingTextAndSubpaths)
{
    CMPath p(QStringLiteral("services:"), QString());
    EXPECT_EQ((p + QStringLiteral("deezer")).baseWithPrefix(), QStringLiteral("services:deezer"));
    p.appendSubpath(QStringLiteral("a"));
    p.appendSubpath(QStringLiteral("b"));
    EXPECT_EQ(p.base(), QStringLiteral("a/b"));
    EXPECT_EQ(p.splitBase(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

TEST(Path, usableAsHashKeyWithParametersTellingPathsApart)
{
    QHash<CMPath, int> h;
    CMPath a(QStringLiteral("airable:"), QStringLiteral("x"));
    CMPath b = a;
    b.addParam(QStringLiteral("k"), QStringLiteral("v"));
    h.insert(a, 1);
    h.insert(b, 2);
    h.insert(CMPath::fromEncoded(a.toEncoded()), 3);
    EXPECT_EQ(h.size(), 2);
    EXPECT_EQ(h.value(a), 3);
    EXPECT_EQ(h.value(b), 2);
}

// The module's path grammar depends on these properties of the constants.
TEST(Constants, prefixesFollowTheRulesOfThePathGrammar)
{
    QStringList const prefixes{
        TarnAirablePrefixForm(), TarnAirablePrefixMessage(), TarnAirablePrefixActionDialog(),
        TarnAirablePrefixContext(), TarnAirablePrefixPlayContext(), TarnAirablePrefixContentContext(),
        TarnAirablePrefixAction(), TarnAirablePrefixLogout(), TarnAirablePrefixPreplay(),
        TarnAirableStateChange(),
    };
    EXPECT_EQ(QStringLiteral("airable:") + TarnAirablePrefixLogout(), QStringLiteral("airable:logout"));
    for (auto const& p : prefixes) {
        EXPECT_FALSE(p.contains(QLatin1Char(':'))) << p.toStdString();
        EXPECT_EQ(QRegExp::escape(p), p) << p.toStdString();
        EXPECT_FALSE(p.startsWith(QStringLiteral("http"))) << p.toStdString();
        for (auto const& q : prefixes) {
            if (&p != &q) {
                EXPECT_FALSE(q.startsWith(p)) << p.toStdString() << " starts " << q.toStdString();
            }
        }
    }
    EXPECT_EQ(tarnMac2NoColonMac(QStringLiteral("AA:BB:CC:00:11:22")), QStringLiteral("AABBCC001122"));
}

TEST(Url, textIsTakenAsAlreadyEncoded)
{
    TarnUrl const url(QStringLiteral("http://host/a%20b?q=x%2By"));
    EXPECT_EQ(url.toEncoded(), QByteArray("http://host/a%20b?q=x%2By"));
    EXPECT_EQ(url.path(), QStringLiteral("/a%20b"));
    EXPECT_EQ(url.queryItemValue(QStringLiteral("q")), QStringLiteral("x+y"));

    TarnUrl u(QStringLiteral("http://host/auth"));
    u.addQueryItem(QStringLiteral("salt"), QStringLiteral("a&b c"));
    u.addQueryItem(QStringLiteral("salt2"), QString(QChar(0)));
    EXPECT_EQ(u.toEncoded(), QByteArray("http://host/auth?salt=a%26b%20c&salt2=%00"));
    EXPECT_EQ(u.queryItemValue(QStringLiteral("salt")), QStringLiteral("a&b c"));
    u.removeQueryItem(QStringLiteral("salt"));
    EXPECT_EQ(u.toEncoded(), QByteArray("http://host/auth?salt2=%00"));
    EXPECT_FALSE(TarnUrl(QStringLiteral("")).isValid());
}
