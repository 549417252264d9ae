#pragma once

#include "platform/async/task.h"
#include "ui/presenters/delete_prompt_presenter.h"
#include "ui/presenters/dock_presenter.h"
#include "ui/presenters/file_chooser_presenter.h"
#include "ui/presenters/header_presenter.h"
#include "ui/presenters/library_presenter.h"
#include "ui/presenters/pairing_sheet_presenter.h"
#include "ui/presenters/sidebar_presenter.h"
#include "ui/presenters/subtitle_rename_presenter.h"
#include "ui/presenters/uploads_presenter.h"
#include "ui/thumbnails/thumbnail_store.h"
#include "ui/window/window_ports.h"

namespace quiv {

// All that the window's views bind to. Takes the model's state piece by piece and hands each piece
// to the presenters that show it; what the user does goes to `actions`, which must outlive this.
class WindowPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(quiv::SidebarPresenter* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(quiv::HeaderPresenter* header READ header CONSTANT)
    Q_PROPERTY(quiv::LibraryPresenter* library READ library CONSTANT)
    Q_PROPERTY(quiv::DockPresenter* dock READ dock CONSTANT)
    Q_PROPERTY(quiv::UploadsPresenter* uploads READ uploads CONSTANT)
    Q_PROPERTY(quiv::FileChooserPresenter* fileChooser READ fileChooser CONSTANT)
    Q_PROPERTY(quiv::PromptPresenter* subtitleRename READ subtitleRename CONSTANT)
    Q_PROPERTY(quiv::PromptPresenter* deletePrompt READ deletePrompt CONSTANT)
    Q_PROPERTY(quiv::PairingSheetPresenter* pairingSheet READ pairingSheet CONSTANT)
    Q_PROPERTY(quiv::ThumbnailStore* thumbnails READ thumbnails CONSTANT)

public:
    WindowPresenter(WindowActions& actions, const WindowPorts& ports, QObject* parent = nullptr);
    ~WindowPresenter() override;

    SidebarPresenter* sidebar() { return &m_sidebar; }
    HeaderPresenter* header() { return &m_header; }
    LibraryPresenter* library() { return &m_library; }
    DockPresenter* dock() { return &m_dock; }
    UploadsPresenter* uploads() { return &m_uploads; }
    FileChooserPresenter* fileChooser() { return &m_fileChooser; }
    SubtitleRenamePresenter* subtitleRename() { return &m_subtitleRename; }
    DeletePromptPresenter* deletePrompt() { return &m_deletePrompt; }
    PairingSheetPresenter* pairingSheet() { return &m_pairingSheet; }
    ThumbnailStore* thumbnails() { return &m_thumbnails; }

    void setDiscoveredDevices(const QList<TVEndpoint>& devices);
    void setSelectedDevice(const std::optional<TVEndpoint>& device);
    void setPairing(const PairingState& pairing);
    void setContent(const LibraryContent& content);
    void setLoadInProgress(bool isLoading);
    void setStatusMessage(const QString& message);
    // To be called for every reading, also one that says the same as the last.
    void setPlayback(const std::optional<PlaybackResponse>& playback);
    void setMove(const MoveState& move);
    void setUploads(const QList<UploadListItem>& items, const QSet<QString>& matchKeys);
    // Lets the user choose files to upload.
    Q_INVOKABLE void pickUploads();
    void setUploadProgress(const QList<UploadListItem>& items);
    void setDownload(const DownloadState& download);
    void setThumbnails(const std::optional<ThumbnailAddress>& thumbnails);

private:
    Task<> pickingUploads();
    Task<> pickingSubtitle(QString videoName);

    WindowActions& m_actions;
    PreferredFileDialogs& m_fileDialogs;
    ThumbnailStore m_thumbnails;
    SidebarPresenter m_sidebar;
    HeaderPresenter m_header;
    LibraryPresenter m_library;
    DockPresenter m_dock;
    UploadsPresenter m_uploads;
    FileChooserPresenter m_fileChooser;
    SubtitleRenamePresenter m_subtitleRename;
    DeletePromptPresenter m_deletePrompt;
    PairingSheetPresenter m_pairingSheet;
    Task<> m_picking; // the newest alone
};

} // namespace quiv
