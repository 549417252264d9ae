#pragma once

#include "platform/async/task.h"
#include "ui/presenters/dock_presenter.h"
#include "ui/presenters/file_chooser_presenter.h"
#include "ui/presenters/header_presenter.h"
#include "ui/presenters/library_presenter.h"
#include "ui/presenters/local_panel_presenter.h"
#include "ui/presenters/no_tv_presenter.h"
#include "ui/presenters/pairing_sheet_presenter.h"
#include "ui/presenters/prompt_presenter.h"
#include "ui/presenters/shortcuts_presenter.h"
#include "ui/presenters/sidebar_presenter.h"
#include "ui/presenters/uploads_presenter.h"
#include "ui/thumbnails/thumbnail_store.h"
#include "ui/window/window_ports.h"

namespace quiv {

// Names the TV first, as the desktop may show the beginning alone.
QString windowTitle(const WindowState& state);

// All that the window's views bind to. Hands the model's state to the presenters that show it; what
// the user does goes to `actions`, which must outlive this.
class WindowPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(quiv::SidebarPresenter* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(quiv::HeaderPresenter* header READ header CONSTANT)
    Q_PROPERTY(quiv::LibraryPresenter* library READ library CONSTANT)
    Q_PROPERTY(quiv::DockPresenter* dock READ dock CONSTANT)
    Q_PROPERTY(quiv::LocalPanelPresenter* localPanel READ localPanel CONSTANT)
    Q_PROPERTY(quiv::UploadsPresenter* uploads READ uploads CONSTANT)
    Q_PROPERTY(quiv::FileChooserPresenter* fileChooser READ fileChooser CONSTANT)
    Q_PROPERTY(quiv::NoTvPresenter* noTv READ noTv CONSTANT)
    Q_PROPERTY(quiv::PromptPresenter* subtitleRename READ subtitleRename CONSTANT)
    Q_PROPERTY(quiv::PromptPresenter* deletePrompt READ deletePrompt CONSTANT)
    Q_PROPERTY(quiv::PromptPresenter* quitPrompt READ quitPrompt CONSTANT)
    Q_PROPERTY(quiv::PairingSheetPresenter* pairingSheet READ pairingSheet CONSTANT)
    Q_PROPERTY(quiv::ShortcutsPresenter* shortcuts READ shortcuts CONSTANT)
    Q_PROPERTY(quiv::ThumbnailStore* thumbnails READ thumbnails CONSTANT)

public:
    WindowPresenter(WindowActions& actions, const WindowPorts& ports, QObject* parent = nullptr);
    ~WindowPresenter() override;

    const QString& title() const { return m_title; }
    SidebarPresenter* sidebar() { return &m_sidebar; }
    HeaderPresenter* header() { return &m_header; }
    LibraryPresenter* library() { return &m_library; }
    DockPresenter* dock() { return &m_dock; }
    LocalPanelPresenter* localPanel() { return &m_localPanel; }
    UploadsPresenter* uploads() { return &m_uploads; }
    FileChooserPresenter* fileChooser() { return &m_fileChooser; }
    NoTvPresenter* noTv() { return &m_noTv; }
    PromptPresenter* subtitleRename() { return &m_subtitleRename; }
    PromptPresenter* deletePrompt() { return &m_deletePrompt; }
    PromptPresenter* quitPrompt() { return &m_quitPrompt; }
    PairingSheetPresenter* pairingSheet() { return &m_pairingSheet; }
    ShortcutsPresenter* shortcuts() { return &m_shortcuts; }
    ThumbnailStore* thumbnails() { return &m_thumbnails; }

    void show(const WindowState& state);

    // Whether the window may close now; else asks, because that would break off a transfer.
    Q_INVOKABLE bool mayClose();
    // Pauses the video that plays here, else the TV's; or lets it go on.
    Q_INVOKABLE void pauseOrResume();
    // Lets the user choose files to upload.
    Q_INVOKABLE void pickUploads();
    // Attaches a subtitle to a video; asks first when the file needs another name for that.
    void attachSubtitle(const QUrl& subtitle, const QString& videoName);

Q_SIGNALS:
    void titleChanged();
    void closeConfirmed();

private:
    bool hasDialog() const;
    void askToDelete(const QList<FileGroup>& groups);
    // Says so if the user chose files for another TV than the one that is selected now.
    bool isForSelectedTv(const QString& tvKey);
    // Says so if some are not.
    bool areOfThisComputer(const QList<QUrl>& files);
    Task<> pickingUploads();
    Task<> pickingSubtitle(QString videoName);

    WindowActions& m_actions;
    PreferredFileDialogs& m_fileDialogs;
    ThumbnailStore m_thumbnails;
    SidebarPresenter m_sidebar;
    HeaderPresenter m_header;
    UploadsPresenter m_uploads;
    LibraryPresenter m_library;
    DockPresenter m_dock;
    LocalPanelPresenter m_localPanel;
    FileChooserPresenter m_fileChooser;
    NoTvPresenter m_noTv;
    PromptPresenter m_subtitleRename;
    PromptPresenter m_deletePrompt;
    PromptPresenter m_quitPrompt;
    PairingSheetPresenter m_pairingSheet;
    QString m_title;
    ShortcutsPresenter m_shortcuts;
    QString m_tvKey;     // of the selected TV; empty without one
    QString m_breaksOff; // what closing the window would break off
    bool m_isCloseConfirmed = false;
    Task<> m_picking; // the newest alone
};

} // namespace quiv
