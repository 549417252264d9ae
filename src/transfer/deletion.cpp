#include "transfer/deletion.h"

#include "library/library.h"
#include "net/pairing.h"
#include "transfer/pending_files.h"

namespace quiv {

using namespace Qt::StringLiterals;

QList<RemoteFile> filesOf(const FileGroup& group) {
    QList<RemoteFile> files;
    if (group.video)
        files.append(*group.video);
    return files + group.subtitles + group.others;
}

QList<RemoteFile> filesOf(const QList<FileGroup>& groups) {
    QList<RemoteFile> files;
    for (const FileGroup& group : groups)
        files.append(filesOf(group));
    return files;
}

namespace {

// What a message calls them.
QString nameOf(const QList<FileGroup>& groups) {
    return groups.size() == 1 ? groups.constFirst().title : u"%1 titles"_s.arg(groups.size());
}

QList<FileRequest> deletionsOf(const QList<RemoteFile>& files, const QString& tvKey) {
    QList<FileRequest> requests;
    for (const RemoteFile& file : files)
        requests.append({FileRequest::Kind::Deletion, tvKey, file.name});
    return requests;
}

Task<> deleteRemoteFile(Tv tv, QString name) {
    const QueryItems query{{u"name"_s, name}};
    return tv.post(u"api/files/delete"_s, query);
}

} // namespace

Deletion::Deletion(const TvAccess& tvs, Pairing& pairing, Library& library, PendingFiles& pending,
                   QObject* parent)
    : QObject(parent), m_tvs(tvs), m_pairing(pairing), m_library(library), m_pending(pending) {}

void Deletion::deleteGroups(const QList<FileGroup>& groups) {
    if (!groups.isEmpty())
        m_tasks.add(deleting(groups));
}

Task<> Deletion::deleting(QList<FileGroup> groups) {
    const auto selected = m_tvs.current();
    if (!selected)
        co_return;
    const QList<RemoteFile> files = filesOf(groups);
    const PendingFiles::Wait wait(m_pending, deletionsOf(files, m_tvs.selected().key()));
    const bool isAllowed = co_await m_pairing.ensureControlPairing(u"delete"_s);
    if (!isAllowed)
        co_return;
    // What was begun goes through to its end, whichever TV is selected meanwhile.
    const QString name = nameOf(groups);
    const Tv tv = selected->whicheverIsSelected();
    tv.say(u"Deleting "_s + name + u"..."_s);
    try {
        for (const RemoteFile& file : files)
            co_await deleteRemoteFile(tv, file.name);
    } catch (const Error& error) {
        tv.say(failureMessage(u"Delete failed: "_s, error));
        co_return;
    }
    try {
        if (tv.isSelected())
            co_await m_library.loadLibrary(Library::Load::Announced);
    } catch (const AnotherTvSelected&) {
        // The other TV's library is loaded anyway.
    }
    tv.say(u"Deleted "_s + name);
}

} // namespace quiv
