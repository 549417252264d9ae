#include "net/json_values.h"

#include <QStringList>

#include <cmath>

namespace quiv::json {

using namespace Qt::StringLiterals;

namespace {

// Shares the words that every file repeats, which a large listing would hold hundreds of thousands
// of times.
QString withSharedWords(QString text) {
    static const QStringList words{u"VIDEO"_s, u"SUBTITLE"_s, u"OTHER"_s, u"INTERNAL"_s, u"USB"_s};
    const qsizetype known = words.indexOf(text);
    return known < 0 ? text : words[known];
}

QString textIn(const QJsonValue& value) {
    if (!value.isString())
        throw Problem{{}, u"is not a text"_s};
    return withSharedWords(value.toString());
}

} // namespace

void read(const QJsonValue& value, QString& result) {
    result = shownText(textIn(value));
}

void readIdentifier(const QJsonValue& value, QString& result) {
    constexpr qsizetype MostBytesPerUnit = 3;
    result = textIn(value);
    const bool isShort = result.size() <= LongestIdentifier / MostBytesPerUnit;
    if (!result.isValidUtf16() || (!isShort && result.toUtf8().size() > LongestIdentifier))
        throw Unusable();
}

void read(const QJsonValue& value, bool& result) {
    if (!value.isBool())
        throw Problem{{}, u"is not true or false"_s};
    result = value.toBool();
}

void read(const QJsonValue& value, std::int64_t& result) {
    // toInteger() gives its argument for whatever is not a whole number of 64 bits.
    result = value.toInteger(0);
    if (!value.isDouble() || result != value.toInteger(1))
        throw Problem{{}, u"is not a whole number"_s};
    result = std::clamp(result, -LargestNumber, LargestNumber);
}

void read(const QJsonValue& value, double& result) {
    result = value.toDouble(std::nan(""));
    if (!std::isfinite(result))
        throw Problem{{}, u"is not a number"_s};
}

} // namespace quiv::json
