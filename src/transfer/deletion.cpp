#include "transfer/deletion.h"

#include "library/library.h"
#include "net/pairing.h"
#include "net/request_layer.h"
#include "net/status_line.h"

namespace quiv {

QList<RemoteFile> filesOf(const FileGroup& group) {
    QList<RemoteFile> files;
    if (group.video)
        files.append(*group.video);
    return files + group.subtitles + group.others;
}

Deletion::Deletion(RequestLayer& requests, Pairing& pairing, Library& library,
                   const SelectedDevice& selected, StatusLine& status, QObject* parent)
    : QObject(parent),
      m_requests(requests),
      m_pairing(pairing),
      m_library(library),
      m_selected(selected),
      m_status(status) {}

void Deletion::deleteGroup(const FileGroup& group) {
    m_tasks.add(deleting(group));
}

Task<> Deletion::deleting(FileGroup group) {
    if (!m_selected.baseURL())
        co_return;
    const SelectedDevice::Guard guard(m_selected);
    auto asking = m_pairing.ensureControlPairing(QStringLiteral("delete"));
    const bool isAllowed = co_await std::move(asking);
    if (!isAllowed || !guard.isCurrent())
        co_return;
    m_status.post(QStringLiteral("Deleting ") + group.title + QStringLiteral("..."));
    try {
        auto files = deleteFiles(group, guard);
        co_await std::move(files);
    } catch (const Error& error) {
        if (guard.isCurrent())
            m_status.post(QStringLiteral("Delete failed: ") + error.description());
        co_return;
    }
    if (!guard.isCurrent())
        co_return;
    auto loading = m_library.loadLibrary(Library::Load::Announced);
    co_await std::move(loading);
    if (guard.isCurrent())
        m_status.post(QStringLiteral("Deleted ") + group.title);
}

Task<> Deletion::deleteFiles(FileGroup group, SelectedDevice::Guard guard) {
    const auto base = m_selected.baseURL();
    const QList<RemoteFile> files = filesOf(group);
    for (const RemoteFile& file : files) {
        if (!base || !guard.isCurrent())
            co_return;
        auto request = deleteRemoteFile(file.name, *base, guard);
        co_await std::move(request);
    }
}

Task<> Deletion::deleteRemoteFile(QString name, QUrl base, SelectedDevice::Guard guard) {
    return m_requests.post(base, QStringLiteral("api/files/delete"),
                           {{QStringLiteral("name"), name}}, guard);
}

} // namespace quiv
