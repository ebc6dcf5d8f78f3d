#include "json.h"

#include "Portable_BlockPool.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

// Blocks of the kept size are kept per thread after free() and handed to the
// next allocator. Fresh blocks cost page faults
// on every parse once the heap has given their pages back. What a thread keeps
// counts against the same budget as the tree's small blocks, which the device
// sizes, so that the pages of a typical answer stay warm without holding on to
// the peak of a rare large one.
constexpr unsigned long kCachedBlockSize = block_allocator::kKeptBlockSize;

struct BlockCache
{
    block_allocator::block* head = nullptr;

    ~BlockCache();
};

thread_local bool tBlockCacheGone = false;
thread_local BlockCache tBlockCache;

BlockCache::~BlockCache()
{
    tBlockCacheGone = true;
    while (head) {
        block_allocator::block* next = head->next;
        std::free(head->buffer);
        head = next;
    }
}

block_allocator::block* takeCachedBlock()
{
    if (tBlockCacheGone)
        return nullptr;
    BlockCache& cache = tBlockCache;
    block_allocator::block* b = cache.head;
    if (b) {
        cache.head = b->next;
        portable::blockpool::unkeep(kCachedBlockSize);
    }
    return b;
}

bool cacheBlock(block_allocator::block* b)
{
    if (b->size != kCachedBlockSize || tBlockCacheGone || !portable::blockpool::keep(kCachedBlockSize))
        return false;
    BlockCache& cache = tBlockCache;
    b->next = cache.head;
    cache.head = b;
    return true;
}

} // namespace

block_allocator::block_allocator(unsigned long blockSize)
    : head(nullptr)
    , blockSize(blockSize)
    , blockCount(0)
    , bytesAllocated(0)
{
}

block_allocator::~block_allocator()
{
    free();
}

void* block_allocator::malloc(unsigned long size)
{
    if (!head || head->used + size > head->size) {
        unsigned long areaSize = sizeof(block) + size;
        if (areaSize < blockSize)
            areaSize = blockSize;
        // The tail of the previous head is abandoned: only the head is ever
        // consulted, which keeps the fast path to one comparison.
        block* b = areaSize == kCachedBlockSize ? takeCachedBlock() : nullptr;
        if (!b)
            b = static_cast<block*>(std::malloc(areaSize));
        b->size = areaSize;
        b->used = sizeof(block);
        b->buffer = reinterpret_cast<char*>(b);
        b->next = head;
        head = b;
        ++blockCount;
    }
    void* p = head->buffer + head->used;
    head->used += size;
    bytesAllocated += static_cast<unsigned int>(size);
    return p;
}

void block_allocator::free()
{
    while (head) {
        block* next = head->next;
        if (!cacheBlock(head))
            std::free(head->buffer);
        head = next;
    }
}

namespace {

static_assert(sizeof(block_allocator::block) % 8 == 0, "nodes rely on the header keeping 8-byte alignment");
static_assert(sizeof(json_value) % 8 == 0, "nodes rely on their own size keeping 8-byte alignment");

const char* const kSecondRoot = "Second root. Only one root allowed";
const char* const kMismatch = "Mismatch closing brace/bracket";
const char* const kUnexpected = "Unexpected character";
const char* const kControl = "Control characters not allowed in strings";
const char* const kBadUnicode = "Bad unicode codepoint";
const char* const kBadEscape = "Unrecognized escape sequence";
const char* const kUnknownIdentifier = "Unknown identifier";
const char* const kBadInteger = "Bad integer number";
const char* const kBadFloat = "Bad float number";
const char* const kNotClosed = "Not all objects/arrays have been properly closed";

// What the main loop does with a byte.
enum ByteClass : unsigned char
{
    kOther,
    kEnd,
    kSpace,
    kOpen,
    kClose,
    kColon,
    kComma,
    kQuote,
    kWord,
    kNumber
};

constexpr unsigned char u(char c)
{
    return static_cast<unsigned char>(c);
}

struct Tables
{
    unsigned char dispatch[256];
    // The bytes that end a number: whitespace, comma and the two closers.
    bool numberStop[256];
    // Hex digit values, 0xFF for anything else.
    unsigned char hex[256];
    // The byte that a one-letter escape stands for, 0 for anything else.
    unsigned char escape[256];

