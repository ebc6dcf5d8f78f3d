#pragma once

#include "json.h"

#include <cstring>
#include <memory>
#include <string>

// One parse of a copy of `text`, in a heap buffer of exactly its length plus
// the terminating zero, so that the address sanitizer sees any read past it.
struct Parse
{
    explicit Parse(std::string const& text, bool lengthKnown = true)
        : size(text.size())
        , buffer(new char[text.size() + 1])
        , allocator(65536)
    {
        std::memcpy(buffer.get(), text.data(), text.size());
        buffer[text.size()] = 0;
        root = lengthKnown ? json_parse(buffer.get(), size, &errorPos, &errorDesc, &errorLine, &allocator)
                           : json_parse(buffer.get(), &errorPos, &errorDesc, &errorLine, &allocator);
    }

    long position() const { return errorPos ? errorPos - buffer.get() : -1; }
    std::string message() const { return errorDesc ? errorDesc : ""; }

    // The only element of a one-element root.
    json_value* only() const { return root ? root->firstChild : nullptr; }

    std::size_t size;
    std::unique_ptr<char[]> buffer;
    block_allocator allocator;
    json_value* root = nullptr;
    char* errorPos = nullptr;
    const char* errorDesc = nullptr;
    int errorLine = -1000;
};
