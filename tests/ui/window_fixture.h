#pragma once

#include "accessible_tree.h"
#include "fake_window_ports.h"
#include "recording_actions.h"
#include "sample_state.h"

#include "ui/presenters/window_presenter.h"
#include "ui/window/window_view.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace quiv {

// A shown window whose state the test sets, as a user and a screen reader meet it. No view may
// warn.
class WindowFixture {
protected:
    void open();
    void close();

    void tell() { m_presenter->show(m_state); }
    void select(const TVEndpoint& tv);
    void showRows(const QList<LibraryRow>& rows); // of the bedroom's TV
    void read(const PlaybackResponse& playback);
    void requirePairing();

    QQuickWindow* window() const { return m_view->window(); }
    QAccessibleInterface* find(QAccessible::Role role, const char* name) const {
        return findAccessible(window(), role, QString::fromUtf8(name));
    }
    bool press(QAccessible::Role role, const char* name) const {
        return pressAccessible(window(), role, QString::fromUtf8(name));
    }
    bool shows(const QString& text) const {
        return findAccessible(window(), QAccessible::StaticText, text) != nullptr;
    }
    QList<QAccessibleInterface*> findAll(QAccessible::Role role, const char* name) const {
        return findAllAccessible(window(), role, QString::fromUtf8(name));
    }
    // The middle, in the window.
    QPoint placeOf(QAccessibleInterface* element) const {
        return window()->mapFromGlobal(element->rect().center());
    }
    void click(QAccessible::Role role, const char* name) const;
    void clickOn(QAccessibleInterface* element) const;
    QString focusedName() const; // as assistive technology reads it
    void typeText(const QString& text) const;
    void key(Qt::Key key) const;
    QQuickItem* libraryList() const;

    RecordingActions m_actions;
    FakeWindowPorts m_ports;
    WindowState m_state;
    std::unique_ptr<WindowPresenter> m_presenter;
    std::unique_ptr<WindowView> m_view;
};

} // namespace quiv
