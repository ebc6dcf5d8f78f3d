#include "parse_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string valueOf(std::string const& document)
{
    Parse p(document);
    EXPECT_NE(p.only(), nullptr) << document << ": " << p.message();
    if (!p.only())
        return "<no value>";
    EXPECT_EQ(p.only()->type, JSON_STRING);
    return p.only()->stringValue;
}

TEST(JsonStrings, SimpleEscapesAreUnescapedInPlace)
{
    struct Row
    {
        const char* document;
        const char* expected;
    };
    const Row rows[] = {
        {R"(["plain"])", "plain"},
        {R"([""])", ""},
        {R"(["a\"b"])", "a\"b"},
        {R"(["a\\b"])", "a\\b"},
        {R"(["a\/b"])", "a/b"},
        {R"(["\b\f\n\r\t"])", "\b\f\n\r\t"},
        {R"(["\u0041\u00e9\u20AC"])", "A\xC3\xA9\xE2\x82\xAC"},
        {R"(["\u007f\u0080\u07FF\u0800\uffff"])", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
        // Bytes from 0x80 up are taken as they stand, valid UTF-8 or not.
        {"[\"caf\xC3\xA9 \xFF\xFE\"]", "caf\xC3\xA9 \xFF\xFE"},
    };
    for (Row const& row : rows)
        EXPECT_EQ(valueOf(row.document), row.expected) << row.document;
}

TEST(JsonStrings, SurrogateHalvesAreWrittenSeparately)
{
    EXPECT_EQ(valueOf(R"(["\uD83D\uDE00"])"), "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(JsonStrings, EscapedZeroEndsTheString)
{
    EXPECT_EQ(valueOf(R"(["ab\u0000cd"])"), "ab");
}

TEST(JsonStrings, EscapeAtEveryOffsetOfLongStrings)
{
    // Long bodies are copied a block at a time once an escape has shifted the
    // text; every offset of the escape relative to a block must come out whole.
    for (int length = 0; length < 70; ++length) {
        for (int at = 0; at <= length; ++at) {
            std::string body;
            std::string expected;
            for (int i = 0; i < length; ++i) {
                if (i == at) {
                    body += "\\u00e9\\n";
                    expected += "\xC3\xA9\n";
                }
                char c = static_cast<char>('a' + i % 26);
                body += c;
                expected += c;
            }
            if (at == length) {
                body += "\\\"";
                expected += "\"";
            }
            ASSERT_EQ(valueOf("[\"" + body + "\",1]"), expected) << body;
            ASSERT_EQ(valueOf("[\"" + body + "\"]"), expected) << body;
        }
    }
}

TEST(JsonStrings, KeysAreUnescapedLikeValues)
{
    Parse p(R"({"k\u00e9y\n":"v"})");
    ASSERT_NE(p.only(), nullptr);
    EXPECT_STREQ(p.only()->name, "k\xC3\xA9y\n");
    EXPECT_STREQ(p.only()->stringValue, "v");
}

} // namespace
