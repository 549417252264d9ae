#pragma once

#include <QFont>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quiv {

// What the views take over from the desktop, kept current while it changes: whether it is dark, its
// interface font, and whether the user is at the keyboard just now, which shows the focus.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isDark READ isDark NOTIFY isDarkChanged)
    Q_PROPERTY(int fontPixelSize READ fontPixelSize NOTIFY fontChanged)
    Q_PROPERTY(bool isKeyboardInUse READ isKeyboardInUse NOTIFY isKeyboardInUseChanged)

public:
    explicit Appearance(QObject* parent = nullptr);

    bool isDark() const { return m_isDark; }
    int fontPixelSize() const { return m_fontPixelSize; }

    // The interface font in another size and weight; sizes need not be whole, which QML's own font
    // function would make them.
    Q_INVOKABLE QFont textFont(double pixelSize, int weight) const;
    bool isKeyboardInUse() const { return m_isKeyboardInUse; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void isDarkChanged();
    void fontChanged();
    void isKeyboardInUseChanged();

private:
    void readPalette();
    void readFont();

    bool m_isDark = false;
    QString m_fontFamily;
    int m_fontPixelSize = 0;
    bool m_isKeyboardInUse = false;
};

} // namespace quiv
