// The settings file, whatever is in it.

#include "fuzz/bytes.h"
#include "platform/settings_file.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace quiv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const QTemporaryDir folder;
    const QString path = folder.filePath(u"settings.json"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write(reinterpret_cast<const char*>(data), qint64(size));
    file.close();

    SettingsFile settings(path);
    SettingsValues values = settings.read();
    values.insert(u"key"_s, u"value"_s);
    const SettingsValues changes{{u"key"_s, u"value"_s}};
    // What could be read is kept, and what was set is there.
    if (!settings.write({1, values, changes}) || SettingsFile(path).read() != values)
        std::abort();
    return 0;
}
