#include "ui/presenters/window_presenter.h"

#include "transfer/deletion.h"
#include "transfer/upload_names.h"
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
      m_library(actions),
      m_dock(actions),
      m_localPanel(actions),
      m_uploads(actions),
      m_noTv(ports.clock),
      m_pairingSheet(actions) {
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
    m_actions.post(u"Not uploaded, because another TV was selected meanwhile. Choose the files "
                   "again."_s);
    return false;
}

bool WindowPresenter::areOfThisComputer(const QList<QUrl>& files) {
    if (std::ranges::all_of(files, &QUrl::isLocalFile))
        return true;
    m_actions.post(u"Not uploaded, because the files are not on this computer. Copy them here "
                   "first."_s);
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

void WindowPresenter::askToDelete(const FileGroup& group) {
    const QString message = u"This will delete %1 file(s) from the TV, including subtitles linked "
                            "to \"%2\"."_s;
    m_deletePrompt.ask(
        message.arg(QString::number(filesOf(group).size()), displayText(group.title)),
        [this, group] { m_actions.deleteGroup(group); });
}

void WindowPresenter::show(const WindowState& state) {
    m_tvKey = selectedTvKey(state);
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
