#pragma once

#include <QString>
#include <QStringList>

namespace quiv {

// The TVs whose tokens are kept, by tokenDeviceKey, in the order in which they are given up: those
// that were never selected first, as any device in the network can hand out tokens.
struct TokenOrder {
    QStringList given; // never selected since; the oldest first
    QStringList used;  // selected at some time; the one whose use is longest ago first

    bool operator==(const TokenOrder&) const = default;
};

// As settings keep it. Any text has an order; what is no key is left out.
TokenOrder tokenOrder(const QString& text);
QString textOf(const TokenOrder& order);

TokenOrder afterGift(TokenOrder order, const QString& key);
TokenOrder afterUse(TokenOrder order, const QString& key);
TokenOrder without(TokenOrder order, const QString& key);

// The key to give up if there are more than `most`, or an empty text; never `kept`.
QString surplusKey(const TokenOrder& order, qsizetype most, const QString& kept);

} // namespace quiv
