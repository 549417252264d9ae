#pragma once

#include "ui/presenters/action_menu_presenter.h"
#include "ui/presenters/file_group_row_state.h"

#include <QList>

namespace quiv {

class LibraryPresenter;
class WindowActions;

// What the menus of the library's rows offer, as the state of the row allows it.

// The files of a group, sorted by name as people sort, to download one of them.
QList<ActionMenuEntry> downloadEntries(const FileGroup& group, WindowActions& actions);

// Everything that can be done with one row.
QList<ActionMenuEntry> rowEntries(const FileGroup& group, const FileGroupRowState& state,
                                  LibraryPresenter& presenter, WindowActions& actions);

// What can be done with all selected rows, among them the one with this key.
QList<ActionMenuEntry> selectionEntries(const QList<FileGroup>& groups, const QString& key,
                                        LibraryPresenter& presenter, WindowActions& actions);

} // namespace quiv
