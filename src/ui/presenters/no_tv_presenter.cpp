#include "ui/presenters/no_tv_presenter.h"

#include "platform/publish.h"

#include <QUrl>

#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QString onlyWeb(const QString& address) {
    return isWebAddress(address) ? address : QString();
}

} // namespace

WebAddresses builtInAddresses() {
    return {QStringLiteral(QUIV_SUPPORTED_TVS_URL), QStringLiteral(QUIV_STORE_URL)};
}

bool isWebAddress(const QString& address) {
    const QUrl url(address, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == u"https"_s || url.scheme() == u"http"_s);
}

NoTvPresenter::NoTvPresenter(WebAddresses addresses, QObject* parent)
    : QObject(parent), m_addresses(std::move(addresses)) {}

QString NoTvPresenter::supportedTvsAddress() const {
    return onlyWeb(m_addresses.supportedTvs);
}

QString NoTvPresenter::storeAddress() const {
    return onlyWeb(m_addresses.store);
}

void NoTvPresenter::show(const WindowState& state) {
    const bool isHopeful = state.isSearching && !state.networkProblem.isKnown();
    publish(this, m_isSearching, isHopeful && state.discoveredDevices.isEmpty(),
            &NoTvPresenter::isSearchingChanged);
    publish(this, m_problem, state.networkProblem, &NoTvPresenter::problemChanged);
}

} // namespace quiv
