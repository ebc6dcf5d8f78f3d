#include "parse_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace {

TEST(JsonNumbers, Integers)
{
    struct Row
    {
        const char* text;
        long long expected;
    };
    const Row rows[] = {
        {"0", 0},
        {"-0", 0},
        {"42", 42},
        {"-42", -42},
        {"007", 7},
        {"-", 0},
        {"3000000000", 3000000000LL},
        {"9223372036854775807", std::numeric_limits<long long>::max()},
        {"-9223372036854775808", std::numeric_limits<long long>::min()},
        // No overflow check: the value wraps.
        {"9223372036854775808", std::numeric_limits<long long>::min()},
        {"18446744073709551617", 1},
    };
    for (Row const& row : rows) {
        Parse p(std::string("[") + row.text + "]");
        ASSERT_NE(p.only(), nullptr) << row.text << ": " << p.message();
        EXPECT_EQ(p.only()->type, JSON_INT) << row.text;
        EXPECT_EQ(p.only()->intValue, row.expected) << row.text;
    }
}

TEST(JsonNumbers, FloatsUseSinglePrecisionSteps)
{
    struct Row
    {
        const char* text;
        float expected;
    };
    const float inf = std::numeric_limits<float>::infinity();
    const Row rows[] = {
        {"1.5", 1.5f},
        {"-0.25", -0.25f},
        {"1.", 1.0f},
        {"-.5", -0.5f},
        {"1e", 1.0f},
        {"1e-", 1.0f},
        {"1e5", 100000.0f},
        {"1E+2", 100.0f},
        {"25e-1", 2.5f},
        // Digit by digit in 32 bits, which is not the nearest float.
        {"3.14159", 0x1.921f9cp+1f},
        {"6.02e23", 0x1.fde9fp+78f},
        {"1.5e400", inf},
        {"-1.5e400", -inf},
        {"1e-400", 0.0f},
        // The exponent is unsigned 32-bit and wraps to zero here.
        {"1e4294967296", 1.0f},
    };
    for (Row const& row : rows) {
        Parse p(std::string("[") + row.text + "]");
        ASSERT_NE(p.only(), nullptr) << row.text << ": " << p.message();
        EXPECT_EQ(p.only()->type, JSON_FLOAT) << row.text;
        EXPECT_EQ(p.only()->floatValue, row.expected) << row.text;
    }
}

TEST(JsonNumbers, SignOnlyFloatIsNegativeZero)
{
    Parse p("[-e]");
    ASSERT_NE(p.only(), nullptr);
    EXPECT_EQ(p.only()->floatValue, 0.0f);
    EXPECT_TRUE(std::signbit(p.only()->floatValue));
}

TEST(JsonNumbers, ZeroTimesInfiniteExponentIsNan)
{
    Parse p("[0e4000000000]");
    ASSERT_NE(p.only(), nullptr);
    EXPECT_TRUE(std::isnan(p.only()->floatValue));
}

TEST(JsonNumbers, EachStopByteEndsANumber)
{
    for (const char* text : {"[12 ]", "[12\t]", "[12\r]", "[12\n]", "[12,]", "[12]", R"({"a":12})"}) {
        Parse p(text);
        ASSERT_NE(p.only(), nullptr) << text << ": " << p.message();
        EXPECT_EQ(p.only()->intValue, 12);
    }
    for (const char* text : {"[1.5 ]", "[1.5\t]", "[1.5\r]", "[1.5\n]", "[1.5,]", "[1.5]", R"({"a":1.5})"}) {
        Parse p(text);
        ASSERT_NE(p.only(), nullptr) << text << ": " << p.message();
        EXPECT_EQ(p.only()->floatValue, 1.5f);
    }
}

TEST(JsonNumbers, OtherBytesBelongToTheNumber)
{
    // A quote or a colon is no stop byte, so it spoils the number.
    Parse quote(R"([1"a"])");
    EXPECT_EQ(quote.message(), "Bad integer number");
    Parse colon(R"({"a":1:2})");
    EXPECT_EQ(colon.message(), "Bad integer number");
    Parse exponent("[1e5x]");
    EXPECT_EQ(exponent.message(), "Bad float number");
}

TEST(JsonNumbers, CutInsideANumberStopsAtTheEnd)
{
    Parse p(R"({"a":12)");
    EXPECT_EQ(p.root, nullptr);
    EXPECT_EQ(p.message(), "Not all objects/arrays have been properly closed");
    EXPECT_EQ(p.position(), 7);
}

TEST(JsonNumbers, ZeroInsideANumberIsScannedWhenTheLengthIsKnown)
{
    const std::string text("[1\0]", 4);
    Parse known(text);
    EXPECT_EQ(known.message(), "Bad integer number");
    EXPECT_EQ(known.position(), 1);

    // Without a length the first zero is the end.
    Parse unknown(text, false);
    EXPECT_EQ(unknown.message(), "Not all objects/arrays have been properly closed");
    EXPECT_EQ(unknown.position(), 2);
}

} // namespace
