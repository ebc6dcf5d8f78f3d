#pragma once

#include <cstdint>

// In-place JSON parser. A document is read in one forward pass and rewritten
// inside its own buffer: strings are unescaped where they stand and the nodes
// point into the buffer, so the buffer must outlive the tree. Nodes come from a
// bump allocator that is released as a whole.

enum json_type
{
    JSON_NULL = 0,
    JSON_OBJECT = 1,
    JSON_ARRAY = 2,
    JSON_STRING = 3,
    JSON_INT = 4,
    JSON_FLOAT = 5,
    JSON_BOOL = 6
};

struct json_value
{
    json_value* parent;
    json_value* nextSibling;
    json_value* firstChild;
    json_value* lastChild;

    // Key of this node inside its parent object, or null.
    char* name;

    union
    {
        char* stringValue;
        long long intValue;
        float floatValue;
    };

    int type;
};

class block_allocator
{
public:
    struct block
    {
        unsigned long size; // whole area, header included
        unsigned long used; // offset of the first free byte
        char* buffer;       // start of the area
        block* next;        // the block obtained before this one
    };

    // Blocks of this size are kept per thread after free() and handed to the
    // next allocator that asks for them; blocks of other sizes go back to the
    // heap.
    static constexpr unsigned long kKeptBlockSize = 65536;

    explicit block_allocator(unsigned long blockSize);
    ~block_allocator();

    block_allocator(block_allocator const&) = delete;
    block_allocator& operator=(block_allocator const&) = delete;

    void* malloc(unsigned long size);
    void free();

    block* head;
    unsigned long blockSize;
    unsigned int blockCount;
    unsigned int bytesAllocated;
};

// Parses the zero-terminated, writable buffer `source`, destroying its content.
// Returns the root (an object or an array), or null. On a detected fault the
// position, the fixed message and the line are stored through the three
// out-parameters; on success they are left alone. A document without any value
// returns null and reports nothing.
//
// A number is scanned up to one of its stop bytes, and a zero byte is not one
// of them; the scan is bounded by the first zero here, so a document cut off
// inside a number stops at its end instead of reading on.
json_value* json_parse(char* source, char** errorPos, const char** errorDesc, int* errorLine,
                       block_allocator* allocator);

// The same for a buffer whose length is known: `source[length]` must be zero.
// Zero bytes inside the document are then scanned like any other byte, and
// only the real end bounds a number.
json_value* json_parse(char* source, unsigned long length, char** errorPos, const char** errorDesc,
                       int* errorLine, block_allocator* allocator);
