#include "parse_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const char* const kSecondRoot = "Second root. Only one root allowed";
const char* const kMismatch = "Mismatch closing brace/bracket";
const char* const kUnexpected = "Unexpected character";
const char* const kControl = "Control characters not allowed in strings";
const char* const kBadUnicode = "Bad unicode codepoint";
const char* const kBadEscape = "Unrecognized escape sequence";
const char* const kUnknown = "Unknown identifier";
const char* const kBadInteger = "Bad integer number";
const char* const kBadFloat = "Bad float number";
const char* const kNotClosed = "Not all objects/arrays have been properly closed";

struct ErrorRow
{
    std::string input;
    const char* message;
    long position;
    int line;
};

void expectErrors(std::initializer_list<ErrorRow> rows)
{
    for (ErrorRow const& row : rows) {
        SCOPED_TRACE(row.input);
        Parse p(row.input);
        EXPECT_EQ(p.root, nullptr);
        EXPECT_EQ(p.message(), row.message);
        EXPECT_EQ(p.position(), row.position);
        EXPECT_EQ(p.errorLine, row.line);
    }
}

TEST(JsonErrors, Structure)
{
    expectErrors({
        // {} {}
        //     ^  one past the second root's brace
        {"{} {}", kSecondRoot, 4, 1},
        // {} x
        //    ^
        {"{} x", kUnexpected, 3, 1},
        // {} }
        //    ^
        {"{} }", kMismatch, 3, 1},
        // [1}
        //   ^
        {"[1}", kMismatch, 2, 1},
        // {"a":[}]
        //       ^
        {R"({"a":[}])", kMismatch, 6, 1},
        // ["a":2]
        //     ^  a colon only means something in an object
        {R"(["a":2])", kUnexpected, 4, 1},
        // ,[]
        // ^
        {",[]", kUnexpected, 0, 1},
        // "a"
        // ^  the root must be an object or an array
        {R"("a")", kUnexpected, 0, 1},
        // 12
        // ^
        {"12", kUnexpected, 0, 1},
        // true
        // ^
        {"true", kUnexpected, 0, 1},
        // [+1]
        //  ^
        {"[+1]", kUnexpected, 1, 1},
        // [.5]
        //  ^
        {"[.5]", kUnexpected, 1, 1},
        // [\x7f]
        //  ^
        {"[\x7f]", kUnexpected, 1, 1},
        // [\x01]
        //  ^
        {"[\x01]", kUnexpected, 1, 1},
        // {"a":[1]
        //         ^  the terminating zero
        {R"({"a":[1])", kNotClosed, 8, 1},
        // ["abc
        //      ^  an open string just stops at the end
        {R"(["abc)", kNotClosed, 5, 1},
    });
}

TEST(JsonErrors, Lexical)
{
    expectErrors({
        // ["a<TAB>b"]
        //  ^  positioned at the string's first byte
        {"[\"a\tb\"]", kControl, 2, 1},
        // {"k":"ab<0x01>"}
        //      ^
        {"{\"k\":\"ab\x01\"}", kControl, 6, 1},
        // ["ab\u12G4"]
        //     ^  at the backslash
        {R"(["ab\u12G4"])", kBadUnicode, 4, 1},
        // ["\u12"]
        //   ^
        {R"(["\u12"])", kBadUnicode, 2, 1},
        // ["ab\x"]
        //   ^  at the string's first byte
        {R"(["ab\x"])", kBadEscape, 2, 1},
        // ["\ (end of text)
        //   ^
        {R"(["\)", kBadEscape, 2, 1},
        // [nul]
        //  ^
        {"[nul]", kUnknown, 1, 1},
        // [truth]
        //  ^
        {"[truth]", kUnknown, 1, 1},
        // [nullx]
        //      ^  null is matched by its four letters alone
        {"[nullx]", kUnexpected, 5, 1},
        // [1a]
        //  ^
        {"[1a]", kBadInteger, 1, 1},
        // [--1]
        //  ^
        {"[--1]", kBadInteger, 1, 1},
        // [1.5.2]
        //  ^
        {"[1.5.2]", kBadFloat, 1, 1},
        // [1e5e]
        //  ^
        {"[1e5e]", kBadFloat, 1, 1},
        // [1ex]
        //  ^
        {"[1ex]", kBadFloat, 1, 1},
    });
}

TEST(JsonErrors, LineCountsRealLineFeedsOnly)
{
    expectErrors({
        // {
        // "a":
        //  x}
        //  ^
        {"{\n\"a\":\n x}", kUnexpected, 8, 3},
        // {"a":"b\nc",
        //  x}
        //  ^  the escaped line feed does not raise the line
        {"{\"a\":\"b\\nc\",\n x}", kUnexpected, 14, 2},
        // ["\n\n",x]
        //        ^
        {R"(["\n\n",x])", kUnexpected, 8, 1},
        // ["\u000a",x]
        //          ^  a line feed written by \u is not cancelled
        {R"(["\u000a",x])", kUnexpected, 10, 2},
        // ["a\n\n\x"]
        //   ^  the written line feeds lie past the position and go uncounted
        {R"(["a\n\n\x"])", kBadEscape, 2, -1},
        // {"a":"x<LF>y"}
        //      ^
        {"{\"a\":\n\"x\ny\"}", kControl, 7, 2},
    });
}

TEST(JsonErrors, SuccessLeavesOutParametersAlone)
{
    Parse p(R"({"a":[1,2.5,"x",true,null]})");
    ASSERT_NE(p.root, nullptr);
    EXPECT_EQ(p.errorPos, nullptr);
    EXPECT_EQ(p.errorDesc, nullptr);
    EXPECT_EQ(p.errorLine, -1000);
}

TEST(JsonErrors, EmptyInputIsNullWithoutError)
{
    for (const char* text : {"", " \t\r\n "}) {
        Parse p(text);
        EXPECT_EQ(p.root, nullptr);
        EXPECT_EQ(p.errorDesc, nullptr);
        EXPECT_EQ(p.errorLine, -1000);
    }
}

} // namespace
