#pragma once

#include "platform/async/threads.h"
#include "platform/error.h"
#include "playback/local_playback.h"

#include <algorithm>
#include <cmath>
#include <list>

namespace quiv {

using namespace Qt::StringLiterals;

// Those who are told of something, until they go.
template <class... What> class FakeObservers {
    using Observer = std::function<void(const What&...)>;
    using Observers = std::list<Observer>;
    struct Entry final : Observation {
        Entry(std::shared_ptr<Observers> all, Observer observer)
            : observers(std::move(all)), place(observers->insert(observers->end(), observer)) {}
        ~Entry() override { observers->erase(place); }
        std::shared_ptr<Observers> observers;
        typename Observers::iterator place;
    };

public:
    std::unique_ptr<Observation> add(Observer observer) {
        return std::make_unique<Entry>(m_observers, std::move(observer));
    }
    void tell(const What&... what) const {
        const Observers now = *m_observers;
        for (const Observer& each : now)
            each(what...);
    }

private:
    std::shared_ptr<Observers> m_observers = std::make_shared<Observers>();
};

// A player without media: the test says what it finds, and reads what it was asked for.
class FakePlayer final : public MediaPlayer, public PlayerScreen {
public:
    std::unique_ptr<Observation>
    observeStatus(std::function<void(const ItemReport&)> observer) override {
        observer({});
        return m_statusObservers.add(std::move(observer));
    }
    void play() override { setPlaying(true); }
    void pause() override { setPlaying(false); }
    double currentTime() const override { return time; }
    void seek(double seconds) override {
        calls.append(u"seek "_s + QString::number(seconds, 'f', 3));
    }
    std::optional<MediaGroup> group(MediaKind kind) const override {
        return kind == MediaKind::Subtitles ? subtitles : audio;
    }
    void select(MediaKind kind, std::optional<std::int64_t> option) override {
        const QString name = kind == MediaKind::Subtitles ? u"subtitles "_s : u"audio "_s;
        calls.append(name + (option ? QString::number(*option) : u"none"_s));
    }

    const ScreenState& state() const override { return screen; }
    std::unique_ptr<Observation> observeState(std::function<void()> observer) override {
        return m_stateObservers.add(std::move(observer));
    }
    void setPlaying(bool isPlaying) override {
        calls.append(isPlaying ? u"play"_s : u"pause"_s);
        screen.isPlaying = isPlaying;
        tellState();
    }
    void setVolume(double volume) override {
        calls.append(u"volume "_s + QString::number(volume));
        screen.volume = volume;
        tellState();
    }
    void setMuted(bool isMuted) override {
        calls.append(isMuted ? u"mute"_s : u"unmute"_s);
        screen.isMuted = isMuted;
        tellState();
    }
    QQuickItem* makeVideo() override { return nullptr; }

    void report(ItemStatus status, const QString& error = {}) {
        m_statusObservers.tell({status, error});
    }
    void tellState() { m_stateObservers.tell(); }

    double time = NAN;
    std::optional<MediaGroup> subtitles;
    std::optional<MediaGroup> audio;
    ScreenState screen;
    QStringList calls;

private:
    FakeObservers<ItemReport> m_statusObservers;
    FakeObservers<> m_stateObservers;
};

class FakeMediaPlayers final : public MediaPlayers {
public:
    Task<OpenedPlayer> open(QUrl address) override {
        const auto player = std::make_shared<FakePlayer>();
        addresses.append(address);
        newest = player;
        co_return OpenedPlayer{player, player};
    }

    QList<QUrl> addresses;
    std::weak_ptr<FakePlayer> newest;
};

class FakeExternalPlayer final : public ExternalPlayer {
public:
    Task<std::optional<PlayerProgram>> find() override {
        co_return isInstalled ? std::optional(PlayerProgram{{u"vlc"_s}}) : std::nullopt;
    }
    Task<> open(PlayerProgram, QUrl address) override {
        if (!error.isEmpty())
            throw Error(error);
        opened.append(address);
        co_return;
    }

    bool isInstalled = true;
    QString error;
    QList<QUrl> opened;
};

class FakeSleepInhibitor final : public SleepInhibitor {
public:
    void setInhibited(bool inhibited) override { isInhibited = inhibited; }
    bool isInhibited = false;
};

// What plays on this computer, in the test's hand.
struct FakeLocalPorts {
    FakeMediaPlayers players;
    FakeExternalPlayer externalPlayer;
    FakeSleepInhibitor sleep;
    LocalPlayback::Ports ports{players, externalPlayer, sleep};
};

} // namespace quiv
