#pragma once

#include "platform/settings_store.h"

#include <QHash>

namespace quiv {

// Settings without a disk.
class MemorySettings final : public SettingsStore {
public:
    std::optional<QString> text(const QString& key) const override {
        return texts.contains(key) ? std::optional(texts.value(key)) : std::nullopt;
    }
    std::optional<double> real(const QString& key) const override {
        return reals.contains(key) ? std::optional(reals.value(key)) : std::nullopt;
    }
    void setText(const QString& key, const QString& value) override { texts.insert(key, value); }
    void setReal(const QString& key, double value) override { reals.insert(key, value); }
    void remove(const QString& key) override {
        texts.remove(key);
        reals.remove(key);
    }

    QHash<QString, QString> texts;
    QHash<QString, double> reals;
};

} // namespace quiv
