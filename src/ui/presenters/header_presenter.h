#pragma once

#include "model/window_state.h"
#include "ui/storage_badges.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

namespace quiv {

class WindowActions;

// What the header shows.
struct HeaderState {
    Q_GADGET
    QML_VALUE_TYPE(headerState)
    Q_PROPERTY(QVariantList badges READ badgeList)
    Q_PROPERTY(QString statusMessage MEMBER statusMessage)
    Q_PROPERTY(QString announcement MEMBER announcement)
    Q_PROPERTY(bool isFailure MEMBER isFailure)
    Q_PROPERTY(QString filePlace MEMBER filePlace)
    Q_PROPERTY(QString unreachableText MEMBER unreachableText)
    Q_PROPERTY(bool isSyncing MEMBER isSyncing)
    Q_PROPERTY(bool requiresPairing MEMBER requiresPairing)
    Q_PROPERTY(QString codeValidUntilText MEMBER codeValidUntilText)

public:
    QVariantList badgeList() const { return badgeValues(badges); }

    QList<StorageStatusBadge> badges;
    QString statusMessage;
    QString announcement;    // the message as it is said to who does not see it
    bool isFailure = false;  // what the message tells of
    QString filePlace;       // the folder of the file that the message tells of; empty without one
    QString unreachableText; // a sentence; empty while the TV answers
    bool isSyncing = false;
    bool requiresPairing = false;
    QString codeValidUntilText; // a sentence, or empty while the end is not known

    bool operator==(const HeaderState&) const = default;
};

// The move that the TV is carrying out.
struct HeaderMove {
    Q_GADGET
    QML_VALUE_TYPE(headerMove)
    Q_PROPERTY(bool isShown MEMBER isShown)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(double fraction MEMBER fraction)
    Q_PROPERTY(QString percentText MEMBER percentText)
    Q_PROPERTY(QString speedText MEMBER speedText)

public:
    bool isShown = false;
    QString label;
    double fraction = 0;
    QString percentText;
    QString speedText;

    bool operator==(const HeaderMove&) const = default;
};

HeaderMove headerMove(const MoveState& move);

// Its storage, the hint to set up a drive, and where uploads go.
QList<StorageStatusBadge> headerBadges(const WindowState& state);

// The message without how far it has come, so that not every step is said.
QString announcedText(const QString& message);

// The folder of a local file as people write it: "~/Videos".
QString folderText(const QUrl& file, const QString& home);

// Returns "This code is valid until 14:05", or an empty text while the end is not known.
QString codeValidUntilText(const PairingState& pairing);

// The status of the selected TV above its library.
class HeaderPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(quiv::HeaderState state READ state NOTIFY stateChanged)
    Q_PROPERTY(quiv::HeaderMove move READ move NOTIFY moveChanged)

public:
    explicit HeaderPresenter(WindowActions& actions, QObject* parent = nullptr);

    const HeaderState& state() const { return m_state; }
    const HeaderMove& move() const { return m_move; }

    void show(const WindowState& state);

    Q_INVOKABLE void cancelPairing();
    // The file that the message tells of, in the desktop's file manager.
    Q_INVOKABLE void showFile();

Q_SIGNALS:
    void stateChanged();
    void moveChanged();

private:
    WindowActions& m_actions;
    HeaderState m_state;
    QUrl m_file; // that the message tells of
    HeaderMove m_move;
};

} // namespace quiv
