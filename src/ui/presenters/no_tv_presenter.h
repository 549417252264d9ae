#pragma once

#include "model/window_state.h"
#include "platform/clock.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace quiv {

// Pages in the web; those that this build knows. Empty if it knows none.
struct WebAddresses {
    QString supportedTvs;
    QString store;
};

WebAddresses builtInAddresses();

// Only an address of the web is one.
bool isWebAddress(const QString& address);

// Helps the user to a first TV: the search comes first, and advice once it has found nothing for a
// while.
class NoTvPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)
    Q_PROPERTY(QString supportedTvsAddress READ supportedTvsAddress CONSTANT)
    Q_PROPERTY(QString storeAddress READ storeAddress CONSTANT)

public:
    explicit NoTvPresenter(Clock& clock, WebAddresses addresses = builtInAddresses(),
                           QObject* parent = nullptr);

    bool isSearching() const { return m_wait != nullptr; }
    QString supportedTvsAddress() const;
    QString storeAddress() const;

    void show(const WindowState& state);

Q_SIGNALS:
    void isSearchingChanged();

private:
    void setWait(std::unique_ptr<Clock::Timer> wait);

    Clock& m_clock;
    WebAddresses m_addresses;
    std::unique_ptr<Clock::Timer> m_wait; // while a search may still find a first TV
    bool m_hadNothing = false;
    QString m_messageBefore;
};

} // namespace quiv
