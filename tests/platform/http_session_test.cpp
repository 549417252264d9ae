#include "platform/host_resolver.h"
#include "platform/http/curl_http_session.h"
#include "platform/http/http_early_answer.h"
#include "platform/open_file.h"
#include "support/raw_server.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <fcntl.h>
#include <mutex>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

struct Outcome {
    std::optional<HttpReply> reply;
    std::optional<HttpErrorCode> error;
    QString sentence;
    bool isThere() const { return reply || error; }
};

Task<> exchange(HttpSession& session, HttpRequest request, Outcome* outcome) {
    try {
        HttpReply reply = co_await session.send(std::move(request));
        outcome->reply = std::move(reply);
    } catch (const HttpError& error) {
        outcome->error = error.code();
        outcome->sentence = error.description();
    }
}

HttpRequest request(const QByteArray& method, const QByteArray& url) {
    HttpRequest result;
    result.method = method;
    result.url = url;
    result.timeouts.total = 20s;
    return result;
}

// Keeps what a server thread saw.
class Seen {
public:
    void add(const QByteArray& bytes) {
        const std::lock_guard lock(m_mutex);
        m_bytes.append(bytes);
    }
    QByteArray all() {
        const std::lock_guard lock(m_mutex);
        return m_bytes;
    }

private:
    std::mutex m_mutex;
    QByteArray m_bytes;
};

RawServer::Handler replyingWith(const QByteArray& reply, Seen* seen = nullptr) {
    return [reply, seen](RawServer::Connection& connection) {
        const QByteArray headers = connection.readHeaders();
        if (seen)
            seen->add(headers);
        connection.write(reply);
    };
}

// Resolves every name but one to loopback.
struct LoopbackResolver final : HostResolver {
    Task<std::optional<HostAddress>> resolve(QString host, std::chrono::milliseconds) override {
        asked.append(host);
        if (host == u"never.local"_s)
            co_await Promise<bool>().wait();
        if (host == u"unknown.local"_s)
            co_return std::nullopt;
        HostAddress address;
        address.bytes = {127, 0, 0, 1};
        co_return address;
    }
    void forget(const QString& host) override { forgotten.append(host); }
    QStringList asked;
    QStringList forgotten;
};

// Of this process's sockets to a server on loopback: how many there are, and how many of them a
// program that it starts would have too.
struct SocketCount {
    int all = 0;
    int inherited = 0;
};
SocketCount socketsTo(int port) {
    SocketCount count;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        sockaddr_in peer{};
        socklen_t length = sizeof peer;
        if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &length) != 0 ||
            peer.sin_family != AF_INET || ntohs(peer.sin_port) != port)
            continue;
        ++count.all;
        count.inherited += (::fcntl(descriptor, F_GETFD) & FD_CLOEXEC) == 0;
    }
    return count;
}

} // namespace

class HttpSessionTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_directory;

    std::shared_ptr<const OpenFile> file(const QByteArray& content) const {
        QFile result(m_directory.filePath(u"body"_s));
        if (result.open(QIODevice::WriteOnly))
            result.write(content);
        result.close();
        return OpenFile::reading(result.fileName());
    }

    static Outcome outcomeOf(HttpRequest toSend) {
        CurlHttpSession session;
        Outcome outcome;
        const Task<> task = exchange(session, std::move(toSend), &outcome);
        if (!QTest::qWaitFor([&outcome] { return outcome.isThere(); }, 15000))
            qWarning("no outcome");
        return outcome;
    }

