#include "ui/presenters/text_list_model.h"

namespace quiv {

void TextListModel::setTexts(const QStringList& texts) {
    if (m_texts == texts)
        return;
    const int before = rowCount();
    const int after = static_cast<int>(texts.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        m_texts.resize(after);
        endRemoveRows();
    }
    const int kept = rowCount();
    if (after > kept) {
        beginInsertRows({}, kept, after - 1);
        m_texts += texts.mid(kept);
        endInsertRows();
    }
    m_texts = texts;
    if (kept > 0)
        Q_EMIT dataChanged(index(0), index(kept - 1));
    Q_EMIT textsChanged();
}

QVariant TextListModel::data(const QModelIndex& index, int role) const {
    const bool isText = role == Qt::DisplayRole && index.isValid() && index.row() < m_texts.size();
    return isText ? QVariant(m_texts[index.row()]) : QVariant();
}

} // namespace quiv
