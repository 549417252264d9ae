#pragma once

#include <QString>

#include <functional>

namespace quiv {

// What a notification tells, in plain text.
struct Notification {
    QString title;
    QString text;
    QString action{}; // the label of its button; empty for none

    bool operator==(const Notification&) const = default;
};

// What the user did with a notification. A desktop gives such an act a token with which a window
// may be brought to the front; empty where it has none.
struct NotificationAnswer {
    bool isAction = false; // the button, else the notification itself
    QString activationToken{};
};

// Tells the user something while the window is not looked at. Main thread only.
class Notifier {
public:
    virtual ~Notifier() = default;
    // Replaces what was told before. `answered` is called at most once, and not after the notifier
    // has gone. Nothing happens on a desktop without notifications.
    virtual void notify(const Notification& notification,
                        std::function<void(const NotificationAnswer&)> answered) = 0;
    // Takes the last one back if it is still shown.
    virtual void withdraw() = 0;
};

} // namespace quiv