private Q_SLOTS:
    void aRequestGoesOutAsGivenAndTheReplyComesBack() {
        Seen seen;
        const RawServer server(replyingWith("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 203 Fine\r\n"
                                            "X-Some-Name:  value \r\nContent-Length: 4\r\n\r\nbody",
                                            &seen));
        HttpRequest post = request("POST", server.url("/a?code=%2B1"));
        post.headers = {{"X-Quiv-Client-Id", "mac-1"}};
        const Outcome outcome = outcomeOf(post);
        QCOMPARE(outcome.reply->status, 203);
        QCOMPARE(outcome.reply->header("x-some-NAME"), QByteArray("value"));
        QCOMPARE(outcome.reply->body, QByteArray("body"));
        const QByteArray sent = seen.all();
        QVERIFY(sent.startsWith("POST /a?code=%2B1 HTTP/1.1\r\n"));
        QVERIFY(sent.contains("\r\nX-Quiv-Client-Id: mac-1\r\n"));
        QVERIFY(sent.contains("\r\nContent-Length: 0\r\n"));
        QVERIFY(!sent.contains("Expect") && !sent.contains("Content-Type") &&
                !sent.contains("Cookie"));
    }

    void droppedConnectionsAreClosedAndNotUsedAgain() {
        const RawServer server([](RawServer::Connection& connection) {
            while (!connection.readHeaders().isEmpty())
                connection.write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
        });
        CurlHttpSession session;
        for (int dropped = 0; dropped < 2; ++dropped) {
            for (int requests = 0; requests < 2; ++requests) { // the second on the same connection
                Outcome outcome;
                const Task<> task = exchange(session, request("GET", server.url()), &outcome);
                QTRY_VERIFY(outcome.reply);
                QCOMPARE(server.handledConnections(), dropped);
            }
            session.dropIdleConnections();
            QTRY_COMPARE(server.handledConnections(), dropped + 1);
        }
    }

    void redirectsAreRepliesAndProxiesAreNotUsed() {
        qputenv("http_proxy", "http://127.0.0.1:1");
        const RawServer server(
            replyingWith("HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:1/\r\n"
                         "Content-Length: 0\r\n\r\n"));
        QCOMPARE(outcomeOf(request("GET", server.url())).reply->status, 302);
        qunsetenv("http_proxy");
    }

    void brokenExchangesHaveTheirErrors_data() {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<int>("code");
        const auto row = [](const char* name, const QByteArray& reply, int code) {
            QTest::newRow(name) << reply << code;
        };
        row("nothing", "", -1005);
        row("no http", "SSH-2.0-tv\r\n\r\n", -1011);
        row("half a body", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf", -1005);
        row("larger than allowed",
            "HTTP/1.1 200 OK\r\nContent-Length: 3000\r\n\r\n" + QByteArray(3000, 'x'), -1103);
        row("endless headers",
            "HTTP/1.1 200 OK\r\n" + ("X-A: " + QByteArray(900, 'y') + "\r\n").repeated(100), -1011);
    }
    void brokenExchangesHaveTheirErrors() {
        QFETCH(QByteArray, reply);
        QFETCH(int, code);
        const RawServer server(replyingWith(reply));
        HttpRequest get = request("GET", server.url());
        get.replyLimit = 2000;
        const Outcome outcome = outcomeOf(get);
        QVERIFY(outcome.error);
        QCOMPARE(int(*outcome.error), code);
        QVERIFY(outcome.sentence.endsWith(u'.'));
    }

    void whatCannotBeSentIsRefused() {
        QCOMPARE(outcomeOf(request("GET", "http://127.0.0.1:1/")).error,
                 HttpErrorCode::CannotConnect);
        QCOMPARE(outcomeOf(request("GET", "http://no-such-host.invalid/")).error,
                 HttpErrorCode::CannotFindHost);
        QCOMPARE(outcomeOf(request("GET", "file:///etc/hostname")).error, HttpErrorCode::BadUrl);
        HttpRequest injecting = request("GET", "http://127.0.0.1:1/");
        injecting.headers = {{"X-Quiv-Auth-Token", "a\r\nX-Evil: 1"}};
        QCOMPARE(outcomeOf(injecting).error, HttpErrorCode::BadUrl);
    }

    void aLongErrorBodyIsCutOff() {
        const QByteArray body(200'000, 'e');
        const RawServer server(
            replyingWith("HTTP/1.1 500 No\r\nContent-Length: 200000\r\n\r\n" + body));
        const Outcome outcome = outcomeOf(request("GET", server.url()));
        QVERIFY(outcome.reply);
        QCOMPARE(outcome.reply->status, 500);
        QCOMPARE(outcome.reply->body.size(), ErrorReplyLimit);
    }

    void aServerThatNeverAnswersTimesOutAndIsClosed() {
        const RawServer server([](RawServer::Connection& connection) { connection.awaitClose(); });
        HttpRequest get = request("GET", server.url());
        get.timeouts.total = 150ms;
        QCOMPARE(outcomeOf(get).error, HttpErrorCode::TimedOut);
        QTRY_COMPARE(server.handledConnections(), 1);
    }

    void anIdleTransferEndsBeforeItsTotalTime() {
        const RawServer server([](RawServer::Connection& connection) {
            connection.readHeaders();
            connection.write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nsome");
            connection.awaitClose();
        });
        HttpRequest get = request("GET", server.url());
        get.timeouts.idle = 1s;
        QCOMPARE(outcomeOf(get).error, HttpErrorCode::TimedOut);
    }

    void filesStreamBothWaysWithProgress() {
        const QByteArray content = QByteArray("0123456789abcdef").repeated(200'000);
        Seen seen;
        const RawServer server([&](RawServer::Connection& connection) {
            const QByteArray all = connection.readUntil([&](const QByteArray& bytes) {
                const auto end = bytes.indexOf("\r\n\r\n");
                return end >= 0 && bytes.size() >= end + 4 + content.size();
            });
            seen.add(all);
            connection.write("HTTP/1.1 200 OK\r\nContent-Length: " +
                             QByteArray::number(content.size()) + "\r\n\r\n" + content);
        });
        HttpRequest put = request("PUT", server.url("/upload"));
        put.bodyFile = file(content);
        QTemporaryFile reply;
        QVERIFY(reply.open());
        put.replyFile = OpenFile::owning(::dup(reply.handle()));
        QList<HttpProgress> reports;
        put.onProgress = [&reports](const HttpProgress& progress) {
            reports.append(progress);
        };
        const Outcome outcome = outcomeOf(put);
        QVERIFY(outcome.reply);
        QVERIFY(seen.all().endsWith("\r\n\r\n" + content));
        QVERIFY(reply.readAll() == content);
        QVERIFY(outcome.reply->body.isEmpty());
        QCOMPARE(reports.last(),
                 (HttpProgress{content.size(), content.size(), content.size(), content.size()}));
    }

    void anAnswerDuringAnUploadIsReadThoughTheServerCloses_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("outcome");
        QTest::newRow("refusal")
            << QByteArray("HTTP/1.1 413 Too Large\r\nContent-Length: 9\r\n\r\ntoo large")
            << u"413 too large"_s;
        QTest::newRow("success") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")
                                 << u"lost"_s; // it cannot have the whole body
    }
    void anAnswerDuringAnUploadIsReadThoughTheServerCloses() {
        QFETCH(QByteArray, answer);
        const RawServer server(replyingWith(answer));
        HttpRequest put = request("PUT", server.url());
        put.bodyFile = file(QByteArray(12 << 20, 'x'));
        for (int round = 0; round < 20; ++round) {
            const Outcome outcome = outcomeOf(put);
            const bool isLost = outcome.error == HttpErrorCode::ConnectionLost;
            QVERIFY2(outcome.reply || isLost, qPrintable(outcome.sentence));
            QTEST(isLost ? u"lost"_s
                         : QString::number(outcome.reply->status) + u' ' +
                               QString::fromUtf8(outcome.reply->body),
                  "outcome");
        }
    }

    void aBodyThatIsNotAsLongAsKnownIsNoFile_data() {
        QTest::addColumn<int>("size");
        QTest::addColumn<HttpErrorCode>("error");
        QTest::newRow("shorter, without a length") << 12 << HttpErrorCode::ConnectionLost;
        QTest::newRow("longer") << 4 << HttpErrorCode::ReplyTooLarge;
    }
    void aBodyThatIsNotAsLongAsKnownIsNoFile() {
        QFETCH(int, size);
        QFETCH(HttpErrorCode, error);
        const RawServer server(replyingWith("HTTP/1.1 200 OK\r\n\r\n12345678"));
        HttpRequest get = request("GET", server.url());
        QTemporaryFile reply;
        QVERIFY(reply.open());
        get.replyFile = OpenFile::owning(::dup(reply.handle()));
        get.replyFileSize = size;
        QCOMPARE(outcomeOf(get).error, error);
    }

    void onlyWhatMayBeRepeatedUsesAConnectionThatWasKept() {
        std::atomic<int> posts = 0;
        const RawServer server([&posts](RawServer::Connection& connection) {
            connection.readHeaders();
            connection.write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
            if (connection.readHeaders().startsWith("POST"))
                ++posts; // acted upon, then the connection breaks without an answer
        });
        QVERIFY(outcomeOf(request("GET", server.url())).reply);
        QVERIFY(outcomeOf(request("POST", server.url())).reply);
        QCOMPARE(posts, 0);
    }

    void earlyAnswersAreReadFromWhateverBytesThereAre() {
        const auto parsed =
            parseEarlyAnswer("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 507 Full\r\nA: b\r\n"
                             "Content-Length: 10\r\n\r\nfull");
        QCOMPARE(parsed->status, 507);
        QCOMPARE(parsed->body, QByteArray("full"));
        QCOMPARE(parsed->header("a"), QByteArray("b"));
        for (const char* bytes : {"", "HTTP/1.1 413 Half", "HTTP/1.1 100 Continue\r\n\r\n",
                                  "x\r\n\r\n", "HTTP/1.1 9999 No\r\n\r\n", "HTTP/1.1\r\n\r\n"})
            QVERIFY(!parseEarlyAnswer(bytes));
    }

    void stoppingDroppingAndEndingTheSessionEachCloseTheSocket() {
        std::atomic<int> accepted = 0;
        const RawServer server([&accepted](RawServer::Connection& connection) {
            ++accepted;
            connection.awaitClose();
        });
        CurlHttpSession session;
        Outcome stopped;
        std::stop_source stop;
        HttpRequest get = request("GET", server.url());
        get.stop = stop.get_token();
        Task<> task = exchange(session, get, &stopped);
        QTRY_COMPARE(accepted, 1);
        const SocketCount sockets = socketsTo(QUrl::fromEncoded(get.url).port());
        QCOMPARE(sockets.all, 1);
        QCOMPARE(sockets.inherited, 0);
        stop.request_stop();
        QVERIFY(!stopped.isThere()); // completes from the event loop
        QTRY_COMPARE(stopped.error, HttpErrorCode::Cancelled);
        QTRY_COMPARE(server.handledConnections(), 1);

        Outcome dropped;
        task = exchange(session, request("GET", server.url()), &dropped);
        QTRY_COMPARE(accepted, 2);
        task.cancel();
        QTRY_COMPARE(server.handledConnections(), 2);
        QVERIFY(!dropped.isThere());

        Outcome ended;
        auto shortLived = std::make_unique<CurlHttpSession>();
        task = exchange(*shortLived, request("GET", server.url()), &ended);
        QTRY_COMPARE(accepted, 3);
        shortLived.reset();
        QCOMPARE(ended.error, HttpErrorCode::Cancelled);
        QTRY_COMPARE(server.handledConnections(), 3);
    }

    void localNamesAreResolvedAndForgottenWhenTheyFail() {
        LoopbackResolver resolver;
        CurlHttpSession session(&resolver);
        Seen seen;
        const RawServer server(replyingWith("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n", &seen));
        const QByteArray port = QByteArray::number(server.port());
        Outcome outcome;
        Task<> task = exchange(session, request("GET", "http://tv.local:" + port + "/"), &outcome);
        QTRY_VERIFY(outcome.isThere());
        QVERIFY(outcome.reply);
        QVERIFY(seen.all().contains("\r\nHost: tv.local:" + port + "\r\n"));
        QCOMPARE(resolver.asked, QStringList(u"tv.local"_s));
        QVERIFY(resolver.forgotten.isEmpty());

        Outcome failed;
        task = exchange(session, request("GET", "http://xn--kche-0ra.local:1/"), &failed);
        QTRY_COMPARE(failed.error, HttpErrorCode::CannotConnect);
        QCOMPARE(resolver.forgotten, QStringList(u"küche.local"_s));

        Outcome stopped;
        std::stop_source stop;
        HttpRequest unresolved = request("GET", "http://never.local/");
        unresolved.stop = stop.get_token();
        const Task<> waiting = exchange(session, unresolved, &stopped);
        for (const QByteArray host : {"unknown.local", "slow.example.org", "localhost"}) {
            Outcome unknown;
            task = exchange(session, request("GET", "http://" + host + '/'), &unknown);
            QVERIFY(!unknown.isThere()); // completes from the event loop
            QTRY_COMPARE(unknown.error, HttpErrorCode::CannotFindHost);
        }
        QCOMPARE(resolver.asked.last(), u"unknown.local"_s);
        stop.request_stop();
        QTRY_COMPARE(stopped.error, HttpErrorCode::Cancelled);
    }

    void openConnectionsAreFewAndThoseInTheBackgroundLeaveRoom() {
        const RawServer silent([](RawServer::Connection& connection) { connection.awaitClose(); });
        const RawServer lively(replyingWith("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
        CurlHttpSession session;
        const auto openSockets = [] {
            const QDir descriptors(u"/proc/self/fd"_s);
            return std::ranges::count_if(
                descriptors.entryInfoList(QDir::System),
                [](const QFileInfo& entry) { return entry.symLinkTarget().contains("socket"_L1); });
        };
        constexpr int accepted = 1; // by the silent server, which serves one after the other
        const auto before = openSockets();
        Outcome hung;
        std::vector<Task<>> tasks;
        const auto sendMany = [&](HttpPriority priority) {
            for (int count = 0; count < 100; ++count) {
                HttpRequest get = request("GET", silent.url());
                get.priority = priority;
                tasks.push_back(exchange(session, get, &hung));
            }
        };
        sendMany(HttpPriority::Background);
        QTRY_COMPARE(openSockets(), before + CurlNetworkThread::mostInBackground + accepted);
        Outcome command;
        const Task<> task = exchange(session, request("POST", lively.url()), &command);
        QTRY_VERIFY(command.reply);
        sendMany(HttpPriority::Standard);
        QTRY_COMPARE(openSockets(), before + CurlNetworkThread::mostConnections + accepted);
        tasks.erase(tasks.begin(), tasks.begin() + 100); // those that wait are dropped too
        tasks.clear();
        QTRY_COMPARE(openSockets(), before);
        QVERIFY(!hung.isThere());
    }

    void everythingButUnreservedCharactersIsEncoded() {
        QCOMPARE(percentEncoded(u"a+b c&d=é/~-_."_s), QByteArray("a%2Bb%20c%26d%3D%C3%A9%2F~-_."));
    }
};

QTEST_GUILESS_MAIN(HttpSessionTest)
#include "http_session_test.moc"
