#include "window_fixture.h"

#include "ui/window/graphics_choice.h"

#include <QTest>

namespace quiv {

using namespace Qt::StringLiterals;

void WindowFixture::open() {
    chooseGraphics();
    QAccessible::setActive(true);
    QTest::failOnWarning(QRegularExpression(u"qrc:|qml"_s));
    m_actions.calls.clear();
    m_state = {};
    m_presenter = std::make_unique<WindowPresenter>(m_actions, m_ports.ports);
    m_view = std::make_unique<WindowView>(*m_presenter, m_ports.appearance);
    QVERIFY(window());
    window()->show();
    QVERIFY(QTest::qWaitForWindowActive(window()));
}

void WindowFixture::close() {
    m_view.reset();
    m_presenter.reset();
}

void WindowFixture::select(const TVEndpoint& tv) {
    m_state.selectedDevice = tv;
    tell();
}

void WindowFixture::showRows(const QList<LibraryRow>& rows) {
    m_state.content.groupedFiles = rows;
    select(Bedroom);
}

void WindowFixture::read(const PlaybackResponse& playback) {
    m_state.playback = playback;
    ++m_state.playbackReading;
    tell();
}

void WindowFixture::requirePairing() {
    m_state.pairing.requiresControlPairing = true;
    select(Bedroom);
}

void WindowFixture::click(QAccessible::Role role, const char* name) const {
    QAccessibleInterface* element = find(role, name);
    QVERIFY(element);
    clickOn(element);
}

void WindowFixture::clickOn(QAccessibleInterface* element) const {
    QTest::mouseClick(window(), Qt::LeftButton, {}, placeOf(element));
}

QString WindowFixture::focusedName() const {
    auto* focused = QAccessible::queryAccessibleInterface(window()->activeFocusItem());
    return focused ? focused->text(QAccessible::Name) : QString();
}

void WindowFixture::typeText(const QString& text) const {
    for (const QChar character : text)
        QTest::keyClick(window(), character.toLatin1());
}

void WindowFixture::key(Qt::Key key) const {
    QTest::keyClick(window(), key);
}

QQuickItem* WindowFixture::libraryList() const {
    QAccessibleInterface* list = find(QAccessible::List, "Library");
    return list ? qobject_cast<QQuickItem*>(list->object()) : nullptr;
}

} // namespace quiv
