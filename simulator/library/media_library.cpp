#include "simulator/library/media_library.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <span>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 SmallestStorageBytes = 64LL << 30;

} // namespace

MediaLibrary::MediaLibrary(QString mediaFolder, QString usbFolder, int generatedCount)
    : m_mediaFolder(std::move(mediaFolder)),
      m_usbFolder(std::move(usbFolder)),
      m_generated(generatedCount, !m_usbFolder.isEmpty()) {}

namespace {

MediaEntry entryOf(const QFileInfo& file, bool onUsb) {
    return {.name = file.fileName(),
            .kind = kindOfName(file.fileName()),
            .sizeBytes = file.size(),
            .lastModifiedMs = file.lastModified().toMSecsSinceEpoch(),
            .displayName = displayNameOf(file.fileName()),
            .onUsb = onUsb};
}

// A name that was seen before is skipped: names are unique within a listing.
void readFolder(const QString& folder, bool onUsb, std::vector<MediaEntry>& entries) {
    QSet<QString> seen;
    for (const MediaEntry& entry : entries)
        seen.insert(entry.name);
    const auto files = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QFileInfo& file : files) {
        if (!seen.contains(file.fileName()) && !isPartial(file.fileName()))
            entries.push_back(entryOf(file, onUsb));
    }
}

bool belongsTo(const MediaEntry& subtitle, const QString& videoBase) {
    const QString base = baseNameOf(subtitle.name);
    return base == videoBase || base.startsWith(videoBase + u'.');
}

void countSubtitles(std::vector<MediaEntry>& entries) {
    for (MediaEntry& video : entries) {
        if (video.kind != MediaEntry::Kind::Video)
            continue;
        const QString base = baseNameOf(video.name);
        video.subtitleCount =
            static_cast<int>(std::ranges::count_if(entries, [&](const MediaEntry& entry) {
                return entry.kind == MediaEntry::Kind::Subtitle && belongsTo(entry, base);
            }));
    }
}

} // namespace

MediaLibrary::State MediaLibrary::readState() const {
    State state;
    readFolder(m_mediaFolder, false, state.onDisk);
    if (!m_usbFolder.isEmpty() && m_usbConnected)
        readFolder(m_usbFolder, true, state.onDisk);
    countSubtitles(state.onDisk);
    state.generatedRevision = m_generated.revision();
    state.usbConnected = m_usbConnected;
    state.freeBytes = m_freeBytes;
    return state;
}

QByteArray MediaLibrary::listing() {
    const std::scoped_lock lock(m_mutex);
    State state = readState();
    if (m_listing.isEmpty() || state != m_listedState) {
        m_listing = makeListing(state);
        m_listedState = std::move(state);
    }
    return m_listing;
}

namespace {

void appendFiles(QByteArray& json, std::span<const MediaEntry> entries) {
    for (const MediaEntry& entry : entries) {
        appendFileJson(json, entry);
        json += ',';
    }
}

void appendVideos(QByteArray& json, std::span<const MediaEntry> entries) {
    for (const MediaEntry& entry : entries) {
        if (entry.kind != MediaEntry::Kind::Video)
            continue;
        appendVideoJson(json, entry);
        json += ',';
    }
}

} // namespace

QByteArray MediaLibrary::makeListing(const State& state) const {
    QByteArray json = "{\"files\":[";
    appendFiles(json, state.onDisk);
    appendFiles(json, m_generated.entries());
    if (json.endsWith(','))
        json.chop(1);
    json += "],\"videos\":[";
    appendVideos(json, state.onDisk);
    appendVideos(json, m_generated.entries());
    if (json.endsWith(','))
        json.chop(1);
    return json + "]," + storageJson(state) + '}';
}

namespace {

// A drive's content; its size is made up so that a listing depends on the media only.
struct Usage {
    qint64 bytes = 0;
    int videos = 0;
    qint64 videoBytes = 0;

    std::optional<qint64> toldFreeBytes;

    qint64 freeBytes() const { return totalBytes() - bytes; }
    qint64 totalBytes() const {
        if (toldFreeBytes)
            return bytes + *toldFreeBytes;
        qint64 total = SmallestStorageBytes;
        while (total <= bytes)
            total *= 2;
        return total;
    }

    void add(std::span<const MediaEntry> entries, bool onUsb) {
        for (const MediaEntry& entry : entries) {
            if (entry.onUsb != onUsb)
                continue;
            bytes += entry.sizeBytes;
            videos += entry.kind == MediaEntry::Kind::Video ? 1 : 0;
            videoBytes += entry.kind == MediaEntry::Kind::Video ? entry.sizeBytes : 0;
        }
    }
};

} // namespace

namespace {

QByteArray internalJson(const Usage& usage) {
    return "{\"usedBytes\":" + QByteArray::number(usage.bytes) +
           ",\"totalBytes\":" + QByteArray::number(usage.totalBytes()) +
           ",\"freeBytes\":" + QByteArray::number(usage.freeBytes()) + '}';
}

QByteArray usbJson(const Usage& usage, bool connected) {
    return QByteArray("{\"driveId\":\"usb-1\",\"driveName\":\"USB drive\",\"isConnected\":") +
           (connected ? "true" : "false") +
           ",\"freeBytes\":" + QByteArray::number(usage.freeBytes()) +
           ",\"totalBytes\":" + QByteArray::number(usage.totalBytes()) +
           ",\"cachedVideoCount\":" + QByteArray::number(usage.videos) +
           ",\"cachedVideoBytes\":" + QByteArray::number(usage.videoBytes) + '}';
}

} // namespace