    constexpr Tables()
        : dispatch()
        , numberStop()
        , hex()
        , escape()
    {
        for (int i = 0; i < 256; ++i) {
            dispatch[i] = kOther;
            hex[i] = 0xFF;
        }
        for (unsigned char c : {0x20, 0x09, 0x0D, 0x0A}) {
            dispatch[c] = kSpace;
            numberStop[c] = true;
        }
        for (unsigned char c : {',', ']', '}'})
            numberStop[c] = true;
        dispatch[0] = kEnd;
        dispatch[u('{')] = dispatch[u('[')] = kOpen;
        dispatch[u('}')] = dispatch[u(']')] = kClose;
        dispatch[u(':')] = kColon;
        dispatch[u(',')] = kComma;
        dispatch[u('"')] = kQuote;
        dispatch[u('n')] = dispatch[u('t')] = dispatch[u('f')] = kWord;
        dispatch[u('-')] = kNumber;
        for (int c = '0'; c <= '9'; ++c) {
            dispatch[c] = kNumber;
            hex[c] = static_cast<unsigned char>(c - '0');
        }
        escape[u('"')] = u('"');
        escape[u('\\')] = u('\\');
        escape[u('/')] = u('/');
        escape[u('b')] = 0x08;
        escape[u('f')] = 0x0C;
        escape[u('n')] = 0x0A;
        escape[u('r')] = 0x0D;
        escape[u('t')] = 0x09;
        for (int c = 0; c < 6; ++c) {
            hex['a' + c] = static_cast<unsigned char>(10 + c);
            hex['A' + c] = static_cast<unsigned char>(10 + c);
        }
    }
};

constexpr Tables kTables;

inline unsigned char byteAt(const char* p)
{
    return static_cast<unsigned char>(*p);
}

inline bool isDigit(unsigned char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

struct Fault
{
    char* pos;
    const char* desc;
};

json_value* report(Fault fault, char* source, int escapedNewlines, char** errorPos, const char** errorDesc,
                   int* errorLine)
{
    // Unescaped "\n" put line feeds into the buffer that were not in the text;
    // starting the count below 1 cancels them.
    int line = 1 - escapedNewlines;
    for (char* c = fault.pos; c > source; --c) {
        if (*c == '\n')
            ++line;
    }
    if (errorPos)
        *errorPos = fault.pos;
    if (errorDesc)
        *errorDesc = fault.desc;
    if (errorLine)
        *errorLine = line;
    return nullptr;
}

inline json_value* newNode(block_allocator* allocator, int type, char*& pendingName)
{
    block_allocator::block* head = allocator->head;
    void* p;
    if (head && head->used + sizeof(json_value) <= head->size) {
        p = head->buffer + head->used;
        head->used += sizeof(json_value);
        allocator->bytesAllocated += sizeof(json_value);
    } else {
        p = allocator->malloc(sizeof(json_value));
    }
    auto* node = static_cast<json_value*>(p);
    std::memset(node, 0, sizeof(json_value));
    node->type = type;
    node->name = pendingName;
    pendingName = nullptr;
    return node;
}

inline void append(json_value* node, json_value* top)
{
    node->parent = top;
    if (top->lastChild)
        top->lastChild->nextSibling = node;
    else
        top->firstChild = node;
    top->lastChild = node;
}

// Integer over [first, last): optional sign, then digits only. Wraps on
// overflow, as two's complement.
bool parseInt(const char* first, const char* last, long long* out)
{
    unsigned long long sign = 1;
    if (first != last) {
        if (*first == '-') {
            sign = ~0ULL;
            ++first;
        } else if (*first == '+') {
            ++first;
        }
    }
    unsigned long long result = 0;
    for (; first != last && isDigit(byteAt(first)); ++first)
        result = result * 10 + static_cast<unsigned long long>(byteAt(first) - '0');
    if (first != last)
        return false;
    *out = static_cast<long long>(result * sign);
    return true;
}

// The parts of a number with a fraction or an exponent, as found in its text.
struct FloatParts
{
    float sign = 1.0f;
    const char* digits = nullptr; // integer digits [digits, digitsEnd)
    const char* digitsEnd = nullptr;
    std::uint64_t whole = 0;      // their value, exact when there are few
    const char* fraction = nullptr; // fraction digits [fraction, fractionEnd)
    const char* fractionEnd = nullptr;
    bool negativeExponent = false;
    std::uint32_t exponent = 0;   // wraps as an unsigned 32-bit value
};

// Computes the value in single precision throughout, step by step as the
// digits come. Each operation is its own statement so that no compiler fuses
// them into a more precise one.
float composeFloat(FloatParts const& n)
{
    float result;
    if (n.digitsEnd - n.digits <= 7) {
        // Below 2^24 every step of "times ten plus the digit" is exact in
        // single precision, so the integer gives the same float.
        result = static_cast<float>(static_cast<std::uint32_t>(n.whole));
    } else {
        result = 0.0f;
        for (const char* d = n.digits; d != n.digitsEnd; ++d) {
            float scaled = result * 10.0f;
            result = scaled + static_cast<float>(byteAt(d) - '0');
        }
    }
    float factor = 0.1f;
    for (const char* d = n.fraction; d != n.fractionEnd; ++d) {
        float part = static_cast<float>(byteAt(d) - '0') * factor;
        result = result + part;
        factor = factor * 0.1f;
    }
    result = result * n.sign;
    if (n.exponent != 0) {
        float power = 10.0f;
        // Once the power is infinite it stays so; stopping there keeps the
        // value and spares billions of steps for a huge exponent.
        for (std::uint32_t e = n.exponent; e > 1 && power <= 3.4028235e38f; --e)
            power = power * 10.0f;
        if (n.negativeExponent)
            result = result / power;
        else
            result = result * power;
    }
    return result;
}

// Reads a float over [first, last): optional sign, integer digits, an
// optional fraction, an optional exponent with its own sign, each part
// possibly empty. Returns where the reading stopped, `last` for a good number.
const char* readFloat(const char* first, const char* last, float* out)
{
    FloatParts n;
    if (first != last) {
        if (*first == '-') {
            n.sign = -1.0f;
            ++first;
        } else if (*first == '+') {
            ++first;
        }
    }
    n.digits = first;
    for (; first != last && isDigit(byteAt(first)); ++first)
        n.whole = n.whole * 10 + static_cast<std::uint64_t>(byteAt(first) - '0');
    n.digitsEnd = first;
    if (first != last && *first == '.') {
        ++first;
        n.fraction = first;
        while (first != last && isDigit(byteAt(first)))
            ++first;
        n.fractionEnd = first;
    }
    if (first != last && (*first == 'e' || *first == 'E')) {
        ++first;
        if (first != last && *first == '-') {
            n.negativeExponent = true;
            ++first;
        } else if (first != last && *first == '+') {
            ++first;
        }
        for (; first != last && isDigit(byteAt(first)); ++first)
            n.exponent = n.exponent * 10 + static_cast<std::uint32_t>(byteAt(first) - '0');
    }
    *out = composeFloat(n);
    return first;
}

inline char* writeUtf8(char* out, unsigned int unit)
{
    if (unit < 0x80) {
        *out++ = static_cast<char>(unit);
    } else if (unit < 0x800) {
        *out++ = static_cast<char>(0xC0 | (unit >> 6));
        *out++ = static_cast<char>(0x80 | (unit & 0x3F));
    } else {
        *out++ = static_cast<char>(0xE0 | (unit >> 12));
        *out++ = static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (unit & 0x3F));
    }
    return out;
}

// Moves fewer than 16 bytes towards the front. All loads come before the
// stores, and every store lands on bytes that have already been read.
inline void moveShort(char* dst, const char* src, unsigned n)
{
    if (n >= 8) {
        std::uint64_t head;
        std::uint64_t tail;
        std::memcpy(&head, src, 8);
        std::memcpy(&tail, src + n - 8, 8);
        std::memcpy(dst, &head, 8);
        std::memcpy(dst + n - 8, &tail, 8);
    } else if (n >= 4) {
        std::uint32_t head;
        std::uint32_t tail;
        std::memcpy(&head, src, 4);
        std::memcpy(&tail, src + n - 4, 4);
        std::memcpy(dst, &head, 4);
        std::memcpy(dst + n - 4, &tail, 4);
    } else {
        for (unsigned i = 0; i < n; ++i)
            dst[i] = src[i];
    }
}

#if defined(__SSE2__)
// Bit i set for a byte that a string body can't copy blindly: quote,
// backslash, or anything below 0x20 (the terminating zero included).
inline unsigned specialMask(__m128i v)
{
    const __m128i quote = _mm_set1_epi8('"');
    const __m128i backslash = _mm_set1_epi8('\\');
    const __m128i controlMax = _mm_set1_epi8(0x1F);
    __m128i isControl = _mm_cmpeq_epi8(_mm_max_epu8(v, controlMax), controlMax);
    __m128i hit = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, quote), _mm_cmpeq_epi8(v, backslash)), isControl);
    return static_cast<unsigned>(_mm_movemask_epi8(hit));
}
#endif

