#pragma once

#include "ui/header_presenter.h"
#include "ui/library_presenter.h"
#include "ui/pairing_sheet_presenter.h"
#include "ui/sidebar_presenter.h"

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
    Q_PROPERTY(quiv::PairingSheetPresenter* pairingSheet READ pairingSheet CONSTANT)

public:
    explicit WindowPresenter(WindowActions& actions, QObject* parent = nullptr);

    SidebarPresenter* sidebar() { return &m_sidebar; }
    HeaderPresenter* header() { return &m_header; }
    LibraryPresenter* library() { return &m_library; }
    PairingSheetPresenter* pairingSheet() { return &m_pairingSheet; }

    void setDiscoveredDevices(const QList<TVEndpoint>& devices);
    void setSelectedDevice(const std::optional<TVEndpoint>& device);
    void setPairing(const PairingState& pairing);
    void setContent(const LibraryContent& content);
    void setLoadInProgress(bool isLoading);
    void setStatusMessage(const QString& message);

private:
    SidebarPresenter m_sidebar;
    HeaderPresenter m_header;
    LibraryPresenter m_library;
    PairingSheetPresenter m_pairingSheet;
};

} // namespace quiv