QByteArray MediaLibrary::storageJson(const State& state) const {
    Usage internal{.toldFreeBytes = state.freeBytes};
    Usage usb{.toldFreeBytes = state.freeBytes};
    for (const std::span<const MediaEntry> entries :
         {std::span(state.onDisk), std::span(m_generated.entries())}) {
        internal.add(entries, false);
        usb.add(entries, true);
    }
    const QByteArray internalPart = internalJson(internal);
    QByteArray json = "\"storage\":" + internalPart + ",\"internalStorage\":" + internalPart;
    if (m_usbFolder.isEmpty())
        return json + ",\"usbSetupHint\":\"Connect a USB drive to the TV for more space.\"" +
               ",\"preferredUploadTarget\":\"INTERNAL\"";
    return json + ",\"usbStorage\":" + usbJson(usb, state.usbConnected) +
           ",\"preferredUploadTarget\":" + (state.usbConnected ? "\"USB\"" : "\"INTERNAL\"");
}

std::optional<QString> MediaLibrary::changeGenerated(const Change& change) {
    const std::scoped_lock lock(m_mutex);
    return change(m_generated);
}

void MediaLibrary::setUsbConnected(bool connected) {
    const std::scoped_lock lock(m_mutex);
    m_usbConnected = connected;
}

bool MediaLibrary::isUsbConnected() {
    const std::scoped_lock lock(m_mutex);
    return m_usbConnected && !m_usbFolder.isEmpty();
}

QString MediaLibrary::uploadFolder() {
    return isUsbConnected() ? m_usbFolder : m_mediaFolder;
}

qint64 MediaLibrary::freeBytes() {
    const bool onUsb = isUsbConnected();
    const std::scoped_lock lock(m_mutex);
    const State state = readState();
    Usage usage{.toldFreeBytes = state.freeBytes};
    usage.add(state.onDisk, onUsb);
    usage.add(m_generated.entries(), onUsb);
    return usage.freeBytes();
}

void MediaLibrary::setFreeBytes(std::optional<qint64> bytes) {
    const std::scoped_lock lock(m_mutex);
    m_freeBytes = bytes;
}

std::optional<MediaEntry> MediaLibrary::find(const QString& name) {
    const std::scoped_lock lock(m_mutex);
    const State state = readState();
    for (const std::span<const MediaEntry> entries :
         {std::span(state.onDisk), std::span(m_generated.entries())}) {
        const auto found = std::ranges::find(entries, name, &MediaEntry::name);
        if (found != entries.end())
            return *found;
    }
    return std::nullopt;
}

QString MediaLibrary::pathOf(const MediaEntry& entry) const {
    const QString path = (entry.onUsb ? m_usbFolder : m_mediaFolder) + u'/' + entry.name;
    return QFileInfo::exists(path) ? path : QString();
}

MediaDetails MediaLibrary::detailsOf(const MediaEntry& entry) {
    const QString path = pathOf(entry);
    if (path.isEmpty())
        return madeUpDetails();
    MediaDetails details = probed(path, entry.lastModifiedMs);
    const std::scoped_lock lock(m_mutex);
    const QString base = baseNameOf(entry.name);
    for (const MediaEntry& other : readState().onDisk) {
        if (other.kind == MediaEntry::Kind::Subtitle && belongsTo(other, base))
            details.subtitles.push_back(sideTrack(other.name, base, details.subtitles.size() + 1));
    }
    return details;
}

MediaDetails MediaLibrary::probed(const QString& path, qint64 lastModifiedMs) {
    const QString key = path + u'|' + QString::number(lastModifiedMs);
    {
        const std::scoped_lock lock(m_mutex);
        if (const auto known = m_details.constFind(key); known != m_details.cend())
            return *known;
    }
    const MediaDetails details = detailsOfFile(path);
    const std::scoped_lock lock(m_mutex);
    m_details.insert(key, details);
    return details;
}

bool MediaLibrary::remove(const MediaEntry& entry) {
    if (const QString path = pathOf(entry); !path.isEmpty())
        return QFile::remove(path);
    const std::scoped_lock lock(m_mutex);
    return m_generated.remove(entry.name);
}

MediaLibrary::Moving::Moving(MediaEntry entry, bool toUsb, const QString& from, const QString& to)
    : m_entry(std::move(entry)), m_toUsb(toUsb), m_target(to) {
    if (from.isEmpty())
        return;
    m_source = std::make_unique<QFile>(from);
    m_copy = std::make_unique<QTemporaryFile>(to + u".XXXXXX"_s + QLatin1String(MovingSuffix));
}

bool MediaLibrary::Moving::copyUpTo(qint64 end) {
    if (!m_source)
        return true;
    if (!m_source->isOpen() && (!m_source->open(QIODevice::ReadOnly) || !m_copy->open()))
        return false;
    const QByteArray bytes = m_source->read(end - m_source->pos());
    return m_copy->write(bytes) == bytes.size() && m_source->pos() == end;
}

MediaLibrary::Moving MediaLibrary::beginMove(const MediaEntry& entry, bool toUsb) const {
    return {entry, toUsb, pathOf(entry), (toUsb ? m_usbFolder : m_mediaFolder) + u'/' + entry.name};
}

bool MediaLibrary::finishMove(Moving& moving) {
    if (!moving.m_source) {
        const std::scoped_lock lock(m_mutex);
        return m_generated.move(moving.name(), moving.m_toUsb);
    }
    if (!moving.m_copy->rename(moving.m_target))
        return false;
    moving.m_copy->setAutoRemove(false);
    moving.m_copy->setPermissions(moving.m_source->permissions());
    return moving.m_source->remove();
}

} // namespace quiv::simulator
