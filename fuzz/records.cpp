// A TV's replies: every record, and what the library makes of a listing.

#include "fuzz/bytes.h"
#include "library/library_content.h"
#include "net/wire_decoding.h"

using namespace quiv;

namespace {

template <class Record> void decodeOne(const QByteArray& json) {
    try {
        decode<Record>(json);
    } catch (const DecodingError&) {
        // A reply that is no record is none.
    }
}

void readLibrary(const QByteArray& json) {
    try {
        const LibraryContent content = libraryContent(decode<FilesResponse>(json));
        filteredRows(content.groupedFiles, QString::fromUtf8(json.left(3)));
    } catch (const DecodingError&) {
        // Nor is a listing.
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const int kind = bytes.below(8);
    const QByteArray json = bytes.rest();
    switch (kind) {
    case 0:
        readLibrary(json);
        break;
    case 1:
        decodeOne<RemoteDeviceInfo>(json);
        break;
    case 2:
        decodeOne<PlaybackResponse>(json);
        break;
    case 3:
        decodeOne<PairingStatusResponse>(json);
        break;
    case 4:
        decodeOne<UploadStatusResponse>(json);
        break;
    case 5:
        decodeOne<MoveStatusResponse>(json);
        break;
    case 6:
        decodeOne<ServerErrorPayload>(json);
        break;
    default:
        decodeOne<UploadSuccessPayload>(json);
    }
    return 0;
}
