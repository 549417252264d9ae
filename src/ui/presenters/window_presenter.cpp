#include "ui/presenters/window_presenter.h"

#include "platform/publish.h"
#include "transfer/deletion.h"
#include "transfer/upload_names.h"
#include "ui/desktop/transfers_at_work.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const FileFilter AllFiles{u"All files"_s, {}};

FileFilter videoFiles() {
    return {u"Videos"_s, supportedVideoExtensions()};
}

FileFilter subtitleFiles() {
    return {u"Subtitles"_s, supportedSubtitleExtensions()};
}

} // namespace

WindowPresenter::WindowPresenter(WindowActions& actions, const WindowPorts& ports, QObject* parent)
    : QObject(parent),
      m_actions(actions),
      m_fileDialogs(ports.fileDialogs),
      m_thumbnails(ports.http, ports.pictures, ports.clock),
      m_sidebar(actions),
      m_header(actions),
      m_uploads(actions),
      m_library(actions, m_uploads),
      m_dock(actions),
      m_localPanel(actions),
      m_pairingSheet(actions),
      m_shortcuts([this] { return hasDialog(); }) {
    connect(&m_library, &LibraryPresenter::deleteRequested, this, &WindowPresenter::askToDelete);
    connect(&m_library, &LibraryPresenter::subtitleRequested, this,
            [this](const QString& videoName) { m_picking = pickingSubtitle(videoName); });
    m_fileDialogs.setFallback(&m_fileChooser);
}

WindowPresenter::~WindowPresenter() {
    m_fileDialogs.setFallback(nullptr);
}

void WindowPresenter::pickUploads() {
    m_picking = pickingUploads();
}

Task<> WindowPresenter::pickingUploads() {
    FileDialogRequest request(FileDialogRequest::Purpose::OpenSeveral, u"Upload to the TV"_s,
                              u"Upload"_s);
    request.filters = {AllFiles, videoFiles(), subtitleFiles()};
    const QString tvKey = m_tvKey;
    const FileDialogAnswer files = co_await m_fileDialogs.ask(request);
    if (files && !files->isEmpty() && isForSelectedTv(tvKey) && areOfThisComputer(*files))
        m_actions.queueUploadsFromPicker(*files);
}

Task<> WindowPresenter::pickingSubtitle(QString videoName) {
    FileDialogRequest request(FileDialogRequest::Purpose::OpenOne, u"Attach Subtitle"_s,
                              u"Attach"_s);
    request.filters = {subtitleFiles(), AllFiles};
    const QString tvKey = m_tvKey;
    const FileDialogAnswer files = co_await m_fileDialogs.ask(request);
    if (files && !files->isEmpty() && isForSelectedTv(tvKey) && areOfThisComputer(*files))
        attachSubtitle(files->constFirst(), videoName);
}

bool WindowPresenter::isForSelectedTv(const QString& tvKey) {
    if (tvKey == m_tvKey)
        return true;
    m_actions.post(failureMessage(u"Not uploaded, because another TV was selected meanwhile. "
                                  "Choose the files again."_s));
    return false;
}

bool WindowPresenter::areOfThisComputer(const QList<QUrl>& files) {
    if (std::ranges::all_of(files, &QUrl::isLocalFile))
        return true;
    m_actions.post(failureMessage(u"Not uploaded, because the files are not on this computer. "
                                  "Copy them here first."_s));
    return false;
}

void WindowPresenter::attachSubtitle(const QUrl& subtitle, const QString& videoName) {
    const QString name = proposedSubtitleRemoteName(videoName, subtitle);
    const auto queue = [this, subtitle, name] {
        m_actions.queueSubtitleUpload(subtitle, name);
    };
    if (name.compare(subtitle.fileName(), Qt::CaseInsensitive) == 0)
        return queue();
    m_subtitleRename.ask(u"The selected subtitle filename does not match this video. It will be "
                         "uploaded as \""_s +
                             displayText(name) + u"\" so it links correctly."_s,
                         queue);
}

void WindowPresenter::askToDelete(const QList<FileGroup>& groups) {
    const qsizetype files = filesOf(groups).size();
    const QString linked = groups.size() == 1 ? u'"' + displayText(groups.constFirst().title) + u'"'
                                              : u"these %1 titles"_s.arg(groups.size());
    m_deletePrompt.ask(u"This will delete "_s + QString::number(files) +
                           u" file(s) from the TV, including subtitles linked to "_s + linked +
                           u'.',
                       [this, groups] { m_actions.deleteGroups(groups); });
}

bool WindowPresenter::hasDialog() const {
    return m_subtitleRename.isShown() || m_deletePrompt.isShown() || m_quitPrompt.isShown() ||
           m_fileChooser.isShown() || m_pairingSheet.state().isShown || m_shortcuts.isShown();
}

bool WindowPresenter::mayClose() {
    if (m_isCloseConfirmed || m_breaksOff.isEmpty())
        return true;
    m_quitPrompt.ask(m_breaksOff, [this] {
        m_isCloseConfirmed = true;
        Q_EMIT closeConfirmed();
    });
    return false;
}

void WindowPresenter::pauseOrResume() {
    if (m_localPanel.state().isShown)
        m_localPanel.playOrPause();
    else if (m_dock.state().isShown)
        m_dock.playOrPause();
}

QString windowTitle(const WindowState& state) {
    const QString application = u"Quiv Controller"_s;
    return state.selectedDevice ? displayText(state.selectedDevice->name) + u" – "_s + application
                                : application;
}

void WindowPresenter::show(const WindowState& state) {
    publish(this, m_title, windowTitle(state), &WindowPresenter::titleChanged);
    m_tvKey = selectedTvKey(state);
    m_breaksOff = transfersToBreakOff(state);
    m_noTv.show(state);
    m_sidebar.show(state);
    m_header.show(state);
    m_library.show(state);
    m_dock.show(state);
    m_localPanel.show(state);
    m_uploads.show(state);
    m_subtitleRename.show(state);
    m_deletePrompt.show(state);
    m_pairingSheet.show(state);
}

} // namespace quiv
