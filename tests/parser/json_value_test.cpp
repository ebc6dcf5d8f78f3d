#include "JsonParser.h"
#include "JsonValue.h"
#include "json.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

using portable::utils::JsonParser;
using portable::utils::JsonValue;
using portable::utils::RootJsonValue;

namespace {

JsonValue::Ptr parsedRoot(JsonParser& parser, const char* text)
{
    EXPECT_TRUE(parser.parse(QByteArray(text))) << text;
    return parser.root();
}

TEST(JsonValue, InvalidValueAnswersEverything)
{
    JsonParser parser;
    JsonValue::Ptr root = parsedRoot(parser, "{}");
    JsonValue::Ptr missing = root->firstChild()->nextSibling();
    ASSERT_FALSE(missing.isNull());
    EXPECT_FALSE(missing->isValid());
    EXPECT_EQ(missing->stringValue(), QString());
    EXPECT_EQ(missing->name(), QString());
    EXPECT_EQ(missing->type(), JSON_NULL);
    EXPECT_EQ(missing->intValue(), 0);
    EXPECT_EQ(missing->floatValue(), 0.0f);
    EXPECT_EQ(missing->numChildren(), 0);
    for (JsonValue::Ptr next : {missing->parent(), missing->lastChild(), missing->childByName("a"),
                                missing->siblingByName("a"), missing->childByIndex(0)}) {
        ASSERT_FALSE(next.isNull());
        EXPECT_FALSE(next->isValid());
    }
}

TEST(JsonValue, ReadersAnswerOnlyForTheirOwnTypes)
{
    JsonParser parser;
    JsonValue::Ptr root = parsedRoot(parser, R"({"t":true,"f":false,"i":1,"x":1.0,"s":"5","n":5,"z":null})");
    EXPECT_EQ(root->childByName("t")->intValue(), 1);
    EXPECT_EQ(root->childByName("f")->intValue(), 0);
    EXPECT_EQ(root->childByName("i")->floatValue(), 0.0f);
    EXPECT_EQ(root->childByName("x")->floatValue(), 1.0f);
    EXPECT_EQ(root->childByName("x")->intValue(), 0);
    EXPECT_EQ(root->childByName("s")->intValue(), 0);
    EXPECT_EQ(root->childByName("n")->stringValue(), QString());
    EXPECT_EQ(root->childByName("z")->type(), JSON_NULL);
    EXPECT_TRUE(root->childByName("z")->isValid());
}

TEST(JsonValue, KeepsSixtyFourBitIntegers)
{
    JsonParser parser;
    JsonValue::Ptr root = parsedRoot(parser, R"({"count":3000000000})");
    EXPECT_EQ(root->childByName("count")->intValue(), Q_INT64_C(3000000000));
}

TEST(JsonValue, Navigation)
{
    JsonParser parser;
    JsonValue::Ptr root = parsedRoot(parser, R"({"a":1,"b":[10,20,30],"a":2,"c":{}})");
    EXPECT_EQ(root->numChildren(), 4);
    JsonValue::Ptr b = root->childByName("b");
    EXPECT_EQ(b->numChildren(), 3);
    EXPECT_EQ(b->childByIndex(2)->intValue(), 30);
    EXPECT_FALSE(b->childByIndex(3)->isValid());
    EXPECT_FALSE(b->childByIndex(-1)->isValid());
    EXPECT_EQ(b->lastChild()->intValue(), 30);
    EXPECT_TRUE(*b->firstChild()->parent() == *b);
    EXPECT_FALSE(*b == *root);

    // The first match wins, and a sibling search starts behind the node.
    JsonValue::Ptr first = root->childByName("a");
    EXPECT_EQ(first->intValue(), 1);
    EXPECT_EQ(first->siblingByName("a")->intValue(), 2);
    EXPECT_FALSE(root->childByName("a")->siblingByName("a")->siblingByName("a")->isValid());
    EXPECT_FALSE(root->childByName("A")->isValid());

    // Array elements have no key: the empty name finds the first of them.
    EXPECT_EQ(b->childByName("")->intValue(), 10);
    EXPECT_EQ(b->firstChild()->name(), QString());
}

TEST(JsonValue, CopiedHandleSharesTheNodeButNotTheCount)
{
    JsonParser parser;
    JsonValue::Ptr root = parsedRoot(parser, R"({"a":"x"})");
    JsonValue::Ptr original = root->firstChild();
    JsonValue::Ptr copy(new JsonValue(*original));
    EXPECT_EQ(copy->refCount(), 1);
    EXPECT_TRUE(*copy == *original);
    EXPECT_EQ(copy->stringValue(), "x");
}

TEST(JsonValue, KeysAreLatin1AndValuesUtf8)
{
    JsonParser parser;
    JsonValue::Ptr root = parsedRoot(parser, "{\"caf\xC3\xA9\":\"caf\xC3\xA9\"}");
    JsonValue::Ptr member = root->firstChild();
    EXPECT_EQ(member->name(), QString::fromLatin1("caf\xC3\xA9"));
    EXPECT_EQ(member->stringValue(), QString::fromUtf8("caf\xC3\xA9"));
    EXPECT_TRUE(root->childByName(QString::fromLatin1("caf\xC3\xA9"))->isValid());
    EXPECT_FALSE(root->childByName(QString::fromUtf8("caf\xC3\xA9"))->isValid());
}

TEST(JsonParser, ANewParseReplacesTheOldTree)
{
    JsonParser parser;
    EXPECT_FALSE(parser.root().isNull());
    EXPECT_FALSE(parser.root()->isValid());

    ASSERT_TRUE(parser.parse(R"({"a":1})"));
    ASSERT_TRUE(parser.parse(R"({"b":2})"));
    EXPECT_EQ(parser.root()->firstChild()->name(), "b");

    EXPECT_FALSE(parser.parse(R"({"c":)"));
    EXPECT_FALSE(parser.root()->isValid());
    EXPECT_FALSE(parser.parse(""));
    EXPECT_FALSE(parser.root()->isValid());
}

TEST(JsonParser, RootKeepsTheTreeAliveWithoutTheParser)
{
    RootJsonValue::Ptr root;
    {
        JsonParser::Ptr parser(new JsonParser);
        ASSERT_TRUE(parser->parse(R"({"title":"kept"})"));
        root = parser->root();
    }
    EXPECT_EQ(root->childByName("title")->stringValue(), "kept");
}

TEST(JsonParser, SharedInputIsNotRewritten)
{
    const QByteArray original(R"({"a":"x\ny","b":"\u00e9"})");
    QByteArray shared = original;
    JsonParser parser;
    ASSERT_TRUE(parser.parse(shared));
    EXPECT_EQ(shared, original);
    EXPECT_EQ(QByteArray(original.constData()), QByteArray(R"({"a":"x\ny","b":"\u00e9"})"));
    EXPECT_EQ(parser.root()->childByName("a")->stringValue(), "x\ny");
    parser.dump();
}

TEST(JsonParser, EmbeddedZeroIsPartOfTheDocument)
{
    // The whole array is parsed, not just the text up to the zero.
    JsonParser parser;
    EXPECT_FALSE(parser.parse(QByteArray("[1\0]", 4)));
    EXPECT_TRUE(parser.parse(QByteArray("[1]\0", 4)));
}

} // namespace
