#include "ui/presenters/header_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QString unreachableText(const QString& tv) {
    return displayText(tv) + u" does not answer. It may be off, or in another network."_s;
}

} // namespace

QList<StorageStatusBadge> headerBadges(const WindowState& state) {
    const LibraryContent& content = state.content;
    auto badges = storageStatusBadges(content.storage, content.usbStorage);
    if (content.usbSetupHint && !content.usbSetupHint->isEmpty())
        badges.append({displayText(*content.usbSetupHint), BadgeTone::Tone::Amber});
    badges.append(
        {u"Uploads: "_s + displayText(content.preferredUploadTarget), BadgeTone::Tone::Neutral});
    return badges;
}

QString announcedText(const QString& message) {
    static const QRegularExpression progress(u" \\d+%$"_s);
    return QString(message).remove(progress);
}

QString folderText(const QUrl& file, const QString& home) {
    const QString folder = QFileInfo(file.toLocalFile()).path();
    const bool isAtHome = folder == home || folder.startsWith(home + u'/');
    return displayText(isAtHome ? u'~' + folder.sliced(home.size()) : folder);
}

QString codeValidUntilText(const PairingState& pairing) {
    const auto time = pairingCodeValidUntilText(pairing.pairingCodeValidUntil);
    return time ? u"This code is valid until "_s + *time : QString();
}

HeaderMove headerMove(const MoveState& move) {
    if (!move.isMovingFile)
        return {};
    const QString name = displayText(move.currentMoveFileName);
    HeaderMove shown;
    shown.isShown = true;
    shown.label = name.isEmpty() ? u"Moving file"_s : u"Moving "_s + name;
    shown.fraction = move.moveProgress;
    shown.percentText = formatPercent(move.moveProgress);
    shown.speedText = formatTransferSpeed(move.moveSpeedBytesPerSecond);
    return shown;
}

HeaderPresenter::HeaderPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions) {
    m_state.badges = headerBadges(WindowState());
}

void HeaderPresenter::show(const WindowState& state) {
    HeaderState shown;
    shown.badges = headerBadges(state);
    shown.statusMessage = displayText(state.status.text);
    shown.announcement = announcedText(shown.statusMessage);
    shown.isFailure = state.status.kind == StatusMessage::Kind::Failure;
    m_file = state.status.file;
    if (m_file.isLocalFile())
        shown.filePlace = folderText(m_file, QDir::homePath());
    if (state.selectedDevice && !state.isReachable)
        shown.unreachableText = unreachableText(state.selectedDevice->name);
    shown.isSyncing = state.isLibraryLoading;
    shown.requiresPairing = state.pairing.requiresControlPairing;
    shown.codeValidUntilText = codeValidUntilText(state.pairing);
    publish(this, m_state, std::move(shown), &HeaderPresenter::stateChanged);
    publish(this, m_move, headerMove(state.move), &HeaderPresenter::moveChanged);
}

void HeaderPresenter::showFile() {
    m_actions.showInFileManager(m_file);
}

void HeaderPresenter::cancelPairing() {
    m_actions.cancelPairing();
}

} // namespace quiv
