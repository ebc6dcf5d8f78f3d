#include "parse_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<json_value*> children(json_value* node)
{
    std::vector<json_value*> out;
    for (json_value* c = node->firstChild; c; c = c->nextSibling)
        out.push_back(c);
    return out;
}

// A compact text form of a tree, keys as k=, to compare shapes.
std::string shape(json_value* node)
{
    std::string out;
    if (node->name)
        out += std::string(node->name) + "=";
    switch (node->type) {
    case JSON_OBJECT:
    case JSON_ARRAY:
        out += node->type == JSON_OBJECT ? "{" : "[";
        for (json_value* c : children(node))
            out += shape(c) + ";";
        out += node->type == JSON_OBJECT ? "}" : "]";
        break;
    case JSON_STRING:
        out += std::string("'") + node->stringValue + "'";
        break;
    case JSON_INT:
        out += std::to_string(node->intValue);
        break;
    case JSON_FLOAT:
        out += std::to_string(node->floatValue);
        break;
    case JSON_BOOL:
        out += node->intValue ? "true" : "false";
        break;
    default:
        out += "null";
    }
    return out;
}

TEST(JsonTree, EmptyContainersHaveNoChildren)
{
    for (const char* text : {"{}", "[]", " { } "}) {
        Parse p(text);
        ASSERT_NE(p.root, nullptr) << text;
        EXPECT_EQ(p.root->firstChild, nullptr);
        EXPECT_EQ(p.root->lastChild, nullptr);
        EXPECT_EQ(p.root->parent, nullptr);
    }
}

TEST(JsonTree, LinksAndKeys)
{
    Parse p(R"({"a":1,"b":[true,false,null],"c":{"d":"e"}})");
    ASSERT_NE(p.root, nullptr);
    EXPECT_EQ(shape(p.root), "{a=1;b=[true;false;null;];c={d='e';};}");
    std::vector<json_value*> top = children(p.root);
    ASSERT_EQ(top.size(), 3u);
    EXPECT_EQ(p.root->lastChild, top[2]);
    for (json_value* c : top)
        EXPECT_EQ(c->parent, p.root);
    EXPECT_EQ(top[1]->lastChild->type, JSON_NULL);
    EXPECT_EQ(top[2]->firstChild->parent, top[2]);
}

TEST(JsonTree, SeparatorsAreOnlySkipped)
{
    struct Row
    {
        const char* text;
        const char* shape;
    };
    const Row rows[] = {
        {"[1 2]", "[1;2;]"},
        {"[,,1,,]", "[1;]"},
        {R"({"a" 1})", "{a=1;}"},
        {R"({"a"::1})", "{a=1;}"},
        {R"({"a":1,})", "{a=1;}"},
        {R"({,"a",:,"b",})", "{a='b';}"},
        {"[nullnull true]", "[null;null;true;]"},
        {"[[][]{}]", "[[];[];{};]"},
    };
    for (Row const& row : rows) {
        Parse p(row.text);
        ASSERT_NE(p.root, nullptr) << row.text << ": " << p.message();
        EXPECT_EQ(shape(p.root), row.shape) << row.text;
    }
}

TEST(JsonTree, PendingKeySurvivesAClosingBrace)
{
    Parse p(R"({"x":{"a"},"b":1})");
    ASSERT_NE(p.root, nullptr);
    // "b" becomes the value of the pending key "a", and 1 gets no key.
    EXPECT_EQ(shape(p.root), "{x={};a='b';1;}");
}

TEST(JsonTree, KeysOnlyInsideObjects)
{
    Parse p(R"({"list":["a","b",{"k":"v"}],"s":"t"})");
    ASSERT_NE(p.root, nullptr);
    EXPECT_EQ(shape(p.root), "{list=['a';'b';{k='v';};];s='t';}");
}

TEST(JsonTree, DeepNestingNeedsNoStack)
{
    const int depth = 200000;
    Parse p(std::string(depth, '[') + std::string(depth, ']'));
    ASSERT_NE(p.root, nullptr);
    json_value* node = p.root;
    int levels = 1;
    while (node->firstChild) {
        node = node->firstChild;
        ++levels;
    }
    EXPECT_EQ(levels, depth);
}

TEST(JsonTree, EveryNodeIsOneAllocation)
{
    Parse p(R"({"a":[1,2,{"b":null}],"c":"d"})");
    ASSERT_NE(p.root, nullptr);
    // root, a, 1, 2, {}, b, c
    EXPECT_EQ(p.allocator.bytesAllocated, 7 * sizeof(json_value));
    EXPECT_EQ(p.allocator.blockCount, 1u);
}

TEST(BlockAllocator, BumpsWithinABlockAndChainsNewOnes)
{
    block_allocator a(256);
    const unsigned long header = sizeof(block_allocator::block);
    char* first = static_cast<char*>(a.malloc(64));
    char* second = static_cast<char*>(a.malloc(64));
    EXPECT_EQ(second, first + 64);
    EXPECT_EQ(a.blockCount, 1u);
    EXPECT_EQ(a.head->size, 256u);
    EXPECT_EQ(a.head->used, header + 128);

    // Does not fit the rest of the block: a new head, the old tail abandoned.
    block_allocator::block* old = a.head;
    a.malloc(256 - header - 127);
    EXPECT_EQ(a.blockCount, 2u);
    EXPECT_EQ(a.head->next, old);

    // Larger than a block: an area of its own, sized to fit.
    a.malloc(1000);
    EXPECT_EQ(a.blockCount, 3u);
    EXPECT_EQ(a.head->size, 1000 + header);
    EXPECT_EQ(a.bytesAllocated, 128 + (256 - header - 127) + 1000);

    a.free();
    EXPECT_EQ(a.head, nullptr);
    EXPECT_EQ(a.blockCount, 3u);
}

} // namespace
