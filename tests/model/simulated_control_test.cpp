#include "simulator/simulator_process.h"
#include "support/real_model.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

const QString PlaybackPath = u"api/playback"_s;
const QString Movie = u"Generated Movie 000000.mp4"_s;

// The query of a request as it was received, "name=value" each.
QStringList query(const QJsonValue& request) {
    QStringList items;
    const QJsonArray pairs = request["query"_L1].toArray();
    for (const QJsonValue& pair : pairs)
        items.append(pair["name"_L1].toString() + u'=' + pair["value"_L1].toString());
    return items;
}

} // namespace

// The model, paired with a simulated TV over real sockets.
class SimulatedControlTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_usb = std::make_unique<QTemporaryDir>();
        QVERIFY2(m_tv.start({u"--generate"_s, u"5"_s, u"--move-seconds"_s, u"1"_s, u"--usb"_s,
                             m_usb->path()}),
                 qPrintable(m_tv.errorText()));
        m_real = std::make_unique<RealModel>();
        m_real->find(m_tv.port());
        QTRY_VERIFY(pairing().requiresControlPairing);
        m_real->model.pairing()->verifyPairingCode(m_tv.pairingCode());
        QTRY_VERIFY(pairing().isControlPaired);
    }
    void cleanup() {
        m_real.reset();
        m_tv.stop();
        for (const QString& name : QDir(m_tv.mediaFolder()).entryList(QDir::Files))
            QFile::remove(m_tv.mediaFolder() + u'/' + name);
    }

    void commandsArriveAsMeantAndAreReadBack() {
        using Command = PlaybackCommand;
        playback().togglePlayback(Movie);
        QTRY_VERIFY(shown().isPlaying);
        QCOMPARE(shown().durationMs, 90 * 60 * 1000);
        playback().togglePlayback(Movie);
        QTRY_VERIFY(!shown().isPlaying);
        playback().togglePlayback(Movie);
        QTRY_VERIFY(shown().isPlaying);
        playback().send(Command::seekTo(3'600'000));
        QTRY_VERIFY(shown().positionMs >= 3'600'000);
        playback().send(Command::seekBy(-10'000));
        QTRY_VERIFY(shown().positionMs < 3'600'000);
        playback().send(Command::setSpeed(1.25));
        QTRY_COMPARE(shown().playbackSpeed, 1.25);
        playback().send(Command::setSubtitle(u"4"_s));
        QTRY_VERIFY(shown().subtitleTracks.value(1).selected);
        playback().send(Command::setSubtitle(std::nullopt));
        QTRY_VERIFY(!shown().subtitleTracks.value(1).selected);
        playback().send(Command::setAudio(u"2"_s));
        QTRY_VERIFY(shown().audioTracks.value(1).selected);
        playback().send(Command::stop());
        QTRY_VERIFY(!shown().currentVideoName);

        QList<QStringList> received;
        const QJsonArray requests = m_tv.requestsTo(PlaybackPath);
        for (const QJsonValue& request : requests) {
            if (request["method"_L1] == "POST"_L1)
                received.append(query(request));
        }
        const auto items = [](const char* text) {
            return QString::fromLatin1(text).split(u'&');
        };
        QCOMPARE(
            received,
            QList<QStringList>(
                {items("command=play&name=Generated Movie 000000.mp4"), items("command=pause"),
                 items("command=resume"), items("command=seek_to&positionMs=3600000"),
                 items("command=seek_by&offsetMs=-10000"), items("command=set_speed&speed=1.25"),
                 items("command=set_subtitle&trackId=4"), items("command=set_subtitle"),
                 items("command=set_audio&trackId=2"), items("command=stop")}));
    }

    void brokenAnswersAreSaidAndHoldNothingUp_data() {
        QTest::addColumn<QJsonObject>("broken");
        const auto row = [](const char* name, QJsonObject fault) {
            fault[u"path"_s] = PlaybackPath;
            fault[u"method"_s] = u"POST"_s;
            QTest::newRow(name) << fault;
        };
        const QString kind = u"kind"_s;
        const QString status = u"status"_s;
        row("401", {{kind, status}, {status, 401}});
        row("429", {{kind, status}, {status, 429}});
        row("500", {{kind, status}, {status, 500}});
        row("nothing", {{kind, u"reset-before-reply"_s}});
    }
    void brokenAnswersAreSaidAndHoldNothingUp() {
        QFETCH(QJsonObject, broken);
        QVERIFY(m_tv.setFault(broken));
        playback().send(PlaybackCommand::play(Movie));
        QTRY_VERIFY2(status().startsWith(u"Playback command failed: "_s), qPrintable(status()));
        m_tv.clearFaults();
        if (pairing().requiresControlPairing) {
            m_real->model.pairing()->verifyPairingCode(m_tv.pairingCode());
            QTRY_VERIFY(pairing().isControlPaired);
        }
        playback().send(PlaybackCommand::play(Movie));
        QTRY_VERIFY(shown().isPlaying);
    }

    void aFileMovesToTheDriveAndBack() {
        const QString name = u"Clip.mp4"_s;
        write(name);
        StorageMove& move = *m_real->model.storageMove();
        move.startMove(name, u"USB"_s);
        QTRY_VERIFY(move.state().isMovingFile);
        QTRY_COMPARE(move.state().moveProgress, 1.0);
        QVERIFY(!QFile::exists(m_tv.mediaFolder() + u'/' + name));
        QTRY_COMPARE(storageOf(name), u"USB"_s); // the library was loaded anew

        QVERIFY(m_tv.control("POST", u"move"_s, QJsonObject{{u"failNext"_s, true}}));
        move.startMove(name, u"internal"_s);
        QTRY_VERIFY(status().contains(u"could not be moved"_s));
        QVERIFY(!move.state().isMovingFile);
        QCOMPARE(QDir(m_usb->path()).entryList(QDir::Files | QDir::Hidden), QStringList(name));
        move.startMove(name, u"USB"_s);
        QTRY_COMPARE(status(), u"Move failed to start: Move failed to start (HTTP 409)"_s);
        move.startMove(name, u"internal"_s);
        QTRY_VERIFY(QFile::exists(m_tv.mediaFolder() + u'/' + name));
        QTRY_COMPARE(storageOf(name), u"INTERNAL"_s);
    }

    void aGroupIsDeletedFromTheDisk() {
        for (const char* name : {"Film.mp4", "Film.srt", "Other.mp4"})
            write(QString::fromLatin1(name));
        QTRY_VERIFY(groupTitled(u"Film"_s));
        m_real->model.deletion()->deleteGroup(*groupTitled(u"Film"_s));
        QTRY_COMPARE(status(), u"Deleted Film"_s);
        QCOMPARE(QDir(m_tv.mediaFolder()).entryList(QDir::Files), QStringList(u"Other.mp4"_s));
        QVERIFY(!groupTitled(u"Film"_s));
    }

private:
    RemotePlayback& playback() { return *m_real->model.playback(); }
    PlaybackResponse shown() { return playback().playback().value_or(PlaybackResponse()); }
    const PairingState& pairing() { return m_real->pairing(); }
    const QString& status() { return m_real->status(); }
    const LibraryContent& library() { return m_real->model.library()->content(); }
    void write(const QString& name) {
        QFile file(m_tv.mediaFolder() + u'/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(100'000, 'x')) == 100'000);
    }
    QString storageOf(const QString& name) {
        const QList<RemoteVideo>& videos = library().videos;
        const auto found = std::ranges::find(videos, name, &RemoteVideo::name);
        return found == videos.end() ? QString() : found->storageLocation.value_or(QString());
    }
    std::optional<FileGroup> groupTitled(const QString& title) {
        for (const LibraryRow& row : library().groupedFiles) {
            if (row.group.title == title)
                return row.group;
        }
        return std::nullopt;
    }

    SimulatorProcess m_tv;
    std::unique_ptr<QTemporaryDir> m_usb;
    std::unique_ptr<RealModel> m_real;
};

QTEST_GUILESS_MAIN(SimulatedControlTest)
#include "simulated_control_test.moc"
