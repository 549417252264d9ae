#include "library/library.h"

#include "platform/async/background.h"
#include "platform/publish.h"

#include <QHash>

#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

Library::Library(const TvAccess& tvs, QObject* parent) : QObject(parent), m_tvs(tvs) {}

Task<> Library::loadLibrary(Load load) {
    const auto tv = m_tvs.current();
    if (!tv) {
        setFailure(u"The TV announces an address that cannot be used. Restart its app."_s);
        setLoadInProgress(false); // reset() has promised a load that cannot come
        co_return;
    }
    const bool showsProgress = load == Load::Visible;
    const bool isQuiet = load == Load::Quiet;
    if (showsProgress) {
        setLoadInProgress(true);
        tv->say(u"Loading library from %1..."_s.arg(m_tvs.selected().name()));
    }
    StatusMessage message;
    try {
        co_await fetchContent(*tv);
        message.text = u"Loaded %1 media item(s)"_s.arg(m_content.groupedFiles.size());
        setFailure({});
    } catch (const TooManyFiles& error) {
        message = failureMessage(u"Failed to fetch files: "_s, error);
        m_listing.reset(); // what was shown is no longer so
        setContent({});
        setFailure(error.description());
    } catch (const Error& error) {
        message = failureMessage(u"Failed to fetch files: "_s, error);
        setFailure(m_listing ? QString() : error.description());
    }
    if (!isQuiet)
        tv->say(message);
    if (showsProgress)
        setLoadInProgress(false);
}

Task<> Library::fetchContent(Tv tv) {
    QByteArray listing = co_await tv.getBody(u"api/files"_s, ReplyLimit<FilesResponse>);
    const ListingDigest digest{listing.size(), qHash(listing, QHashSeed::globalSeed())};
    if (digest == m_listing)
        co_return;
    const auto decoding = [listing = std::move(listing)] {
        return libraryContent(decode<FilesResponse>(listing));
    };
    LibraryContent content = co_await inBackground(decoding);
    tv.requireSelected();
    m_listing = digest;
    setContent(std::move(content));
}

void Library::reset() {
    m_listing.reset();
    setFailure({});
    setLoadInProgress(true);
    setContent({});
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

void Library::setFailure(const QString& reason) {
    publish(this, m_failure, reason, &Library::failureChanged);
}

} // namespace quiv
