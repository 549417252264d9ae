// What becomes of words from outside: names, texts that are shown, requests.

#include "fuzz/bytes.h"
#include "net/pairing.h"
#include "net/text_order.h"
#include "net/tv_request.h"
#include "transfer/download_names.h"
#include "transfer/upload_names.h"
#include "ui/display_format.h"

#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

void require(bool isTrue) {
    if (!isTrue)
        std::abort();
}

bool isOnOneLine(const QString& text) {
    return std::ranges::none_of(text, [](QChar character) {
        return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator;
    });
}

void readName(const QString& name) {
    const QString proposed = proposedDownloadName(name);
    require(!proposed.isEmpty() && !proposed.contains(u'/') && !proposed.startsWith(u'.'));
    require(proposed.toUtf8().size() <= 255 && isOnOneLine(proposed));
    require(isOnOneLine(displayText(name)));
    require(!uploadNamesMatch(name, QString()));
    hasSupportedVideoExtension(name);
    uploadNameKey(name);
    proposedSubtitleRemoteName(name, QUrl::fromLocalFile(u"/a/"_s + name));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const bool isUtf16 = bytes.below(2) == 1;
    const QByteArray first = bytes.take(bytes.byte());
    const QByteArray second = bytes.rest();
    const auto text = [isUtf16](const QByteArray& raw) { // lone surrogates included
        return isUtf16 ? QString(reinterpret_cast<const QChar*>(raw.constData()), raw.size() / 2)
                       : QString::fromUtf8(raw);
    };
    const QString a = text(first);
    const QString b = text(second);
    readName(b);
    isPairingCode(b);
    require(!(comesBeforeByCodePoints(a, b) && comesBeforeByCodePoints(b, a)));
    TVEndpoint endpoint;
    endpoint.host = b;
    endpoint.port = int(a.size());
    if (const auto base = baseURL(endpoint)) {
        const QByteArray url = tvRequest("GET", *base, u"api/files"_s, {{u"name"_s, a}}).url;
        require(url.startsWith("http://") && !url.contains('\n') && !url.contains(' '));
    }
    return 0;
}
