#include "transfer/storage_move.h"

#include "library/library.h"
#include "platform/publish.h"
#include "transfer/pending_files.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto UsbStorage = u"USB"_s;
const auto InternalStorage = u"INTERNAL"_s;

double progressOf(const MoveStatusResponse& report) {
    double progress = 0;
    if (report.progressPercent)
        progress = *report.progressPercent / 100;
    else if (report.totalBytes >= 1)
        progress = static_cast<double>(report.movedBytes) / static_cast<double>(report.totalBytes);
    return std::clamp(progress, 0.0, 1.0);
}

MoveStep movingStep(const MoveState& before, const MoveStatusResponse& report) {
    MoveState state = before;
    state.isMovingFile = true;
    state.currentMoveFileName = report.fileName;
    state.moveProgress = progressOf(report);
    if (report.speedBytesPerSec.value_or(0) >= 1)
        state.moveSpeedBytesPerSecond = static_cast<double>(*report.speedBytesPerSec);
    const QString percent = QString::number(static_cast<int>(state.moveProgress * 100));
    return {.state = state,
            .statusMessage = u"Moving "_s + report.fileName + u"... "_s + percent + u'%'};
}

QString startFailureText(int status, const QByteArray&) {
    return u"Move failed to start (HTTP %1)"_s.arg(status);
}

} // namespace

MoveStep moveStep(const MoveState& before, const MoveStatusResponse& report) {
    const QString state = report.state.toUpper();
    if (state == "MOVING"_L1)
        return movingStep(before, report);
    if (state == "COMPLETED"_L1)
        return {.state = {.moveProgress = 1, .currentMoveFileName = report.fileName},
                .statusMessage = report.message,
                .hasMovedFile = before.isMovingFile};
    if (state == "FAILED"_L1)
        return {.state = {.currentMoveFileName = report.fileName},
                .statusMessage = report.message,
                .hasFailed = true};
    return {.state = before.isMovingFile ? MoveState() : before};
}

QString moveStateKey(const MoveStatusResponse& report) {
    return report.state.toUpper() + u'|' + report.fileName + u'|' +
           QString::number(report.updatedAtMs);
}

QString otherStorage(const std::optional<QString>& storageLocation) {
    return storageLocation.value_or(QString()).toUpper() == UsbStorage ? InternalStorage
                                                                       : UsbStorage;
}

StorageMove::StorageMove(const TvAccess& tvs, Library& library, PendingFiles& pending,
                         QObject* parent)
    : QObject(parent), m_tvs(tvs), m_library(library), m_pending(pending) {}

void StorageMove::startMove(const QString& videoName, const QString& target) {
    m_tasks.add(start(videoName, target.toUpper()));
}

Task<> StorageMove::start(QString videoName, QString target) {
    const auto selected = m_tvs.current();
    if (!selected || (target != UsbStorage && target != InternalStorage))
        co_return;
    const FileRequest request{FileRequest::Kind::Move, m_tvs.selected().key(), videoName};
    const PendingFiles::Wait wait(m_pending, {request});
    // Its outcome is said whichever TV is selected meanwhile.
    const Tv tv = selected->whicheverIsSelected();
    const QueryItems query{{u"name"_s, videoName}, {u"target"_s, target.toLower()}};
    try {
        co_await tv.post(u"api/files/move"_s, query, startFailureText);
    } catch (const Error& error) {
        tv.say(failureMessage(u"Move failed to start: "_s, error));
        co_return;
    }
    tv.say(u"Move started for "_s + videoName);
    if (tv.isSelected())
        co_await refreshMoveStatus(Errors::Reported);
}

Task<> StorageMove::refreshMoveStatus(Errors errors) {
    const auto tv = m_tvs.current();
    if (!tv)
        co_return;
    try {
        const auto report = co_await tv->get<MoveStatusResponse>(u"api/move-status"_s);
        applyMoveStatus(report);
    } catch (const Error& error) {
        if (errors == Errors::Reported)
            tv->say(failureMessage(u"Failed to fetch move status: "_s, error));
    }
}

void StorageMove::applyMoveStatus(const MoveStatusResponse& report) {
    const QString key = moveStateKey(report);
    if (key == m_lastMoveStateKey)
        return;
    m_lastMoveStateKey = key;
    const MoveStep step = moveStep(m_state, report);
    publish(this, m_state, step.state, &StorageMove::stateChanged);
    if (step.statusMessage)
        m_tvs.say(step.hasFailed ? failureMessage(*step.statusMessage)
                                 : StatusMessage{*step.statusMessage});
    if (step.hasMovedFile)
        m_tasks.add(m_library.loadLibrary(Library::Load::Quiet));
}

void StorageMove::reset() {
    m_lastMoveStateKey.clear();
    publish(this, m_state, MoveState(), &StorageMove::stateChanged);
}

} // namespace quiv
