#include "simulator/service_name.h"

namespace quiv::simulator {

static constexpr qsizetype largestServiceName = 63;

bool isServiceName(const QString& name) {
    const qsizetype size = name.toUtf8().size();
    return size > 0 && size <= largestServiceName;
}

QString serviceNameFor(const QString& tvName) {
    QString name = tvName;
    while (name.toUtf8().size() > largestServiceName)
        name.chop(name.back().isLowSurrogate() ? 2 : 1);
    return name.isEmpty() ? QStringLiteral("TV") : name;
}

} // namespace quiv::simulator
