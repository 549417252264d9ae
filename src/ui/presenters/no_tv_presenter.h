#pragma once

#include "model/window_state.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quiv {

// Pages in the web; those that this build knows. Empty if it knows none.
struct WebAddresses {
    QString supportedTvs;
    QString store;
};

WebAddresses builtInAddresses();

// Only an address of the web is one.
bool isWebAddress(const QString& address);

// Helps the user to a first TV: the search comes first, and advice once it has found nothing.
class NoTvPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)
    Q_PROPERTY(QString supportedTvsAddress READ supportedTvsAddress CONSTANT)
    Q_PROPERTY(QString storeAddress READ storeAddress CONSTANT)

public:
    explicit NoTvPresenter(WebAddresses addresses = builtInAddresses(), QObject* parent = nullptr);

    bool isSearching() const { return m_isSearching; }
    QString supportedTvsAddress() const;
    QString storeAddress() const;

    void show(const WindowState& state);

Q_SIGNALS:
    void isSearchingChanged();

private:
    WebAddresses m_addresses;
    bool m_isSearching = false; // and nothing was found yet
};

} // namespace quiv
