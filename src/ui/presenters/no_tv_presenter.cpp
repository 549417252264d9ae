#include "ui/presenters/no_tv_presenter.h"

#include <QUrl>

#include <chrono>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto SearchTime = 4s; // most TVs answer within one
const auto SearchingMessage = u"Searching for TVs"_s;

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

NoTvPresenter::NoTvPresenter(Clock& clock, WebAddresses addresses, QObject* parent)
    : QObject(parent), m_clock(clock), m_addresses(std::move(addresses)) {}

QString NoTvPresenter::supportedTvsAddress() const {
    return onlyWeb(m_addresses.supportedTvs);
}

QString NoTvPresenter::storeAddress() const {
    return onlyWeb(m_addresses.store);
}

void NoTvPresenter::show(const WindowState& state) {
    const bool hasNothing = !state.selectedDevice && state.discoveredDevices.isEmpty();
    const bool hadNothing = std::exchange(m_hadNothing, hasNothing);
    const QString before = std::exchange(m_messageBefore, state.statusMessage);
    // A search that is begun anew over an empty list shows by its message alone.
    const bool isBegun = !hadNothing || (before != state.statusMessage &&
                                         state.statusMessage.startsWith(SearchingMessage));
    if (!hasNothing)
        setWait(nullptr);
    else if (isBegun)
        setWait(m_clock.after(SearchTime, [this] { setWait(nullptr); }));
}

void NoTvPresenter::setWait(std::unique_ptr<Clock::Timer> wait) {
    const bool wasSearching = isSearching();
    m_wait.swap(wait);
    if (isSearching() != wasSearching)
        Q_EMIT isSearchingChanged();
}

} // namespace quiv
