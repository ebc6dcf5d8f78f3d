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

void* allocate(std::size_t size);
// `size` must be the size the block was allocated with.
void release(void* block, std::size_t size);

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
