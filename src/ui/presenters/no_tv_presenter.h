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

// Helps the user to a first TV: the search comes first, and advice once it has found nothing, or
// can find nothing.
class NoTvPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)
    Q_PROPERTY(QString problemTitle READ problemTitle NOTIFY problemChanged)
    Q_PROPERTY(QString problemAdvice READ problemAdvice NOTIFY problemChanged)
    Q_PROPERTY(QString supportedTvsAddress READ supportedTvsAddress CONSTANT)
    Q_PROPERTY(QString storeAddress READ storeAddress CONSTANT)

public:
    explicit NoTvPresenter(WebAddresses addresses = builtInAddresses(), QObject* parent = nullptr);

    bool isSearching() const { return m_isSearching; }
    // What keeps the network from showing any TV; empty if nothing does.
    QString problemTitle() const { return m_problem.title; }
    QString problemAdvice() const { return m_problem.advice; }
    QString supportedTvsAddress() const;
    QString storeAddress() const;

    void show(const WindowState& state);

Q_SIGNALS:
    void isSearchingChanged();
    void problemChanged();

private:
    WebAddresses m_addresses;
    bool m_isSearching = false; // and nothing was found yet, nor is it in vain
    NetworkProblem m_problem;
};

} // namespace quiv
