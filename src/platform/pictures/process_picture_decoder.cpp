#include "platform/pictures/process_picture_decoder.h"

#include "platform/installation.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace quiv {

ProcessPictureDecoder::ProcessPictureDecoder(QString program, std::chrono::milliseconds timeLimit)
    : m_program(std::move(program), timeLimit) {}

QString ProcessPictureDecoder::standardProgram() {
    return helperProgramPath(u"quiv-picture"_s);
}

Task<std::optional<QByteArray>> ProcessPictureDecoder::decode(QByteArray bytes, QSize size) {
    const qsizetype length = qsizetype{4} * size.width() * size.height();
    HelperWork work{.arguments = {QString::number(size.width()), QString::number(size.height())},
                    .input = std::move(bytes),
                    .mostOutput = length};
    std::optional<QByteArray> pixels = co_await m_program.run(std::move(work));
    if (pixels && pixels->size() != length)
        pixels.reset();
    co_return pixels;
}

} // namespace quiv
