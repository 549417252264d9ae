#pragma once

#include "support/fake_player.h"
#include "ui/desktop/desktop_ports.h"

#include <QList>

#include <optional>

namespace quiv {

class FakeLauncherEntry final : public LauncherEntry {
public:
    void showProgress(std::optional<double> value) override { progress = value; }
    std::optional<double> progress;
};

class FakeNotifier final : public Notifier {
public:
    void notify(const Notification& notification,
                std::function<void(const NotificationAnswer&)> answered) override {
        told.append(notification);
        answer = std::move(answered);
    }
    void withdraw() override { answer = nullptr; }

    QList<Notification> told;
    std::function<void(const NotificationAnswer&)> answer;
};

class FakeMediaControls final : public MediaControls {
public:
    void setPlayer(Player* newPlayer) override { player = newPlayer; }
    void show(const std::optional<MediaSession>& shown) override { session = shown; }
    void positionJumped() override { ++jumps; }

    Player* player = nullptr;
    std::optional<MediaSession> session;
    int jumps = 0;
};

// What a desktop offers, in the test's hand.
struct FakeDesktop {
    FakeLauncherEntry launcher;
    FakeMediaControls mediaControls;
    FakeNotifier notifier;
    FakeSleepInhibitor awake;
    DesktopPorts ports{launcher, mediaControls, notifier, awake};
};

} // namespace quiv
