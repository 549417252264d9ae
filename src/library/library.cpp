#include "library/library.h"

#include "net/request_layer.h"
#include "net/status_line.h"
#include "platform/async/background.h"
#include "platform/publish.h"


#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

Library::Library(RequestLayer& requests, const SelectedDevice& selected, StatusLine& status,
                 QObject* parent)
    : QObject(parent), m_requests(requests), m_selected(selected), m_status(status) {}

Task<> Library::loadLibrary(Load load) {
    if (!m_selected.baseURL())
        co_return;
    const bool showsProgress = load == Load::Visible;
    const bool isQuiet = load == Load::Quiet;
    const SelectedDevice::Guard guard(m_selected);
    if (showsProgress) {
        setLoadInProgress(true);
        m_status.post(u"Loading library from %1..."_s.arg(m_selected.name()));
    }
    QString message;
    try {
        auto fetching = fetchContent(guard);
        co_await std::move(fetching);
        message = u"Loaded %1 media item(s)"_s.arg(m_content.groupedFiles.size());
    } catch (const Error& error) {
        message = u"Failed to fetch files: "_s + error.description();
    }
    if (!guard.isCurrent())
        co_return;
    if (!isQuiet)
        m_status.post(message);
    if (showsProgress)
        setLoadInProgress(false);
}

Task<> Library::fetchContent(SelectedDevice::Guard guard) {
    auto fetching = m_requests.fetchBody(*m_selected.baseURL(), u"api/files"_s, 60s, guard);
    const QByteArray listing = co_await std::move(fetching);
    if (!guard.isCurrent() || listing == m_listing)
        co_return;
    auto decoding =
        inBackground([listing] { return libraryContent(decode<FilesResponse>(listing)); });
    LibraryContent content = co_await std::move(decoding);
    if (!guard.isCurrent())
        co_return;
    m_listing = listing;
    setContent(std::move(content));
}

void Library::reset() {
    m_listing.clear();
    setLoadInProgress(true);
    LibraryContent content = m_content; // what the TV's storage holds stays until the TV tells anew
    content.files.clear();
    content.videos.clear();
    content.groupedFiles.clear();
    setContent(std::move(content));
    Q_EMIT contentReset();
}

void Library::setContent(LibraryContent content) {
    LibraryContent old = std::exchange(m_content, std::move(content));
    Q_EMIT contentChanged();
    // Freeing 100,000 rows takes longer than a frame.
    runInBackground([old = std::move(old)] {});
}

void Library::setLoadInProgress(bool isInProgress) {
    publish(this, m_isLoadInProgress, isInProgress, &Library::loadInProgressChanged);
}

} // namespace quiv
