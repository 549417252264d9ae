#include "ui/presenters/download_menu_presenter.h"

#include "net/wire_decoding.h"
#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

#include <QCollator>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QString symbolFor(const RemoteFile& file) {
    const QString kind = file.kind.toUpper();
    if (kind == "VIDEO"_L1)
        return u"film"_s;
    return kind == "SUBTITLE"_L1 ? u"captions.bubble"_s : u"doc"_s;
}

} // namespace

QStringList DownloadMenuPresenter::names() const {
    QStringList names;
    for (const RemoteFile& file : m_files)
        names.append(displayText(file.name));
    return names;
}

QStringList DownloadMenuPresenter::symbols() const {
    QStringList symbols;
    for (const RemoteFile& file : m_files)
        symbols.append(symbolFor(file));
    return symbols;
}

void DownloadMenuPresenter::setFiles(const QList<RemoteFile>& files) {
    QList<RemoteFile> sorted = files;
    QCollator order;
    order.setCaseSensitivity(Qt::CaseInsensitive);
    const auto beginning = [](const RemoteFile& file) {
        return QStringView(file.name).first(std::min(file.name.size(), LongestShownText));
    };
    std::ranges::stable_sort(sorted, [&](const RemoteFile& a, const RemoteFile& b) {
        return order.compare(beginning(a), beginning(b)) < 0;
    });
    publish(this, m_files, sorted, &DownloadMenuPresenter::changed);
}

void DownloadMenuPresenter::choose(int index) {
    if (index >= 0 && index < m_files.size())
        m_actions.downloadFile(m_files[index]);
}

} // namespace quiv
