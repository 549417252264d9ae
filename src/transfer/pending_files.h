#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

namespace quiv {

// What the user wants done with a file of a TV.
struct FileRequest {
    enum class Kind { Move, Deletion, Download };

    Kind kind = Kind::Move;
    QString tvKey; // the endpointKey
    QString name;

    bool operator==(const FileRequest&) const = default;
};

inline size_t qHash(const FileRequest& request, size_t seed = 0) {
    return qHashMulti(seed, static_cast<int>(request.kind), request.tvKey, request.name);
}

// The requests that wait for a TV's answer.
class PendingFiles : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Keeps requests among those that wait while it exists.
    class Wait {
    public:
        Wait(PendingFiles& pending, QList<FileRequest> requests);
        Wait(const Wait&) = delete;
        Wait& operator=(const Wait&) = delete;
        ~Wait();

    private:
        PendingFiles& m_pending;
        const QList<FileRequest> m_requests;
    };

    const QSet<FileRequest>& requests() const { return m_requests; }

Q_SIGNALS:
    void changed();

private:
    QSet<FileRequest> m_requests;
};

} // namespace quiv
