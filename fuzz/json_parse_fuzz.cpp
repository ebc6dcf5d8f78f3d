// Feeds arbitrary bytes to json_parse, in a buffer of exactly their length
// plus the terminating zero, and checks what it promises: a tree whose links
// hold together, or null with a message and a position inside the buffer.
#include "json.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

void check(bool condition)
{
    if (!condition)
        std::abort();
}

// Walks the tree without recursion, as deep documents are cheap to make.
void walk(json_value* root, const char* begin, const char* end)
{
    check(root->parent == nullptr);
    check(root->type == JSON_OBJECT || root->type == JSON_ARRAY);
    json_value* node = root;
    for (;;) {
        if (node->type == JSON_STRING)
            check(node->stringValue >= begin && node->stringValue <= end);
        if (node->name)
            check(node->name >= begin && node->name <= end);
        if (node->firstChild) {
            check(node->firstChild->parent == node);
            node = node->firstChild;
            continue;
        }
        while (node != root && !node->nextSibling) {
            check(node->parent->lastChild == node);
            node = node->parent;
        }
        if (node == root)
            return;
        check(node->nextSibling->parent == node->parent);
        node = node->nextSibling;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    for (bool lengthKnown : {true, false}) {
        char* text = static_cast<char*>(std::malloc(size + 1));
        if (size)
            std::memcpy(text, data, size);
        text[size] = 0;

        block_allocator allocator(65536);
        char* errorPos = nullptr;
        const char* errorDesc = nullptr;
        int errorLine = 0;
        json_value* root = lengthKnown
            ? json_parse(text, static_cast<unsigned long>(size), &errorPos, &errorDesc, &errorLine, &allocator)
            : json_parse(text, &errorPos, &errorDesc, &errorLine, &allocator);
        if (root) {
            check(errorDesc == nullptr);
            walk(root, text, text + size);
        } else if (errorDesc) {
            check(errorPos >= text && errorPos <= text + size);
        }
        std::free(text);
    }
    return 0;
}
