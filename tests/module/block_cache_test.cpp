#include "workerthread.h"

#include "Portable_BlockPool.h"
#include "json.h"
#include "platformvalues.h"
#include "tarnconstants.h"

#include <QByteArray>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace blockpool = portable::blockpool;

namespace {

// Each case on a thread of its own, whose pool starts empty.
template <typename F>
void onFreshThread(F f)
{
    std::thread(f).join();
}

// Releases `count` blocks of `size` bytes, all alive at once first, as a
// released tree does.
void releaseBlocks(int count, std::size_t size)
{
    std::vector<void*> blocks;
    for (int i = 0; i < count; ++i)
        blocks.push_back(blockpool::allocate(size));
    for (void* b : blocks)
        blockpool::release(b, size);
}

// Parses an array long enough to fill `blocks` node blocks of the parser,
// then frees them.
void parseAndFree(int blocks)
{
    // One node a number; a node's size differs between 32 and 64 bits.
    int const nodesPerBlock = int(65536 / sizeof(json_value)) + 1;
    QByteArray text = "[0";
    for (int i = 0; i < blocks * nodesPerBlock; ++i)
        text += ",0";
    text += ']';
    block_allocator allocator(65536);
    char* errorPos = nullptr;
    char const* errorDesc = nullptr;
    int errorLine = 0;
    ASSERT_NE(json_parse(text.data(), &errorPos, &errorDesc, &errorLine, &allocator), nullptr);
    ASSERT_GE(allocator.blockCount, unsigned(blocks));
    allocator.free();
}

} // namespace

TEST(BlockCache, aThreadKeepsNoMoreThanItsLimitAndShedsTheRestWhenItShrinks)
{
    if (!blockpool::kRecycles)
        GTEST_SKIP() << "blocks go straight back to the heap under the address sanitizer";
    onFreshThread([] {
        blockpool::setKeptBytesLimit(4096);
        releaseBlocks(1000, 64);
        EXPECT_EQ(blockpool::keptBytes(), 4096u);
        blockpool::setKeptBytesLimit(1000);
        EXPECT_LE(blockpool::keptBytes(), 1000u);
        EXPECT_GT(blockpool::keptBytes(), 1000u - 256u);
    });
}

TEST(BlockCache, zeroKeepsNothingOfTheTreeNorOfTheParser)
{
    onFreshThread([] {
        blockpool::setKeptBytesLimit(0);
        releaseBlocks(100, 48);
        // The second parse would take back any block the first one left.
        parseAndFree(4);
        parseAndFree(4);
        EXPECT_EQ(blockpool::keptBytes(), 0u);
    });
}

TEST(BlockCache, theParsersBlocksCountAgainstTheSameBudget)
{
    if (!blockpool::kRecycles)
        GTEST_SKIP() << "blocks go straight back to the heap under the address sanitizer";
    onFreshThread([] {
        std::size_t const limit = 3 * 65536 + 1000;
        blockpool::setKeptBytesLimit(limit);
        parseAndFree(8);
        EXPECT_EQ(blockpool::keptBytes(), 3u * 65536u);
        // Only what is left of the budget takes small blocks.
        releaseBlocks(1000, 16);
        EXPECT_EQ(blockpool::keptBytes(), limit - limit % 16);
        // A parse takes the kept node blocks back, and their room with them.
        blockpool::setKeptBytesLimit(0);
        parseAndFree(3);
        EXPECT_EQ(blockpool::keptBytes(), 0u);
    });
}

TEST(BlockCache, threadsStartedLaterTakeTheLimitInForce)
{
    onFreshThread([] { blockpool::setKeptBytesLimit(12345); });
    onFreshThread([] { EXPECT_EQ(blockpool::keptBytesLimit(), 12345u); });
}

struct DeviceSetting
{
    char const* name;
    TarnValue value;
    std::size_t limit;
};

class BlockCacheSetting : public ::testing::TestWithParam<DeviceSetting>
{
};

TEST_P(BlockCacheSetting, workerTakesTheDevicesSettingOnItsThread)
{
    blockpool::setKeptBytesLimit(777);
    PlatformValues().apply();
    CMRootWorker::instance()->putValue(TarnAirableBlockCacheSizePath(), GetParam().value);
    WorkerThread w;
    std::size_t limit = 0;
    w.run([&] { limit = blockpool::keptBytesLimit(); });
    EXPECT_EQ(limit, GetParam().limit);
}

INSTANTIATE_TEST_SUITE_P(
    Values, BlockCacheSetting,
    ::testing::Values(DeviceSetting{"given", TarnValue().setInt_(262144), 262144},
                      DeviceSetting{"zero", TarnValue().setInt_(0), 0},
                      DeviceSetting{"notSet", TarnValue(), blockpool::kDefaultKeptBytesLimit},
                      DeviceSetting{"negative", TarnValue().setInt_(-1), blockpool::kDefaultKeptBytesLimit}),
    [](auto const& info) { return std::string(info.param.name); });