// Reads a string body that starts at `it`, unescaping it in place. On return
// `it` stands behind the closing quote, or on the zero byte that ended an
// unterminated string. `end` is the terminating zero: bytes up to and
// including it are readable.
inline bool readString(char*& it, char* end, int& escapedNewlines, Fault& fault)
{
    char* const first = it;
    char* last = it;
    for (;;) {
#if defined(__SSE2__)
        while (end + 1 - it >= 16) {
            __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(it));
            unsigned mask = specialMask(v);
            if (mask == 0) {
                // Every byte of the block has been read, so writing the whole
                // block behind the read position can't clobber unread text.
                if (last != it)
                    _mm_storeu_si128(reinterpret_cast<__m128i*>(last), v);
                it += 16;
                last += 16;
                continue;
            }
            unsigned plain = static_cast<unsigned>(__builtin_ctz(mask));
            if (last != it)
                moveShort(last, it, plain);
            it += plain;
            last += plain;
            break;
        }
#endif
        unsigned char c = byteAt(it);
        if (c == '"') {
            *last = 0;
            ++it;
            return true;
        }
        if (c == 0)
            return true;
        if (c < 0x20) {
            fault = {first, kControl};
            return false;
        }
        if (c != '\\') {
            *last++ = static_cast<char>(c);
            ++it;
            continue;
        }
        unsigned char letter = byteAt(it + 1);
        unsigned char simple = kTables.escape[letter];
        if (simple) {
            *last++ = static_cast<char>(simple);
            escapedNewlines += letter == 'n';
            it += 2;
            continue;
        }
        if (letter != 'u') {
            fault = {first, kBadEscape};
            return false;
        }
        unsigned int unit = 0;
        // Checked one at a time: the first non-digit, the terminating zero
        // included, stops the read.
        for (int i = 2; i < 6; ++i) {
            unsigned char h = kTables.hex[byteAt(it + i)];
            if (h == 0xFF) {
                fault = {it, kBadUnicode};
                return false;
            }
            unit = unit * 16 + h;
        }
        last = writeUtf8(last, unit);
        it += 6;
    }
}

