#include "simulator/console.h"

#include <cstdio>

namespace quiv::simulator {

namespace {

void write(std::FILE* stream, const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    // A single call holds the stream's lock for the whole line.
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

void printLine(const QString& line) {
    write(stdout, line);
}

void printError(const QString& line) {
    write(stderr, line);
}

} // namespace quiv::simulator
