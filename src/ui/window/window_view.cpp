#include "ui/window/window_view.h"

#include "ui/presenters/window_presenter.h"
#include "ui/window/appearance.h"
#include "ui/window/graphics_choice.h"
#include "ui/window/icon_provider.h"
#include "ui/window/shadow_provider.h"

#include <QQuickWindow>

extern Q_GUI_EXPORT void qt_set_sequence_auto_mnemonic(bool isOn); // declared by no header
void qml_register_types_Quiv(); // made by the build from the classes marked QML_ELEMENT

namespace quiv {

using namespace Qt::StringLiterals;

WindowView::WindowView(WindowPresenter& presenter, const DesktopAppearance& appearance) {
    qml_register_types_Quiv();
    qt_set_sequence_auto_mnemonic(false); // names from outside stand on buttons
    // Sharper than the scene graph's scalable glyphs at the sizes of a desktop's text.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    m_engine.addImportPath(u"qrc:/qml"_s);
    m_engine.addImageProvider(u"icon"_s, new IconProvider);
    m_engine.addImageProvider(u"shadow"_s, new ShadowProvider);
    m_engine.setInitialProperties({{u"presenter"_s, QVariant::fromValue(&presenter)}});
    const int appearanceType = qmlTypeId("Quiv", 1, 0, "Appearance");
    auto* look = m_engine.singletonInstance<Appearance*>(appearanceType);
    look->follow(appearance); // before the first frame
    m_engine.load(QUrl(u"qrc:/qml/Quiv/MainWindow.qml"_s));
    if (QQuickWindow* loaded = window())
        look->setWindow(loaded);
}

QQuickWindow* WindowView::window() const {
    return m_engine.rootObjects().isEmpty()
               ? nullptr
               : qobject_cast<QQuickWindow*>(m_engine.rootObjects().constFirst());
}

} // namespace quiv
