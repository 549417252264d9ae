#include "ui/presenters/library_menus.h"

#include "net/wire_decoding.h"
#include "transfer/deletion.h"
#include "ui/display_format.h"
#include "ui/presenters/library_presenter.h"
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

QList<RemoteFile> sortedFiles(const FileGroup& group) {
    QList<RemoteFile> sorted = filesOf(group);
    QCollator order;
    order.setCaseSensitivity(Qt::CaseInsensitive);
    const auto beginning = [](const RemoteFile& file) {
        return QStringView(file.name).first(std::min(file.name.size(), LongestShownText));
    };
    std::ranges::stable_sort(sorted, [&](const RemoteFile& a, const RemoteFile& b) {
        return order.compare(beginning(a), beginning(b)) < 0;
    });
    return sorted;
}

ActionMenuEntry downloadOfAll(const QList<RemoteFile>& files, const QString& text,
                              WindowActions& actions) {
    return {text, u"arrow.down.circle"_s, !files.isEmpty(), [&actions, files] {
                actions.downloadFiles(files);
            }};
}

// The row's downloads as part of its own menu.
QList<ActionMenuEntry> namedDownloads(const FileGroup& group, bool isEnabled,
                                      WindowActions& actions) {
    QList<ActionMenuEntry> entries = downloadEntries(group, actions);
    for (ActionMenuEntry& entry : entries)
        entry.text.prepend(u"Download "_s);
    if (entries.size() > 1) {
        const QString text = u"Download All %1 Files..."_s.arg(entries.size());
        entries.append(downloadOfAll(filesOf(group), text, actions));
    }
    for (ActionMenuEntry& entry : entries)
        entry.isEnabled = isEnabled;
    return entries;
}

} // namespace

QList<ActionMenuEntry> downloadEntries(const FileGroup& group, WindowActions& actions) {
    QList<ActionMenuEntry> entries;
    for (const RemoteFile& file : sortedFiles(group))
        entries.append({displayText(file.name), symbolFor(file), true, [&actions, file] {
                            actions.downloadFiles({file});
                        }});
    return entries;
}

QList<ActionMenuEntry> rowEntries(const FileGroup& group, const FileGroupRowState& state,
                                  LibraryPresenter& presenter, WindowActions& actions) {
    const QString& key = group.id;
    QList<ActionMenuEntry> entries;
    if (state.hasVideo) {
        const QString play = state.playSymbol == "pause.fill"_L1 ? u"Pause"_s : u"Play"_s;
        entries = {{play, state.playSymbol, state.canPlay,
                    [&presenter, key] {
                        presenter.playOrPause(key);
                    }},
                   {state.moveTitle, u"arrow.left.arrow.right"_s, state.canMove,
                    [&presenter, key] {
                        presenter.moveStorage(key);
                    }},
                   {u"Attach Subtitle..."_s, u"captions.bubble.fill"_s, true, [&presenter, key] {
                        presenter.attachSubtitle(key);
                    }}};
    }
    if (state.isDownloading)
        entries.append({u"Cancel download"_s, u"xmark"_s, true, [&presenter] {
                            presenter.cancelDownload();
                        }});
    else
        entries.append(namedDownloads(group, state.canDownload, actions));
    entries.append({u"Delete..."_s, u"trash"_s, state.canDelete, [&presenter, key] {
                        presenter.requestDelete(key);
                    }});
    return entries;
}

QList<ActionMenuEntry> selectionEntries(const QList<FileGroup>& groups, const QString& key,
                                        LibraryPresenter& presenter, WindowActions& actions) {
    const QString titles = u"%1 Titles..."_s.arg(groups.size());
    return {downloadOfAll(filesOf(groups), u"Download "_s + titles, actions),
            {u"Delete "_s + titles, u"trash"_s, !groups.isEmpty(), [&presenter, key] {
                 presenter.requestDelete(key);
             }}};
}

} // namespace quiv
