#include "hostprocess.h"

#include <gtest/gtest.h>

namespace {

struct ErrorCase
{
    char const* name;
    QStringList arguments;
    int exitCode;
    char const* message; // part of the one line on standard error
};

std::ostream& operator<<(std::ostream& os, ErrorCase const& c)
{
    return os << c.name;
}

class CliErrors : public ::testing::TestWithParam<ErrorCase>
{
};

} // namespace

TEST_P(CliErrors, endWithOneClearLineAndTheirExitStatus)
{
    ErrorCase const& c = GetParam();
    HostRun const run = runHost(c.arguments);
    EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
    QStringList const lines = run.toolErrors();
    ASSERT_EQ(lines.size(), 1) << run.err.toStdString();
    EXPECT_TRUE(lines.first().contains(QString::fromUtf8(c.message))) << lines.first().toStdString();
    EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Usage, CliErrors,
    ::testing::Values(ErrorCase{"noCommand", {}, 2, "no command given"},
                      ErrorCase{"unknownCommand", {"frobnicate"}, 2, "unknown command 'frobnicate'"},
                      ErrorCase{"shellOnlyCommand", {"cd", "3"}, 2, "unknown command 'cd'"},
                      ErrorCase{"unknownOption", {"ls", "--bogus"}, 2, "unknown option '--bogus'"},
                      ErrorCase{"unknownRole", {"ls", "--roles", "title,nope"}, 2, "unknown role 'nope'"},
                      ErrorCase{"badRowNumber", {"ls", "/", "x"}, 2, "FROM must be a row number"},
                      ErrorCase{"tooManyArguments", {"get", "/a", "/b"}, 2, "usage: get PATH"},
                      ErrorCase{"badJsonValue", {"set", "/", "value", "{bad"}, 2, "no JSON value"},
                      ErrorCase{"bareWordIsNoJson", {"set", "/", "value", "alice"}, 2, "no JSON value"},
                      ErrorCase{"badOptionValue", {"--page-size", "0", "ls"}, 2, "bad value for page-size"},
                      ErrorCase{"badMac", {"--mac", "00:11", "ls"}, 2, "bad value for mac"},
                      ErrorCase{"cloudWithoutSecret", {"--cloud", "http://127.0.0.1:1", "ls"}, 2, "--cloud needs --secret"},
                      ErrorCase{"badFault", {"--fault", "nonsense", "ls"}, 2, "bad value for fault"},
                      ErrorCase{"missingConfig", {"--config", "/nonexistent/tarn.ini", "ls"}, 2, "cannot read"}),
    [](auto const& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Replies, CliErrors,
    ::testing::Values(
        ErrorCase{"badPath", {"get", "/no/such/thing"}, 1, ""},
        ErrorCase{"noRowWithoutListing", {"get", "3"}, 1, "No row 3 in the last listing"},
        ErrorCase{"unreachableCloud", {"--cloud", "http://127.0.0.1:1", "--secret", "s", "ls"}, 1, ""},
        ErrorCase{"refusedSecret", {"--secret", "not-the-secret", "ls"}, 1, ""},
        ErrorCase{"timeOut", {"--fault", "/=delay:4000", "--timeout", "1", "ls"}, 1, "No answer within 1 s"},
        ErrorCase{"nothingToPlay", {"play", "/airable/radios/popular"}, 1, "has nothing to play"},
        ErrorCase{"playingAnErrorAnswer", {"play", "/errors/skip"}, 1, ""}),
    [](auto const& info) { return std::string(info.param.name); });

TEST(CliErrorsAsJson, areOneObjectWithNameAndMessage)
{
    HostRun const run = runHost({"--json", "frobnicate"});
    EXPECT_EQ(run.exitCode, 2);
    QList<QJsonObject> const out = run.objects();
    ASSERT_EQ(out.size(), 1);
    QJsonObject const error = out.first().value("error").toObject();
    EXPECT_EQ(error.value("name").toString(), "usage");
    EXPECT_TRUE(error.value("message").toString().contains("frobnicate"));
}
