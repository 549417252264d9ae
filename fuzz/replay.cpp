// Runs a fuzz target once with each of the files that are named, or that the named folders hold.

#include "fuzz/bytes.h"

#include <QDirIterator>
#include <QFile>

#include <cstdio>

namespace {

int replayed = 0;

void replay(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s cannot be read\n", qPrintable(path));
        std::exit(1);
    }
    const QByteArray bytes = file.readAll();
    std::fprintf(stderr, "%s\n", qPrintable(path)); // the last one is what crashed
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                           std::size_t(bytes.size()));
    ++replayed;
}

} // namespace

int main(int count, char* arguments[]) {
    for (int index = 1; index < count; ++index) {
        QDirIterator files(QFile::decodeName(arguments[index]), QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            replay(files.next());
    }
    return replayed > 0 ? 0 : 1;
}
