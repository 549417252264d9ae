#include "simulator/faults/fault_list.h"

#include <array>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

struct KindRow {
    Fault::Kind kind;
    const char* name;
    const char* neededNumber; // nullptr if the kind needs none
    const char* neededText;   // nullptr if the kind needs none
};

constexpr std::array KindTable{
    KindRow{Fault::Kind::Delay, "delay", "milliseconds", nullptr},
    KindRow{Fault::Kind::Hang, "hang", nullptr, nullptr},
    KindRow{Fault::Kind::ResetBeforeReply, "reset-before-reply", nullptr, nullptr},
    KindRow{Fault::Kind::Status, "status", "status", nullptr},
    KindRow{Fault::Kind::Body, "body", nullptr, "body"},
    KindRow{Fault::Kind::BrokenJson, "broken-json", nullptr, nullptr},
    KindRow{Fault::Kind::OversizedJson, "oversized-json", nullptr, nullptr},
    KindRow{Fault::Kind::ReadThenReset, "read-then-reset", "bytes", nullptr},
    KindRow{Fault::Kind::StallReading, "stall-reading", "bytes", nullptr},
    KindRow{Fault::Kind::SlowReading, "slow-reading", "bytesPerSecond", nullptr},
    KindRow{Fault::Kind::FillUp, "fill-up", "bytes", nullptr},
    KindRow{Fault::Kind::AnswerEarly, "answer-early", "bytes", nullptr},
    KindRow{Fault::Kind::Vanish, "vanish", "milliseconds", nullptr},
    KindRow{Fault::Kind::StoreThenHang, "store-then-hang", nullptr, nullptr},
    KindRow{Fault::Kind::StoreThenReset, "store-then-reset", nullptr, nullptr},
    KindRow{Fault::Kind::TruncateStore, "truncate-store", "bytes", nullptr},
    KindRow{Fault::Kind::RenameStore, "rename-store", nullptr, nullptr},
    KindRow{Fault::Kind::MistypedJson, "mistyped-json", nullptr, nullptr},
    KindRow{Fault::Kind::OneAuthHeader, "one-auth-header", nullptr, nullptr},
    KindRow{Fault::Kind::Trickle, "trickle", "bytesPerSecond", nullptr},
    KindRow{Fault::Kind::ResetAfterBytes, "reset-after-bytes", "bytes", nullptr},
    KindRow{Fault::Kind::AnnounceMore, "announce-more", "bytes", nullptr},
    KindRow{Fault::Kind::OmitLength, "omit-length", "bytes", nullptr},
};

} // namespace

qint64 Fault::number(const char* parameter, qint64 otherwise) const {
    return parameters[QLatin1String(parameter)].toInteger(otherwise);
}

QString Fault::text(const char* parameter) const {
    return parameters[QLatin1String(parameter)].toString();
}

namespace {

const KindRow* rowNamed(const QString& name) {
    for (const KindRow& row : KindTable) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}

QString withoutLeadingSlash(const QString& path) {
    return path.startsWith(u'/') ? path.mid(1) : path;
}

QString complaint(const KindRow* row, const QJsonObject& description) {
    if (description["path"_L1].toString().isEmpty())
        return u"A fault needs a path."_s;
    if (!row)
        return u"No such kind of fault."_s;
    if (row->neededNumber && !description[QLatin1String(row->neededNumber)].isDouble())
        return u"This fault needs the number %1."_s.arg(QLatin1String(row->neededNumber));
    if (row->neededText && !description[QLatin1String(row->neededText)].isString())
        return u"This fault needs the text %1."_s.arg(QLatin1String(row->neededText));
    return {};
}

} // namespace

std::optional<QString> FaultList::add(const QJsonObject& description) {
    const KindRow* row = rowNamed(description["kind"_L1].toString());
    if (const QString wrong = complaint(row, description); !wrong.isEmpty())
        return wrong;
    Fault fault;
    fault.kind = row->kind;
    fault.path = withoutLeadingSlash(description["path"_L1].toString());
    fault.method = description["method"_L1].toString().toUpper();
    fault.parameters = description;
    if (const QJsonValue times = description["times"_L1]; times.isDouble())
        fault.timesLeft = times.toInt();
    fault.skip = description["skip"_L1].toInt();
    const std::scoped_lock lock(m_mutex);
    m_faults.push_back(fault);
    return std::nullopt;
}

void FaultList::clear() {
    const std::scoped_lock lock(m_mutex);
    m_faults.clear();
}

QJsonArray FaultList::toJson() const {
    const std::scoped_lock lock(m_mutex);
    QJsonArray array;
    for (const Fault& fault : m_faults) {
        QJsonObject object = fault.parameters;
        object["path"_L1] = fault.path;
        object["fired"_L1] = fault.fired;
        array.append(object);
    }
    return array;
}

namespace {

bool concerns(const Fault& fault, const QString& method, const QString& path) {
    return (fault.path == u'*' || fault.path == path) &&
           (fault.method.isEmpty() || fault.method == method);
}

} // namespace

std::optional<Fault> FaultList::take(const QString& method, const QString& path,
                                     Fault::Phase phase) {
    const std::scoped_lock lock(m_mutex);
    for (Fault& fault : m_faults) {
        if (fault.phase() != phase || fault.timesLeft == 0 ||
            !concerns(fault, method, withoutLeadingSlash(path)))
            continue;
        if (fault.skip > 0) {
            --fault.skip;
            continue;
        }
        if (fault.timesLeft)
            --*fault.timesLeft;
        ++fault.fired;
        return fault;
    }
    return std::nullopt;
}

} // namespace quiv::simulator
