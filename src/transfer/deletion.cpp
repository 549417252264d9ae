#include "transfer/deletion.h"

#include "library/library.h"
#include "net/pairing.h"
#include "net/request_layer.h"
#include "net/status_line.h"

namespace quiv {

using namespace Qt::StringLiterals;

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
    auto asking = m_pairing.ensureControlPairing(u"delete"_s);
    const bool isAllowed = co_await std::move(asking);
    if (!isAllowed || !guard.isCurrent())
        co_return;
    m_status.post(u"Deleting "_s + group.title + u"..."_s);
    try {
        auto files = deleteFiles(group, guard);
        co_await std::move(files);
    } catch (const Error& error) {
        if (guard.isCurrent())
            m_status.post(u"Delete failed: "_s + error.description());
        co_return;
    }
    if (!guard.isCurrent())
        co_return;
    auto loading = m_library.loadLibrary(Library::Load::Announced);
    co_await std::move(loading);
    if (guard.isCurrent())
        m_status.post(u"Deleted "_s + group.title);
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
    return m_requests.post(base, u"api/files/delete"_s, {{u"name"_s, name}}, guard);
}

} // namespace quiv
