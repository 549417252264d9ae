#pragma once

#include <QQuickImageProvider>

namespace quiv {

// Draws the project's symbols at the size a view asks for.
//
// The address is "image://icon/NAME/COLOUR" with the colour as hexadecimal RRGGBB or AARRGGBB, or
// "image://icon/NAME" for a picture in its own colours. Any thread.
class IconProvider : public QQuickImageProvider {
public:
    IconProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

// Returns the symbol in its own colours, or a null image if the name is unknown.
QImage renderedIcon(const QString& name, const QSize& size);

} // namespace quiv