inline bool matchWord(const char* it, const char* word, int length)
{
    // Byte by byte, so that a mismatch at the terminating zero stops the read.
    for (int i = 0; i < length; ++i) {
        if (it[i] != word[i])
            return false;
    }
    return true;
}

// Reads the number that starts at `it` into `node`. On return `it` stands on
// the stop byte, or on `end` if the document was cut off inside the number.
inline bool readNumber(char*& it, char* end, json_value* node, Fault& fault)
{
    char* const first = it;

    // Fast path for the usual shapes, [-]digits[.digits][(e|E)[+|-]digits]
    // followed by a stop byte or the end: the span is then exactly this text,
    // and what it holds decides the type as the full scan below would. The
    // terminating zero is no digit, so these loops need no bound.
    FloatParts n;
    char* p = it;
    if (*p == '-') {
        n.sign = -1.0f;
        ++p;
    }
    n.digits = p;
    while (isDigit(byteAt(p))) {
        n.whole = n.whole * 10 + static_cast<std::uint64_t>(byteAt(p) - '0');
        ++p;
    }
    n.digitsEnd = p;
    if (p == end || kTables.numberStop[byteAt(p)]) {
        std::uint64_t value = n.whole;
        node->intValue = static_cast<long long>(n.sign < 0 ? 0 - value : value);
        it = p;
        return true;
    }
    if (*p == '.') {
        n.fraction = ++p;
        while (isDigit(byteAt(p)))
            ++p;
        n.fractionEnd = p;
    }
    if (*p == 'e' || *p == 'E') {
        ++p;
        if (*p == '-') {
            n.negativeExponent = true;
            ++p;
        } else if (*p == '+') {
            ++p;
        }
        while (isDigit(byteAt(p))) {
            n.exponent = n.exponent * 10 + static_cast<std::uint32_t>(byteAt(p) - '0');
            ++p;
        }
    }
    if (p == end || kTables.numberStop[byteAt(p)]) {
        node->type = JSON_FLOAT;
        node->floatValue = composeFloat(n);
        it = p;
        return true;
    }

    bool isFloat = false;
    while (it < end && !kTables.numberStop[byteAt(it)]) {
        unsigned char c = byteAt(it);
        if (c == '.' || c == 'e' || c == 'E')
            isFloat = true;
        ++it;
    }
    if (isFloat) {
        node->type = JSON_FLOAT;
        if (readFloat(first, it, &node->floatValue) != it) {
            fault = {first, kBadFloat};
            return false;
        }
    } else if (!parseInt(first, it, &node->intValue)) {
        fault = {first, kBadInteger};
        return false;
    }
    return true;
}

} // namespace

