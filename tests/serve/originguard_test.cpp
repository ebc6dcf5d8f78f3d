#include "originguard.h"

#include <gtest/gtest.h>

namespace {

struct Asked
{
    char const* host;
    char const* origin;
    bool passes;
};

class LoopbackGuard : public testing::TestWithParam<Asked>
{
};

TEST_P(LoopbackGuard, passesOnlyItsOwnNamesAndOrigins)
{
    OriginGuard const guard(OriginGuard::authoritiesFor("127.0.0.1", 8090));
    Asked const asked = GetParam();
    EXPECT_EQ(guard.refusal(asked.host, asked.origin).isEmpty(), asked.passes)
        << asked.host << " " << asked.origin << ": " << guard.refusal(asked.host, asked.origin).toStdString();
}

INSTANTIATE_TEST_SUITE_P(Requests, LoopbackGuard,
                         testing::Values(Asked{"127.0.0.1:8090", "", true},
                                         Asked{"localhost:8090", "http://localhost:8090", true},
                                         Asked{"LOCALHOST:8090", "", true},
                                         Asked{"127.0.0.1:8090", "http://127.0.0.1:8090", true},
                                         // A name a foreign DNS server points at loopback.
                                         Asked{"evil.example:8090", "", false},
                                         Asked{"127.0.0.1:8091", "", false},
                                         Asked{"", "", false},
                                         // Another page in the same browser.
                                         Asked{"127.0.0.1:8090", "http://evil.example", false},
                                         Asked{"127.0.0.1:8090", "null", false},
                                         Asked{"127.0.0.1:8090", "http://localhost:8090", false},
                                         Asked{"127.0.0.1:8090", "https://127.0.0.1:8090", false}));

TEST(OriginGuard, everyAddressTakesAnyNameButOnlyItsOwnOrigin)
{
    OriginGuard const guard(OriginGuard::authoritiesFor("0.0.0.0", 8090));
    EXPECT_TRUE(guard.refusal("192.0.2.7:8090", "http://192.0.2.7:8090").isEmpty());
    EXPECT_FALSE(guard.refusal("192.0.2.7:8090", "http://evil.example").isEmpty());
}

TEST(OriginGuard, anIpv6AddressIsNamedInBrackets)
{
    EXPECT_EQ(OriginGuard::authoritiesFor("::1", 8090), QStringList{"[::1]:8090"});
}

} // namespace
