#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QTest>

namespace quiv::simulator {

namespace {

constexpr int StartTimeoutMs = 30'000; // an mDNS stack takes its time to announce
constexpr int StopTimeoutMs = 10'000;

QString programPath() {
    const QString folder =
        qEnvironmentVariable("QUIV_BIN_DIR", QStringLiteral(QUIV_DEFAULT_BIN_DIR));
    return folder + u"/quiv-tv-simulator"_s;
}

void addUnlessGiven(QStringList& arguments, const QStringList& option,
                    const QString& otherOption = {}) {
    if (!arguments.contains(option.first()) && !arguments.contains(otherOption))
        arguments += option;
}

} // namespace

SimulatorProcess::SimulatorProcess() {
    // The simulator's complaints belong into the test's log.
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

SimulatorProcess::~SimulatorProcess() {
    kill();
}

QStringList SimulatorProcess::completed(QStringList arguments, Announcing announcing) const {
    addUnlessGiven(arguments, {u"--port"_s, u"0"_s});
    addUnlessGiven(arguments, {u"--code"_s, u"123"_s});
    addUnlessGiven(arguments, {u"--media"_s, m_media.path()});
    addUnlessGiven(arguments, {u"--no-usb"_s}, u"--usb"_s);
    arguments += u"--exit-with-parent"_s;
    if (!m_usesSampleMedia)
        arguments += u"--no-samples"_s;
    if (announcing == Announcing::None)
        arguments += u"--no-announce"_s;
    else
        addUnlessGiven(arguments, {u"--announce-with"_s, u"embedded"_s});
    return arguments;
}

bool SimulatorProcess::start(const QStringList& arguments, Announcing announcing) {
    m_isReady = m_isAnnounced = false;
    m_process.start(programPath(), completed(arguments, announcing));
    return readLinesUntilReady(announcing) ||
           fail(u"The simulator did not start: "_s + m_process.errorString());
}

bool SimulatorProcess::readLinesUntilReady(Announcing announcing) {
    const QDeadlineTimer deadline(StartTimeoutMs);
    while (!m_isReady || (announcing != Announcing::None && !m_isAnnounced)) {
        if (!m_process.canReadLine() &&
            !m_process.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return false;
        while (m_process.canReadLine())
            readLine(QString::fromUtf8(m_process.readLine()).trimmed());
    }
    return true;
}

void SimulatorProcess::readLine(const QString& line) {
    const auto port = line.section(u':', -1).toUShort();
    if (line.startsWith("Address: "_L1))
        m_port = port;
    else if (line.startsWith("Control: "_L1))
        m_controlPort = port;
    m_isAnnounced |= line.startsWith("Announced as: "_L1);
    m_isReady |= line == "Ready"_L1;
}

bool SimulatorProcess::fail(const QString& reason) {
    m_errorText = reason;
    kill();
    return false;
}

void SimulatorProcess::stop() {
    m_process.terminate();
    if (!m_process.waitForFinished(StopTimeoutMs) && m_process.state() != QProcess::NotRunning)
        fail(u"The simulator did not stop when asked to."_s);
}

void SimulatorProcess::kill() {
    m_process.kill();
    m_process.waitForFinished(StopTimeoutMs);
}

int SimulatorProcess::exitCode() const {
    const bool hasEnded =
        m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit;
    return hasEnded ? m_process.exitCode() : -1;
}

QString SimulatorProcess::pairingCode() {
    return control("GET", u"pairing"_s).value_or(QJsonObject())["code"_L1].toString();
}

QJsonObject SimulatorProcess::screen() {
    return control("GET", u"screen"_s).value_or(QJsonObject());
}

void SimulatorProcess::clearFaults() {
    control("DELETE", u"faults"_s);
}

bool SimulatorProcess::change(const QString& what, const QJsonObject& change) {
    return control("POST", what, change).has_value();
}

QJsonArray SimulatorProcess::requestsTo(const QString& path) {
    QJsonArray matching;
    const auto all = control("GET", u"requests"_s).value_or(QJsonObject())["requests"_L1].toArray();
    for (const QJsonValue& request : all) {
        if (request["path"_L1] == path)
            matching.append(request);
    }
    return matching;
}

void SimulatorProcess::clearRequests() {
    control("DELETE", u"requests"_s);
}

bool SimulatorProcess::waitForRequests(const QString& path, int count, int timeoutMs) {
    return QTest::qWaitFor([&] { return requestsTo(path).size() >= count; }, timeoutMs);
}

std::optional<QJsonObject> SimulatorProcess::control(const QByteArray& method, const QString& path,
                                                     const QJsonObject& body) {
    httplib::Request request;
    request.method = method.toStdString();
    request.path = '/' + path.toStdString();
    if (!body.isEmpty())
        request.body = QJsonDocument(body).toJson(QJsonDocument::Compact).toStdString();
    httplib::Client client("127.0.0.1", m_controlPort);
    const httplib::Result result = client.send(request);
    if (!result || result->status != 200)
        return std::nullopt;
    return QJsonDocument::fromJson(QByteArray::fromStdString(result->body)).object();
}

} // namespace quiv::simulator
