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

std::uint32_t AirableKeyTable::hashOf(char const* key, int* length)
{
    std::uint32_t hash = 2166136261u;
    char const* p = key;
    for (; *p; ++p)
        hash = (hash ^ static_cast<unsigned char>(*p)) * 16777619u;
    *length = static_cast<int>(p - key);
    return hash;
}

// The slot that holds `key`, or the free slot where it would go.
int AirableKeyTable::slotOf(char const* key, std::uint32_t hash, int length) const
{
    int index = static_cast<int>(hash & (kSlots - 1));
    while (true) {
        Slot const& slot = mSlots.at(index);
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
    Slot const& slot = mSlots.at(slotOf(key, hash, length));
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
    return &slot.entry;
}

} // namespace airable
