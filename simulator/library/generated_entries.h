#pragma once

#include "simulator/library/media_entry.h"

#include <vector>

namespace quiv::simulator {

// Entries of the library that exist in the listing only, to make it as long and as odd as needed.
// The first ones follow from their number alone, so every run lists the same. Not thread-safe.
class GeneratedEntries {
public:
    GeneratedEntries(int count, bool withUsb);

    const std::vector<MediaEntry>& entries() const { return m_entries; }
    // The revision grows with every change.
    int revision() const { return m_revision; }

    // These return false if there is no such entry, or, for `add`, if there is one already.
    bool add(const MediaEntry& entry);
    bool remove(const QString& name);
    // Sets the time to one millisecond later than it was.
    bool touch(const QString& name);
    bool rename(const QString& name, const QString& displayName);
    // Moves the entry to the other storage.
    bool move(const QString& name, bool toUsb);

private:
    MediaEntry* find(const QString& name);

    std::vector<MediaEntry> m_entries;
    int m_revision = 1;
};

} // namespace quiv::simulator
