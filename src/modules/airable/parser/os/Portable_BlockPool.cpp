#include "Portable_BlockPool.h"

#include <atomic>
#include <new>

namespace portable {
namespace blockpool {

namespace {

constexpr std::size_t kGranule = 16;
constexpr std::size_t kClasses = kLargestBlock / kGranule;

// Read by a thread once, when it first uses the pool.
std::atomic<std::size_t> gKeptBytesLimit{kDefaultKeptBytesLimit};

struct FreeBlock
{
    FreeBlock* next;
};

// Trivially destructible, so that it can still be read while the thread
// exits: `gone` then sends every block back to the heap. One thread-local
// look-up per call, which in a loaded module is a function call of its own.
struct Pool
{
    FreeBlock* heads[kClasses];
    std::size_t keptBytes;
    std::size_t limit;
    bool registered;
    bool gone;
};

thread_local Pool tPool;

// Returns the kept blocks to the heap when the thread ends.
struct PoolDrain
{
    bool armed = false;

    ~PoolDrain()
    {
        Pool& pool = tPool;
        pool.gone = true;
        for (FreeBlock*& head : pool.heads) {
            while (head) {
                FreeBlock* const next = head->next;
                ::operator delete(head);
                head = next;
            }
        }
        pool.keptBytes = 0;
    }
};

thread_local PoolDrain tDrain;

Pool* poolOfThread()
{
    Pool& pool = tPool;
    if (pool.gone)
        return nullptr;
    if (!pool.registered) {
        // The drain's first use is what schedules its destructor.
        tDrain.armed = true;
        pool.limit = gKeptBytesLimit.load(std::memory_order_relaxed);
        pool.registered = true;
    }
    return &pool;
}

std::size_t classOf(std::size_t size)
{
    return (size + kGranule - 1) / kGranule - 1;
}

} // namespace

void* allocate(std::size_t size)
{
    Pool* const pool = !kRecycles || size == 0 || size > kLargestBlock ? nullptr : poolOfThread();
    if (!pool)
        return ::operator new(size);
    std::size_t const index = classOf(size);
    if (FreeBlock* const block = pool->heads[index]) {
        pool->heads[index] = block->next;
        pool->keptBytes -= (index + 1) * kGranule;
        return block;
    }
    // Every block of a class has the class's full size, so that it can serve
    // any request of that class when it comes back.
    return ::operator new((index + 1) * kGranule);
}

void release(void* block, std::size_t size)
{
    if (!block)
        return;
    Pool* const pool = !kRecycles || size == 0 || size > kLargestBlock ? nullptr : poolOfThread();
    std::size_t const index = classOf(size);
    std::size_t const bytes = (index + 1) * kGranule;
    if (!pool || pool->keptBytes + bytes > pool->limit) {
        ::operator delete(block);
        return;
    }
    auto* const freed = static_cast<FreeBlock*>(block);
    freed->next = pool->heads[index];
    pool->heads[index] = freed;
    pool->keptBytes += bytes;
}

void setKeptBytesLimit(std::size_t bytes)
{
    gKeptBytesLimit.store(bytes, std::memory_order_relaxed);
    Pool* const pool = poolOfThread();
    if (!pool)
        return;
    pool->limit = bytes;
    // The largest blocks first: the fewest to free for the bytes.
    for (std::size_t index = kClasses; index-- > 0 && pool->keptBytes > bytes;) {
        FreeBlock*& head = pool->heads[index];
        while (head && pool->keptBytes > bytes) {
            FreeBlock* const next = head->next;
            ::operator delete(head);
            head = next;
            pool->keptBytes -= (index + 1) * kGranule;
        }
    }
}

std::size_t keptBytesLimit()
{
    Pool* const pool = poolOfThread();
    return pool ? pool->limit : 0;
}

std::size_t keptBytes()
{
    Pool* const pool = poolOfThread();
    return pool ? pool->keptBytes : 0;
}

bool keep(std::size_t bytes)
{
    Pool* const pool = kRecycles ? poolOfThread() : nullptr;
    if (!pool || pool->keptBytes + bytes > pool->limit)
        return false;
    pool->keptBytes += bytes;
    return true;
}

void unkeep(std::size_t bytes)
{
    // Once the thread's pool is gone its count no longer matters.
    if (Pool* const pool = poolOfThread())
        pool->keptBytes -= bytes;
}

} // namespace blockpool
} // namespace portable