json_value* json_parse(char* source, char** errorPos, const char** errorDesc, int* errorLine,
                       block_allocator* allocator)
{
    return json_parse(source, std::strlen(source), errorPos, errorDesc, errorLine, allocator);
}

json_value* json_parse(char* source, unsigned long length, char** errorPos, const char** errorDesc,
                       int* errorLine, block_allocator* allocator)
{
    json_value* root = nullptr;
    json_value* top = nullptr;
    char* name = nullptr;
    int escapedNewlines = 0;
    char* const end = source + length;
    char* it = source;
    Fault fault{nullptr, nullptr};

#define FAIL(position, message)                                                                            \
    do {                                                                                                   \
        fault = {position, message};                                                                       \
        goto failed;                                                                                       \
    } while (0)

    for (;;) {
        unsigned char c = byteAt(it);
        while (kTables.dispatch[c] == kSpace)
            c = byteAt(++it);

        switch (kTables.dispatch[c]) {
        case kEnd:
            goto finished;

        case kOpen:
        opened: {
            json_value* node = newNode(allocator, c == '{' ? JSON_OBJECT : JSON_ARRAY, name);
            ++it;
            if (top)
                append(node, top);
            else if (!root)
                root = node;
            else
                FAIL(it, kSecondRoot);
            top = node;
            break;
        }

        case kClose:
            if (!top || top->type != (c == '}' ? JSON_OBJECT : JSON_ARRAY))
                FAIL(it, kMismatch);
            ++it;
            top = top->parent;
            // Behind a member or an element the next one usually follows.
            if (top && *it == ',') {
                c = byteAt(++it);
                if (c == '"')
                    goto quoted;
                if (c == '{')
                    goto opened;
            }
            break;

        case kColon:
            if (!top || top->type != JSON_OBJECT)
                FAIL(it, kUnexpected);
            ++it;
            break;

        case kComma:
            if (!top)
                FAIL(it, kUnexpected);
            ++it;
            break;

        case kQuote:
        quoted: {
            if (!top)
                FAIL(it, kUnexpected);
            ++it;
            char* first = it;
            if (!readString(it, end, escapedNewlines, fault))
                goto failed;
            // The only thing that tells a key from a value: a string inside an
            // object while no key is pending. A key left without a value stays
            // pending, even across a closing brace.
            if (!name && top->type == JSON_OBJECT) {
                name = first;
                // The usual colon, and the value right behind it, are taken
                // here just as the loop would take them.
                if (*it == ':') {
                    c = byteAt(++it);
                    if (c == '"')
                        goto quoted;
                    if (kTables.dispatch[c] == kNumber)
                        goto numbered;
                    if (kTables.dispatch[c] == kOpen)
                        goto opened;
                }
            } else {
                json_value* node = newNode(allocator, JSON_STRING, name);
                node->stringValue = first;
                append(node, top);
                if (*it == ',') {
                    ++it;
                    if (*it == '"')
                        goto quoted;
                }
            }
            break;
        }

        case kWord: {
            if (!top)
                FAIL(it, kUnexpected);
            json_value* node = newNode(allocator, JSON_NULL, name);
            if (matchWord(it, "null", 4)) {
                it += 4;
            } else if (matchWord(it, "true", 4)) {
                node->type = JSON_BOOL;
                node->intValue = 1;
                it += 4;
            } else if (matchWord(it, "false", 5)) {
                node->type = JSON_BOOL;
                it += 5;
            } else {
                FAIL(it, kUnknownIdentifier);
            }
            append(node, top);
            break;
        }

        case kNumber:
        numbered: {
            if (!top)
                FAIL(it, kUnexpected);
            json_value* node = newNode(allocator, JSON_INT, name);
            if (!readNumber(it, end, node, fault))
                goto failed;
            append(node, top);
            if (*it == ',') {
                ++it;
                if (*it == '"')
                    goto quoted;
            }
            break;
        }

        default:
            FAIL(it, kUnexpected);
        }
    }
#undef FAIL

finished:
    if (top) {
        fault = {it, kNotClosed};
        goto failed;
    }
    return root;

failed:
    return report(fault, source, escapedNewlines, errorPos, errorDesc, errorLine);
}
