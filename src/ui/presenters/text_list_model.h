#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quiv {

// The entries of a menu. A view keeps its place and current entry when they are set anew, because
// only what differs is told of.
class TextListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QStringList texts READ texts WRITE setTexts NOTIFY textsChanged)

public:
    explicit TextListModel(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    const QStringList& texts() const { return m_texts; }
    void setTexts(const QStringList& texts);

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_texts.size());
    }
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override { return {{Qt::DisplayRole, "modelData"}}; }

Q_SIGNALS:
    void textsChanged();

private:
    QStringList m_texts;
};

} // namespace quiv
