#include "simulator/storage_mover.h"

#include <QDateTime>

namespace quiv::simulator {

static constexpr int slices = 40;

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
    if (m_status.state == QLatin1String("MOVING"))
        return Refusal{409, QStringLiteral("Another file is being moved.")};
    const auto entry = m_library.find(name);
    if (!entry)
        return Refusal{404, QStringLiteral("File not found")};
    if (entry->onUsb == toUsb)
        return Refusal{409, QStringLiteral("The file is there already.")};
    if (!m_library.isUsbConnected())
        return Refusal{409, QStringLiteral("The USB drive is not connected.")};
    if (m_thread.joinable())
        m_thread.join(); // of the last move
    m_status = {.state = QStringLiteral("MOVING"),
                .fileName = name,
                .message = QStringLiteral("Moving %1.").arg(name),
                .totalBytes = entry->sizeBytes,
                .updatedAtMs = QDateTime::currentMSecsSinceEpoch()};
    m_thread = std::thread([this, entry = *entry, toUsb] { move(entry, toUsb); });
    return std::nullopt;
}

bool StorageMover::isMoving(const QString& name) {
    const std::scoped_lock lock(m_mutex);
    return m_status.state == QLatin1String("MOVING") && m_status.fileName == name;
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
    return {{QStringLiteral("state"), m_status.state},
            {QStringLiteral("fileName"), m_status.fileName},
            {QStringLiteral("movedBytes"), m_status.movedBytes},
            {QStringLiteral("totalBytes"), m_status.totalBytes},
            {QStringLiteral("progressPercent"), share * 100},
            {QStringLiteral("speedBytesPerSec"), static_cast<qint64>(perSecond)},
            {QStringLiteral("message"), m_status.message},
            {QStringLiteral("updatedAtMs"), m_status.updatedAtMs}};
}

bool StorageMover::moveFile(MediaLibrary::Moving moving) {
    return copyInSlices(moving) && m_library.finishMove(moving);
}

void StorageMover::move(const MediaEntry& entry, bool toUsb) {
    const QString& name = entry.name;
    if (moveFile(m_library.beginMove(entry, toUsb)))
        tell(QStringLiteral("COMPLETED"), entry.sizeBytes,
             QStringLiteral("Moved %1 to %2.")
                 .arg(name, toUsb ? QStringLiteral("USB") : QStringLiteral("internal storage")));
    else
        tell(QStringLiteral("FAILED"), 0,
             QStringLiteral("%1 could not be moved and stays where it was.").arg(name));
}

bool StorageMover::waitForNextSlice() {
    std::unique_lock lock(m_mutex);
    return !m_ending.wait_for(lock, m_duration / slices, [this] { return m_stops; });
}

bool StorageMover::copyInSlices(MediaLibrary::Moving& moving) {
    const bool fails = m_failsNext.exchange(false);
    for (int slice = 1; slice <= slices; ++slice) {
        const bool isInterrupted = !waitForNextSlice() || !m_library.isUsbConnected();
        if (isInterrupted || (fails && slice > slices / 2))
            return false;
        const qint64 end = moving.sizeBytes() * slice / slices;
        if (!moving.copyUpTo(end))
            return false;
        tell(QStringLiteral("MOVING"), end, QStringLiteral("Moving %1.").arg(moving.name()));
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
