#include "simulator/library/thumbnails.h"

#include <QProcess>

#include <algorithm>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr int MakingTimeoutMs = 10'000;
constexpr int StopCheckMs = 50;

QString keyOf(const MediaEntry& entry) {
    return entry.name + u'|' + QString::number(entry.lastModifiedMs);
}

} // namespace

Thumbnails::Thumbnails(MediaLibrary& library)
    : m_library(library), m_thread([this] { makeWanted(); }) {}

Thumbnails::~Thumbnails() {
    {
        const std::scoped_lock lock(m_mutex);
        m_stops = true;
    }
    m_change.notify_all();
    m_thread.join();
}

void Thumbnails::bring(const QString& name, const QByteArray& jpeg) {
    const std::scoped_lock lock(m_mutex);
    if (!jpeg.isEmpty())
        m_brought.insert(name, jpeg);
}

void Thumbnails::forget(const QString& name) {
    const std::scoped_lock lock(m_mutex);
    m_brought.remove(name);
}

QByteArray Thumbnails::find(const QString& name) {
    const auto entry = m_library.find(name);
    if (!entry)
        return {};
    const std::scoped_lock lock(m_mutex);
    const auto brought = m_brought.constFind(name);
    return brought != m_brought.cend() ? *brought : madeFor(*entry);
}

// Called with the lock held.
QByteArray Thumbnails::madeFor(const MediaEntry& entry) {
    const QString key = keyOf(entry);
    if (const auto made = m_made.constFind(key); made != m_made.cend())
        return *made;
    const bool isAwaited =
        std::ranges::any_of(m_wanted, [&](const MediaEntry& each) { return keyOf(each) == key; });
    if (entry.kind == MediaEntry::Kind::Video && !isAwaited) {
        m_wanted.push_back(entry);
        m_change.notify_all();
    }
    return {};
}

void Thumbnails::makeWanted() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_change.wait(lock, [this] { return m_stops || !m_wanted.empty(); });
        if (m_stops)
            return;
        const MediaEntry entry = m_wanted.front();
        lock.unlock();
        const QByteArray jpeg = make(entry);
        lock.lock();
        m_made.insert(keyOf(entry), jpeg);
        m_wanted.pop_front();
    }
}

QByteArray Thumbnails::make(const MediaEntry& entry) {
    const QString path = m_library.pathOf(entry);
    if (path.isEmpty())
        return {};
    // Not the first picture, which is often black.
    const double seconds = static_cast<double>(m_library.detailsOf(entry).durationMs) / 10'000;
    QProcess process;
    process.start(u"ffmpeg"_s,
                  QStringList{u"-ss"_s, QString::number(seconds), u"-i"_s, u"file:"_s + path} +
                      u"-nostdin -v quiet -threads 1 -map 0:v:0 -frames:v 1 -vf "
                      "scale=320:-2 -c:v mjpeg -f image2pipe -"_s.split(u' '));
    for (int waitedMs = 0; waitedMs < MakingTimeoutMs && !m_stops; waitedMs += StopCheckMs) {
        if (process.waitForFinished(StopCheckMs) || process.state() == QProcess::NotRunning)
            return process.readAllStandardOutput();
    }
    process.kill();
    process.waitForFinished();
    return {};
}

} // namespace quiv::simulator
