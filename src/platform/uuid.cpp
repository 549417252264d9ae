#include "platform/uuid.h"

#include <QUuid>

namespace quiv {

QString randomUuid() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

} // namespace quiv
