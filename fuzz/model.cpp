// The whole model against a script of announcements, replies, time that passes, and a user who does
// anything at any moment, quitting included.

#include "fuzz/bytes.h"
#include "support/model_fixture.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

constexpr int LongestScript = 400; // steps

QByteArray listing(Bytes& bytes) {
    QByteArray files;
    for (int count = bytes.below(5); count > 0; --count) {
        const char name = char('a' + bytes.below(4));
        const char* kind =
            bytes.below(2) == 0 ? "mkv\",\"kind\":\"VIDEO" : "srt\",\"kind\":\"SUBTITLE";
        files += (files.isEmpty() ? "" : ",") + QByteArray("{\"name\":\"") + name + "." + kind +
                 "\",\"sizeBytes\":" + QByteArray::number(bytes.below(3)) + "}";
    }
    return "{\"files\":[" + files + "],\"videos\":[]}";
}

QByteArray reply(Bytes& bytes) {
    const QByteArray name(1, char('a' + bytes.below(4)));
    const QByteArray number = QByteArray::number(bytes.byte() * 10);
    switch (bytes.below(8)) {
    case 0:
        return listing(bytes);
    case 1:
        return "{\"name\":\"" + name + "\",\"appInForeground\":true}";
    case 2:
        return "{\"authorized\":true,\"expiresInSec\":" + number + "}";
    case 3:
        return "{\"authorized\":false}";
    case 4:
        return "{\"currentVideoName\":\"" + name +
               ".mkv\",\"isPlaying\":true,\"positionMs\":" + number + ",\"durationMs\":9000}";
    case 5:
        return "{\"state\":\"MOVING\",\"fileName\":\"" + name +
               ".mkv\",\"movedBytes\":1,\"totalBytes\":2,"
               "\"message\":\"\",\"updatedAtMs\":" +
               number + "}";
    case 6:
        return "{\"state\":\"DONE\",\"fileName\":\"" + name +
               ".mkv\",\"receivedBytes\":3,\"totalBytes\":3,\"message\":\"\",\"updatedAtMs\":1}";
    default:
        return bytes.take(bytes.below(40));
    }
}

class Script {
public:
    explicit Script(Bytes bytes) : m_bytes(std::move(bytes)) {
        m_fixture->dialogs.desktop.isOffered = true;
        m_fixture->model.appear();
    }

    void run() {
        for (int step = 0; step < LongestScript && !m_bytes.isEmpty(); ++step) {
            switch (m_bytes.below(8)) {
            case 0:
                announce();
                break;
            case 1:
            case 2:
            case 3:
                answer();
                break;
            case 4:
                m_fixture->clock.advance(100ms * m_bytes.byte());
                break;
            case 5:
                ModelFixture::turn();
                break;
            case 6:
                act();
                break;
            default:
                if (m_bytes.below(16) == 0)
                    quit();
            }
            (void)m_fixture->model.state();
        }
        m_fixture.reset();
        ModelFixture::turn();
    }

private:
    OmbraMacModel& model() { return m_fixture->model; }
    QString name() { return QChar(u'a' + m_bytes.below(4)) + u".mkv"_s; }
    QUrl localFile() {
        const QString path = m_folder.filePath(name());
        QFile file(path);
        if (m_bytes.below(4) > 0 && (!file.open(QIODevice::WriteOnly) || file.write("xyz") != 3))
            std::abort();
        return QUrl::fromLocalFile(path);
    }

    void announce() {
        const QString service(1, QChar(u'A' + m_bytes.below(4)));
        const auto place =
            serviceAt(service, {10, 0, 0, std::uint8_t(m_bytes.below(4))}, m_bytes.byte());
        switch (m_bytes.below(4)) {
        case 0:
            return m_fixture->browser.withdraw(service);
        case 1:
            return m_fixture->browser.announceName(service);
        case 2:
            return m_fixture->browser.move(place);
        default:
            m_fixture->browser.announce(place);
        }
    }

    void answer() {
        const QList<QUrl> waiting = m_fixture->http.waitingUrls();
        if (waiting.isEmpty())
            return;
        const QString path = waiting.at(m_bytes.below(int(waiting.size()))).path().sliced(1);
        const HttpRequest request = m_fixture->http.latest(path);
        if (request.onProgress && m_bytes.below(2) == 0)
            request.onProgress({m_bytes.byte(), m_bytes.byte(), m_bytes.byte(), m_bytes.byte()});
        static constexpr int Statuses[] = {200, 200, 200, 200, 401, 404, 429, 507};
        const int kind = m_bytes.below(10);
        if (kind == 8)
            m_fixture->http.answer(path, HttpErrorCode::CannotConnect);
        else if (kind == 9)
            m_fixture->http.answer(path, HttpErrorCode::ConnectionLost);
        else if (m_bytes.below(4) == 0)
            m_fixture->http.answer(path, reply(m_bytes), Statuses[kind],
                                   {{"X-Quiv-Auth-Token", m_bytes.take(3)},
                                    {"X-Quiv-Auth-Expires-In", m_bytes.take(3)}});
        else
            m_fixture->http.answer(path, reply(m_bytes), Statuses[kind]);
    }

    void act() {
        const QList<UploadListItem> uploads = model().uploads()->uploadListItems();
        switch (m_bytes.below(18)) {
        case 0:
            return selectOne();
        case 1:
            return model().discovery()->refreshDiscovery();
        case 2:
            return model().pairing()->verifyPairingCode(QString::number(m_bytes.byte()));
        case 3:
            return model().pairing()->cancelPairing();
        case 4:
            return model().uploads()->queueUploadsFromPicker({localFile(), localFile()});
        case 5:
            model().uploads()->queueDroppedFiles(
                {localFile(), QUrl::fromLocalFile(m_folder.path())});
            return;
        case 6:
            if (!uploads.isEmpty())
                model().uploads()->cancelUploadJob(
                    uploads.at(m_bytes.below(int(uploads.size()))).id);
            return;
        case 7:
            if (!uploads.isEmpty())
                model().uploads()->retryUploadJob(uploads.constFirst().id);
            return;
        case 8:
            return model().downloads()->downloadFile({name(), u"VIDEO"_s, m_bytes.below(3), {}});
        case 9:
            return m_fixture->dialogs.desktop.answer(QList<QUrl>{localFile()});
        case 10:
            return model().downloads()->cancelDownload();
        case 11:
            return deleteOne();
        case 12:
            return model().storageMove()->startMove(name(), u"USB"_s);
        case 13:
            return model().playback()->togglePlayback(name());
        case 14:
            return model().networkChanged();
        case 15:
            return model().disappear();
        case 16:
            return model().appear();
        default:
            model().uploads()->queueSubtitleUpload(localFile(), u"a.srt"_s);
        }
    }

    void selectOne() {
        const QList<TVEndpoint> devices = model().discovery()->discoveredDevices();
        if (!devices.isEmpty())
            model().selectDevice(devices.at(m_bytes.below(int(devices.size()))));
    }
    void deleteOne() {
        const auto rows = model().library()->content().groupedFiles;
        if (!rows.isEmpty())
            model().deletion()->deleteGroup(rows.at(m_bytes.below(int(rows.size()))).group);
    }
    void quit() {
        m_fixture = std::make_unique<ModelFixture>();
        model().appear();
    }

    Bytes m_bytes;
    QTemporaryDir m_folder;
    std::unique_ptr<ModelFixture> m_fixture = std::make_unique<ModelFixture>();
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int count = 1;
    static char name[] = "fuzz_model";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
    Script(Bytes(data, size)).run();
    return 0;
}
