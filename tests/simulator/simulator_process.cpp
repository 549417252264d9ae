#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTest>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr int StartTimeoutMs = 30'000; // an mDNS stack takes its time to announce
constexpr int StopTimeoutMs = 10'000;

QString programPath() {
    const QString folder =
        qEnvironmentVariable("QUIV_BIN_DIR", QStringLiteral(QUIV_DEFAULT_BIN_DIR));
    return folder + u"/quiv-tv-simulator"_s;
}

} // namespace

SimulatorProcess::SimulatorProcess() {
    // The simulator's complaints belong into the test's log.
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

SimulatorProcess::~SimulatorProcess() {
    kill();
}

namespace {

void addUnlessGiven(QStringList& arguments, const QStringList& option,
                    const QString& otherOption = {}) {
    if (!arguments.contains(option.first()) && !arguments.contains(otherOption))
        arguments += option;
}

} // namespace

QStringList SimulatorProcess::completed(QStringList arguments, Announcing announcing) const {
    addUnlessGiven(arguments, {u"--port"_s, u"0"_s});
    addUnlessGiven(arguments, {u"--code"_s, u"123"_s});
    addUnlessGiven(arguments, {u"--media"_s, m_media.path()});
    addUnlessGiven(arguments, {u"--no-usb"_s}, u"--usb"_s);
    arguments += {u"--quiet"_s, u"--exit-with-parent"_s};
    if (!m_usesSampleMedia)
        arguments += u"--no-samples"_s;
    if (announcing == Announcing::None)
        arguments += u"--no-announce"_s;
    else
        addUnlessGiven(arguments, {u"--announce-with"_s, u"embedded"_s});
    return arguments;
}

bool SimulatorProcess::start(const QStringList& arguments, Announcing announcing) {
    m_ready = false;
    m_serviceName.clear();
    m_errorText.clear();
    m_host = arguments.contains(u"--ipv6-only"_s) ? u"[::1]"_s : u"127.0.0.1"_s;
    m_process.start(programPath(), completed(arguments, announcing));
    return waitUntilReady(announcing);
}

bool SimulatorProcess::waitUntilReady(Announcing announcing) {
    if (readLinesUntil([&] {
            return m_ready && (announcing == Announcing::None || !m_serviceName.isEmpty());
        }))
        return true;
    return fail(u"The simulator did not start: "_s + m_process.errorString());
}

bool SimulatorProcess::readLinesUntil(const std::function<bool()>& done) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!done()) {
        const int left = StartTimeoutMs - static_cast<int>(elapsed.elapsed());
        if (!m_process.canReadLine() && (left <= 0 || !m_process.waitForReadyRead(left)))
            return false;
        while (m_process.canReadLine())
            readLine(QString::fromUtf8(m_process.readLine()).trimmed());
    }
    return true;
}

void SimulatorProcess::readLine(const QString& line) {
    const auto portOf = [&] {
        return line.section(u':', -1).toUShort();
    };
    if (line.startsWith("Address: "_L1))
        m_port = portOf();
    else if (line.startsWith("Control: "_L1))
        m_controlPort = portOf();
    else if (line.startsWith("Announced as: "_L1))
        m_serviceName = line.section(": "_L1, 1);
    else if (line == "Ready"_L1)
        m_ready = true;
}

bool SimulatorProcess::fail(const QString& reason) {
    m_errorText = reason;
    kill();
    return false;
}

void SimulatorProcess::stop() {
    if (!isRunning())
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(StopTimeoutMs))
        fail(u"The simulator did not stop when asked to."_s);
}

void SimulatorProcess::kill() {
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished(StopTimeoutMs);
}

bool SimulatorProcess::isRunning() const {
    return m_process.state() != QProcess::NotRunning;
}

int SimulatorProcess::exitCode() const {
    return isRunning() || m_process.exitStatus() != QProcess::NormalExit ? -1
                                                                         : m_process.exitCode();
}

QString SimulatorProcess::baseUrl() const {
    return u"http://%1:%2"_s.arg(m_host).arg(m_port);
}

QString SimulatorProcess::pairingCode() {
    QJsonObject reply;
    control("GET", u"pairing"_s, {}, &reply);
    return reply["code"_L1].toString();
}

bool SimulatorProcess::setFault(const QJsonObject& fault) {
    return control("POST", u"faults"_s, fault);
}

void SimulatorProcess::clearFaults() {
    control("DELETE", u"faults"_s);
}

QJsonArray SimulatorProcess::faults() {
    QJsonObject reply;
    control("GET", u"faults"_s, {}, &reply);
    return reply["faults"_L1].toArray();
}

QJsonArray SimulatorProcess::requests() {
    QJsonObject reply;
    control("GET", u"requests"_s, {}, &reply);
    return reply["requests"_L1].toArray();
}

QJsonArray SimulatorProcess::requestsTo(const QString& path) {
    QJsonArray matching;
    const QJsonArray all = requests();
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

bool SimulatorProcess::setCode(const QString& code) {
    return changePairing({{u"code"_s, code}});
}

bool SimulatorProcess::setName(const QString& name) {
    return control("POST", u"name"_s, {{u"name"_s, name}});
}

bool SimulatorProcess::changePairing(const QJsonObject& change) {
    return control("POST", u"pairing"_s, change);
}

bool SimulatorProcess::changeLibrary(const QJsonObject& change) {
    return control("POST", u"library"_s, change);
}

bool SimulatorProcess::announce(const QJsonObject& announcement) {
    m_serviceName.clear();
    if (!control("POST", u"announce"_s, announcement))
        return false;
    return !announcement["announced"_L1].toBool(true) ||
           readLinesUntil([&] { return !m_serviceName.isEmpty(); });
}

bool SimulatorProcess::control(const QByteArray& method, const QString& path,
                               const QJsonObject& body, QJsonObject* reply) {
    httplib::Request request;
    request.method = method.toStdString();
    request.path = '/' + path.toStdString();
    if (!body.isEmpty())
        request.body = QJsonDocument(body).toJson(QJsonDocument::Compact).toStdString();
    httplib::Client client("127.0.0.1", m_controlPort);
    const httplib::Result result = client.send(request);
    if (!result)
        return false;
    if (reply)
        *reply = QJsonDocument::fromJson(QByteArray::fromStdString(result->body)).object();
    return result->status == 200;
}

} // namespace quiv::simulator
