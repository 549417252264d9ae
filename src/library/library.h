#pragma once

#include "library/library_content.h"
#include "net/tv.h"
#include "platform/async/task.h"

#include <QObject>

#include <cstddef>
#include <optional>

namespace quiv {

// Tells one listing from another without keeping its bytes.
struct ListingDigest {
    qsizetype size = 0; // bytes
    std::size_t hash = 0;

    bool operator==(const ListingDigest&) const = default;
};

// The selected TV's media library as last loaded.
//
// Listings are decoded and grouped on a background thread and published here on the main thread;
// one that equals the last costs neither. Loads may overlap: the last to complete wins.
// A failed load leaves the rows as they were.
class Library : public QObject {
    Q_OBJECT

public:
    enum class Load {
        Visible,   // messages, errors and progress
        Announced, // messages and errors
        Quiet,     // neither
    };

    explicit Library(const TvAccess& tvs, QObject* parent = nullptr);

    const LibraryContent& content() const { return m_content; }
    bool isLibraryLoadInProgress() const { return m_isLoadInProgress; }
    // Why there is no listing of the selected TV yet; empty while there is one or none was tried.
    const QString& failure() const { return m_failure; }

    Task<> loadLibrary(Load load);
    // Forgets everything for another TV and shows that a load is coming.
    void reset();

Q_SIGNALS:
    void contentChanged(); // any of content()
    void loadInProgressChanged();
    void failureChanged();

private:
    Task<> fetchContent(Tv tv);
    void setContent(LibraryContent content);
    void setLoadInProgress(bool isInProgress);
    void setFailure(const QString& reason);

    const TvAccess m_tvs;
    LibraryContent m_content;
    std::optional<ListingDigest> m_listing; // what m_content was made of
    bool m_isLoadInProgress = false;
    QString m_failure;
};

} // namespace quiv
