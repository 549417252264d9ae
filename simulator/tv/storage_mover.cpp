#include "simulator/tv/storage_mover.h"

#include <QDateTime>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr int Slices = 40;

} // namespace

StorageMover::StorageMover(MediaLibrary& library, Duration duration)
    : m_library(library), m_duration(duration) {}

StorageMover::~StorageMover() {
    {
        const std::scoped_lock lock(m_mutex);
        m_stops = true;
    }
    m_ending.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

std::optional<StorageMover::Refusal> StorageMover::start(const QString& name, bool toUsb) {
    const std::scoped_lock lock(m_mutex);
    if (m_status.state == "MOVING"_L1)
        return Refusal{409, u"Another file is being moved."_s};
    const auto entry = m_library.find(name);
    if (!entry)
        return Refusal{404, u"File not found"_s};
    if (entry->onUsb == toUsb)
        return Refusal{409, u"The file is there already."_s};
    if (!m_library.isUsbConnected())
        return Refusal{409, u"The USB drive is not connected."_s};
    if (m_thread.joinable())
        m_thread.join(); // of the last move
    m_status = {.state = u"MOVING"_s,
                .fileName = name,
                .message = u"Moving %1."_s.arg(name),
                .totalBytes = entry->sizeBytes,
                .updatedAtMs = QDateTime::currentMSecsSinceEpoch()};
    m_thread = std::thread([this, entry = *entry, toUsb] { move(entry, toUsb); });
    return std::nullopt;
}

bool StorageMover::isMoving(const QString& name) {
    const std::scoped_lock lock(m_mutex);
    return m_status.state == "MOVING"_L1 && m_status.fileName == name;
}

void StorageMover::failNext() {
    m_failsNext = true;
}

QJsonObject StorageMover::status() {
    const std::scoped_lock lock(m_mutex);
    const double share = m_status.totalBytes > 0 ? static_cast<double>(m_status.movedBytes) /
                                                       static_cast<double>(m_status.totalBytes)
                                                 : 0;
    const auto perSecond = static_cast<double>(m_status.totalBytes) * 1000 /
                           static_cast<double>(std::max<qint64>(m_duration.count(), 1));
    return {{u"state"_s, m_status.state},
            {u"fileName"_s, m_status.fileName},
            {u"movedBytes"_s, m_status.movedBytes},
            {u"totalBytes"_s, m_status.totalBytes},
            {u"progressPercent"_s, share * 100},
            {u"speedBytesPerSec"_s, static_cast<qint64>(perSecond)},
            {u"message"_s, m_status.message},
            {u"updatedAtMs"_s, m_status.updatedAtMs}};
}

bool StorageMover::moveFile(MediaLibrary::Moving moving) {
    return copyInSlices(moving) && m_library.finishMove(moving);
}

void StorageMover::move(const MediaEntry& entry, bool toUsb) {
    const QString& name = entry.name;
    if (moveFile(m_library.beginMove(entry, toUsb)))
        tell(u"COMPLETED"_s, entry.sizeBytes,
             u"Moved %1 to %2."_s.arg(name, toUsb ? u"USB"_s : u"internal storage"_s));
    else
        tell(u"FAILED"_s, 0, u"%1 could not be moved and stays where it was."_s.arg(name));
}

bool StorageMover::waitForNextSlice() {
    std::unique_lock lock(m_mutex);
    return !m_ending.wait_for(lock, m_duration / Slices, [this] { return m_stops; });
}

bool StorageMover::copyInSlices(MediaLibrary::Moving& moving) {
    const bool fails = m_failsNext.exchange(false);
    for (int slice = 1; slice <= Slices; ++slice) {
        const bool isInterrupted = !waitForNextSlice() || !m_library.isUsbConnected();
        if (isInterrupted || (fails && slice > Slices / 2))
            return false;
        const qint64 end = moving.sizeBytes() * slice / Slices;
        if (!moving.copyUpTo(end))
            return false;
        tell(u"MOVING"_s, end, u"Moving %1."_s.arg(moving.name()));
    }
    return true;
}

void StorageMover::tell(const QString& state, qint64 movedBytes, const QString& message) {
    const std::scoped_lock lock(m_mutex);
    m_status.state = state;
    m_status.movedBytes = movedBytes;
    m_status.message = message;
    m_status.updatedAtMs = std::max(m_status.updatedAtMs + 1, QDateTime::currentMSecsSinceEpoch());
}

} // namespace quiv::simulator
