#pragma once

#include "net/wire_decoding.h"

#include <QJsonValue>
#include <QString>

#include <algorithm>
#include <cstdint>

// Reads the plain values of the TV's records, each within its bounds.
namespace quiv::json {

// What is wrong with a value, and where, from the inside out.
struct Problem {
    QString path;
    QString what;

    Problem under(const QString& outer) const {
        if (path.isEmpty())
            return {outer, what};
        return {path.startsWith(u'[') ? outer + path : outer + u'.' + path, what};
    }
};

// The entry has a text that could not be sent back as it is.
struct Unusable {};

// These throw Problem, readIdentifier() also Unusable.
void read(const QJsonValue& value, QString& result); // one that is only shown
void read(const QJsonValue& value, bool& result);
void read(const QJsonValue& value, std::int64_t& result);
void read(const QJsonValue& value, double& result);
void readIdentifier(const QJsonValue& value, QString& result);

// A size, a count, a duration or the like.
template <class Number> void readAmount(const QJsonValue& value, Number& result) {
    read(value, result);
    result = std::clamp(result, Number(0), Number(LargestNumber));
}

} // namespace quiv::json
