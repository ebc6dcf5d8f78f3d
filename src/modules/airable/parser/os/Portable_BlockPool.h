#pragma once

#include <cstddef>

namespace portable {

// Memory for the many small objects of a response tree. A cloud answer
// becomes thousands of objects of a few sizes, and the previous answer's
// tree is released in the same rhythm; the freed blocks are kept per thread
// and size and handed out again, instead of going through the general heap
// each time. What is kept per thread is bounded, blocks above the largest
// size go straight to the heap, and a block may be freed on any thread.
namespace blockpool {

constexpr std::size_t kLargestBlock = 256;

// Under AddressSanitizer nothing is kept: every block goes back to the heap,
// so that a use after release is still caught rather than landing in a
// recycled block.
#if defined(__SANITIZE_ADDRESS__)
#define PORTABLE_BLOCKPOOL_RECYCLES 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PORTABLE_BLOCKPOOL_RECYCLES 0
#endif
#endif
#ifndef PORTABLE_BLOCKPOOL_RECYCLES
#define PORTABLE_BLOCKPOOL_RECYCLES 1
#endif
constexpr bool kRecycles = PORTABLE_BLOCKPOOL_RECYCLES;

void* allocate(std::size_t size);
// `size` must be the size the block was allocated with.
void release(void* block, std::size_t size);

// What a thread keeps of freed memory for the next tree, in bytes, when the
// device says nothing. A device of a few hundred MB can't spare the tree of
// the largest listing per thread; the pages of a typical answer are what the
// recycling is for.
constexpr std::size_t kDefaultKeptBytesLimit = 1u << 20;

// Sets the limit. A thread takes the limit in force when it first uses the
// pool, so the hot path never looks at a shared value. The calling thread's
// own limit changes at once: its small blocks beyond it go to the heap now,
// the parser's node blocks as they are next used.
void setKeptBytesLimit(std::size_t bytes);
std::size_t keptBytesLimit();
// What the calling thread keeps now, the parser's node blocks included.
std::size_t keptBytes();

// The parser keeps its node blocks against the same budget: true when
// `bytes` more fit, which then count until unkeep().
bool keep(std::size_t bytes);
void unkeep(std::size_t bytes);

// A standard container's memory from the same blocks.
template <typename T>
struct Allocator
{
    using value_type = T;

    Allocator() = default;
    template <typename U>
    Allocator(Allocator<U> const&)
    {
    }

    T* allocate(std::size_t n) { return static_cast<T*>(blockpool::allocate(n * sizeof(T))); }
    void deallocate(T* p, std::size_t n) { release(p, n * sizeof(T)); }

    friend bool operator==(Allocator const&, Allocator const&) { return true; }
    friend bool operator!=(Allocator const&, Allocator const&) { return false; }
};

} // namespace blockpool
} // namespace portable
