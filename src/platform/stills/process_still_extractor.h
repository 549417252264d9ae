#pragma once

#include "platform/helpers/helper_program.h"
#include "platform/stills/still_extractor.h"

namespace quiv {

// Stills by a program of their own: what a broken file does to a decoder stays in there.
class ProcessStillExtractor final : public StillExtractor {
public:
    explicit ProcessStillExtractor(QString program = standardProgram(),
                                   std::chrono::milliseconds timeLimit = std::chrono::seconds(20));

    // The program beside the application.
    static QString standardProgram();

    Task<std::optional<QByteArray>> makeUploadThumbnail(QString path) override;

private:
    HelperProgram m_program;
};

} // namespace quiv
