#include "platform/stills/process_still_extractor.h"

#include "platform/installation.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

constexpr qsizetype MostOutput = 4 << 20;

bool isJpeg(const QByteArray& bytes) {
    return bytes.startsWith("\xff\xd8");
}

} // namespace

ProcessStillExtractor::ProcessStillExtractor(QString program, std::chrono::milliseconds timeLimit)
    : m_program(std::move(program), timeLimit) {}

QString ProcessStillExtractor::standardProgram() {
    return helperProgramPath(u"quiv-still"_s);
}

Task<std::optional<QByteArray>> ProcessStillExtractor::makeUploadThumbnail(QString path) {
    HelperWork work{.arguments = {std::move(path)}, .mostOutput = MostOutput};
    std::optional<QByteArray> still = co_await m_program.run(std::move(work));
    if (still && !isJpeg(*still))
        still.reset();
    co_return still;
}

} // namespace quiv
