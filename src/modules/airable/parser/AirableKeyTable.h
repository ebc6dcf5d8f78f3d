#pragma once

#include "ContainerWithId.h"
#include "ContainerWithName.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <cstdint>

namespace airable {

// The member keys and type words of cloud answers are a small vocabulary that
// repeats in every item. The factory keeps here, per word, the QString it
// hands to the objects and what it decided about the word, so that a walk
// converts and looks up each distinct word once. The table is bounded: once
// full, further words are simply not kept.
class AirableKeyTable
{
public:
    struct Entry
    {
        QString name;
        // As a member key: the registered record class, or null; and whether
        // it is "id".
        ContainerWithName* prototype = nullptr;
        bool isId = false;
        // As an itype: the registered class, or null.
        ContainerWithId* idPrototype = nullptr;
        // The word itself, kept by the table.
        char const* bytes = nullptr;
        // The key that came next after this one the last time, as a guess
        // for the next time: the members of a listing's items come in the
        // same order item after item.
        mutable Entry const* followedBy = nullptr;
    };

    AirableKeyTable();

    // The entry of the zero-terminated `key`, or null if it isn't kept.
    Entry const* find(char const* key) const;
    // Keeps `entry` for `key`; null when the table is full.
    Entry const* insert(char const* key, Entry const& entry);

private:
    struct Slot
    {
        QByteArray key;
        std::uint32_t hash = 0;
        bool used = false;
        Entry entry;
    };

    static std::uint32_t hashOf(char const* key, int* length);
    int slotOf(char const* key, std::uint32_t hash, int length) const;

    QVector<Slot> mSlots;
    int mUsed = 0;
};

} // namespace airable
