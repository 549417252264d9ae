#pragma once

#include "platform/stills/still_extractor.h"
#include "platform/system_log.h"

#include <QStringList>

namespace quiv {

// Gives every video the same still, at once.
class FakeStillExtractor final : public StillExtractor {
public:
    Task<std::optional<QByteArray>> makeUploadThumbnail(QString path) override {
        paths.append(path);
        co_return still;
    }

    std::optional<QByteArray> still = QByteArray("\xff\xd8 a still");
    QStringList paths;
};

class MemoryLog final : public SystemLog {
public:
    QStringList lines;

private:
    void writeLine(const QString& line) override { lines.append(line); }
};

} // namespace quiv
