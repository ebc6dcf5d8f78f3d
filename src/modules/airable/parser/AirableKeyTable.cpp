#include "AirableKeyTable.h"

#include <cstring>

namespace airable {

namespace {

// A power of two, kept at most three quarters full so that probes stay short.
constexpr int kSlots = 1024;
constexpr int kMaxUsed = kSlots / 4 * 3;

} // namespace

AirableKeyTable::AirableKeyTable()
    : mSlots(kSlots)
{
}

// Keys are short words. A key of eight bytes or more is hashed by its first
// and its last eight, read at once; a shorter one byte by byte.
std::uint32_t AirableKeyTable::hashOf(char const* key, int* length)
{
    std::size_t const size = std::strlen(key);
    *length = static_cast<int>(size);
    std::uint64_t mix = size;
    if (size >= 8) {
        std::uint64_t head;
        std::uint64_t tail;
        std::memcpy(&head, key, 8);
        std::memcpy(&tail, key + size - 8, 8);
        mix ^= head * 0x9E3779B97F4A7C15ull;
        mix ^= (tail + mix) * 0xC2B2AE3D27D4EB4Full;
    } else {
        for (std::size_t i = 0; i < size; ++i)
            mix = (mix << 8) | static_cast<unsigned char>(key[i]);
        mix *= 0x9E3779B97F4A7C15ull;
    }
    return static_cast<std::uint32_t>(mix >> 32) ^ static_cast<std::uint32_t>(mix);
}

// The slot that holds `key`, or the free slot where it would go.
int AirableKeyTable::slotOf(char const* key, std::uint32_t hash, int length) const
{
    int index = static_cast<int>(hash & (kSlots - 1));
    while (true) {
        Slot const& slot = mSlots[index];
        if (!slot.used)
            return index;
        if (slot.hash == hash && slot.key.size() == length && std::memcmp(slot.key.constData(), key, length) == 0)
            return index;
        index = (index + 1) & (kSlots - 1);
    }
}

AirableKeyTable::Entry const* AirableKeyTable::find(char const* key) const
{
    int length = 0;
    std::uint32_t const hash = hashOf(key, &length);
    Slot const& slot = mSlots[slotOf(key, hash, length)];
    return slot.used ? &slot.entry : nullptr;
}

AirableKeyTable::Entry const* AirableKeyTable::insert(char const* key, Entry const& entry)
{
    if (mUsed >= kMaxUsed)
        return nullptr;
    int length = 0;
    std::uint32_t const hash = hashOf(key, &length);
    Slot& slot = mSlots[slotOf(key, hash, length)];
    if (!slot.used) {
        slot.used = true;
        slot.key = QByteArray(key, length);
        slot.hash = hash;
        ++mUsed;
    }
    slot.entry = entry;
    slot.entry.bytes = slot.key.constData();
    return &slot.entry;
}

} // namespace airable
