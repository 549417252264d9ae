#pragma once

#include "net/tv.h"
#include "net/wire_records.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"

#include <QObject>
#include <QString>

#include <optional>

namespace quiv {

class Library;
class PendingFiles;

// The move of a file between the TV's storages, as the TV reports it.
struct MoveState {
    bool isMovingFile = false;
    double moveProgress = 0; // 0 to 1
    double moveSpeedBytesPerSecond = 0;
    QString currentMoveFileName; // of the last report

    bool operator==(const MoveState&) const = default;
};

// What a report changes.
struct MoveStep {
    MoveState state;
    std::optional<QString> statusMessage{};
    bool hasFailed = false;    // as the message says
    bool hasMovedFile = false; // a move that was seen running is complete
};
MoveStep moveStep(const MoveState& before, const MoveStatusResponse& report);

// A report's identity: one that is told again changes nothing.
QString moveStateKey(const MoveStatusResponse& report);

// Where a file from this storage would be moved, "USB" or "INTERNAL". A file without a
// storage location is taken to be on the internal one.
QString otherStorage(const std::optional<QString>& storageLocation);

// Asks the selected TV to move a video between its storages and follows the move, which is the
// TV's own: it goes on without us and is never timed out here.
class StorageMove : public QObject {
    Q_OBJECT

public:
    StorageMove(const TvAccess& tvs, Library& library, PendingFiles& pending,
                QObject* parent = nullptr);

    const MoveState& state() const { return m_state; }

    Task<> refreshMoveStatus(Errors errors);
    void applyMoveStatus(const MoveStatusResponse& report);

    // Forgets what is known, because another TV was selected.
    void reset();

    // To "USB" or "INTERNAL", in any letter case.
    void startMove(const QString& videoName, const QString& target);

Q_SIGNALS:
    void stateChanged();

private:
    Task<> start(QString videoName, QString target);

    const TvAccess m_tvs;
    Library& m_library;
    PendingFiles& m_pending;
    MoveState m_state;
    QString m_lastMoveStateKey;
    TaskSet m_tasks;
};

} // namespace quiv
