#include "simulator/announcing/service_name.h"

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LargestServiceName = 63;

} // namespace

bool isServiceName(const QString& name) {
    const qsizetype size = name.toUtf8().size();
    return size > 0 && size <= LargestServiceName;
}

QString serviceNameFor(const QString& tvName) {
    QString name = tvName;
    while (name.toUtf8().size() > LargestServiceName)
        name.chop(name.back().isLowSurrogate() ? 2 : 1);
    return name.isEmpty() ? u"TV"_s : name;
}

} // namespace quiv::simulator
