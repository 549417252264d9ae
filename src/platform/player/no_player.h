#pragma once

#include "platform/async/threads.h"
#include "platform/player/observers.h"
#include "platform/player/player_screen.h"

#include <cmath>

namespace quiv {

// Stands for a player that cannot be had: it fails as soon as the event loop turns.
class NoPlayer final : public MediaPlayer, public PlayerScreen {
public:
    NoPlayer() {
        postToMainThread(std::weak_ptr<const void>(m_isThere), [this] {
            m_status = {ItemStatus::Failed, QStringLiteral("the player is not installed")};
            m_observers.tell(m_status);
        });
    }

    std::unique_ptr<Observation>
    observeStatus(std::function<void(const ItemReport&)> observer) override {
        observer(m_status);
        return m_observers.add(std::move(observer));
    }
    void play() override {}
    void pause() override {}
    double currentTime() const override { return NAN; }
    void seek(double) override {}
    std::optional<MediaGroup> group(MediaKind) const override { return std::nullopt; }
    void select(MediaKind, std::optional<std::int64_t>) override {}

    const ScreenState& state() const override { return m_state; }
    std::unique_ptr<Observation> observeState(std::function<void()>) override { return nullptr; }
    void setPlaying(bool) override {}
    void setVolume(double) override {}
    void setMuted(bool) override {}
    QQuickItem* makeVideo() override { return nullptr; }

private:
    const ScreenState m_state;
    ItemReport m_status;
    Observers<ItemReport> m_observers;
    std::shared_ptr<const bool> m_isThere = std::make_shared<bool>(true);
};

} // namespace quiv
