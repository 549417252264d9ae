#include "net/token_order.h"

namespace quiv {

namespace {

constexpr QChar KeySeparator = u' ';
constexpr QChar ListSeparator = u'|';

} // namespace

TokenOrder tokenOrder(const QString& text) {
    const auto keys = [&text](int list) {
        return text.section(ListSeparator, list, list).split(KeySeparator, Qt::SkipEmptyParts);
    };
    return {.given = keys(0), .used = keys(1)};
}

QString textOf(const TokenOrder& order) {
    return order.given.join(KeySeparator) + ListSeparator + order.used.join(KeySeparator);
}

TokenOrder afterGift(TokenOrder order, const QString& key) {
    if (!order.used.contains(key) && !order.given.contains(key))
        order.given.append(key);
    return order;
}

TokenOrder afterUse(TokenOrder order, const QString& key) {
    order = without(std::move(order), key);
    order.used.append(key);
    return order;
}

TokenOrder without(TokenOrder order, const QString& key) {
    order.given.removeAll(key);
    order.used.removeAll(key);
    return order;
}

QString surplusKey(const TokenOrder& order, qsizetype most, const QString& kept) {
    if (order.given.size() + order.used.size() <= most)
        return {};
    for (const QString& key : order.given + order.used) {
        if (key != kept)
            return key;
    }
    return {};
}

} // namespace quiv
