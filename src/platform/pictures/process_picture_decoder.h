#pragma once

#include "platform/helpers/helper_program.h"
#include "platform/pictures/picture_decoder.h"

namespace quiv {

// Decodes by a program of its own, one process for each picture: what a bad one does to a decoder
// costs that picture alone.
class ProcessPictureDecoder final : public PictureDecoder {
public:
    explicit ProcessPictureDecoder(QString program = standardProgram(),
                                   std::chrono::milliseconds timeLimit = std::chrono::seconds(2));

    // The program beside the application.
    static QString standardProgram();

    Task<std::optional<QByteArray>> decode(QByteArray bytes, QSize size) override;

private:
    HelperProgram m_program;
};

} // namespace quiv
