#include "simulator/library/generated_entries.h"

#include <algorithm>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 FirstModifiedMs = 1'700'000'000'000;
constexpr qint64 ModifiedStepMs = 60'000;
constexpr int GroupSize = 5;

// Every fifth entry is a subtitle of the video before it, every fifth video lies on the USB drive.
MediaEntry generatedEntry(int index, bool withUsb) {
    const bool isSubtitle = index % GroupSize == GroupSize - 1;
    const int videoIndex = isSubtitle ? index - 1 : index;
    const QString base = u"Generated Movie %1"_s.arg(videoIndex, 6, 10, QLatin1Char('0'));
    MediaEntry entry;
    entry.onUsb = withUsb && videoIndex / GroupSize % GroupSize == 1;
    entry.lastModifiedMs = FirstModifiedMs + index * ModifiedStepMs;
    if (isSubtitle) {
        entry.name = base + u".en.srt"_s;
        entry.kind = MediaEntry::Kind::Subtitle;
        entry.sizeBytes = 20'000 + index % 977;
        return entry;
    }
    entry.name = base + u".mp4"_s;
    entry.kind = MediaEntry::Kind::Video;
    entry.sizeBytes = 1'000'000 + index % 9'973 * 10'007LL;
    entry.displayName = base;
    entry.subtitleCount = index % GroupSize == GroupSize - 2 ? 1 : 0;
    return entry;
}

} // namespace

GeneratedEntries::GeneratedEntries(int count, bool withUsb) {
    m_entries.reserve(static_cast<size_t>(count));
    for (int index = 0; index < count; ++index)
        m_entries.push_back(generatedEntry(index, withUsb));
}

MediaEntry* GeneratedEntries::find(const QString& name) {
    const auto entry = std::ranges::find(m_entries, name, &MediaEntry::name);
    return entry == m_entries.end() ? nullptr : &*entry;
}

bool GeneratedEntries::add(const MediaEntry& entry) {
    if (find(entry.name))
        return false;
    m_entries.push_back(entry);
    ++m_revision;
    return true;
}

bool GeneratedEntries::remove(const QString& name) {
    const auto removed =
        std::erase_if(m_entries, [&](const MediaEntry& entry) { return entry.name == name; });
    m_revision += removed > 0 ? 1 : 0;
    return removed > 0;
}

bool GeneratedEntries::touch(const QString& name) {
    MediaEntry* entry = find(name);
    if (!entry)
        return false;
    ++entry->lastModifiedMs;
    ++m_revision;
    return true;
}

bool GeneratedEntries::rename(const QString& name, const QString& displayName) {
    MediaEntry* entry = find(name);
    if (!entry)
        return false;
    entry->displayName = displayName;
    ++m_revision;
    return true;
}

bool GeneratedEntries::move(const QString& name, bool toUsb) {
    MediaEntry* entry = find(name);
    if (!entry)
        return false;
    entry->onUsb = toUsb;
    ++m_revision;
    return true;
}

} // namespace quiv::simulator
