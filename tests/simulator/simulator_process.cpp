#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTest>

namespace quiv::simulator {

static constexpr int startTimeoutMs = 30'000; // an mDNS stack takes its time to announce
static constexpr int stopTimeoutMs = 10'000;

static QString programPath() {
    const QString folder =
        qEnvironmentVariable("QUIV_BIN_DIR", QStringLiteral(QUIV_DEFAULT_BIN_DIR));
    return folder + QStringLiteral("/quiv-tv-simulator");
}

SimulatorProcess::SimulatorProcess() {
    // The simulator's complaints belong into the test's log.
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

SimulatorProcess::~SimulatorProcess() {
    kill();
}

static void addUnlessGiven(QStringList& arguments, const QStringList& option,
                           const QString& otherOption = {}) {
    if (!arguments.contains(option.first()) && !arguments.contains(otherOption))
        arguments += option;
}

QStringList SimulatorProcess::completed(QStringList arguments, Announcing announcing) const {
    addUnlessGiven(arguments, {QStringLiteral("--port"), QStringLiteral("0")});
    addUnlessGiven(arguments, {QStringLiteral("--code"), QStringLiteral("123")});
    addUnlessGiven(arguments, {QStringLiteral("--media"), m_media.path()});
    addUnlessGiven(arguments, {QStringLiteral("--no-usb")}, QStringLiteral("--usb"));
    arguments += {QStringLiteral("--quiet"), QStringLiteral("--exit-with-parent")};
    if (!m_usesSampleMedia)
        arguments += QStringLiteral("--no-samples");
    if (announcing == Announcing::None)
        arguments += QStringLiteral("--no-announce");
    else
        addUnlessGiven(arguments, {QStringLiteral("--announce-with"), QStringLiteral("embedded")});
    return arguments;
}

bool SimulatorProcess::start(const QStringList& arguments, Announcing announcing) {
    m_ready = false;
    m_serviceName.clear();
    m_errorText.clear();
    m_host = arguments.contains(QStringLiteral("--ipv6-only")) ? QStringLiteral("[::1]")
                                                               : QStringLiteral("127.0.0.1");
    m_process.start(programPath(), completed(arguments, announcing));
    return waitUntilReady(announcing);
}

bool SimulatorProcess::waitUntilReady(Announcing announcing) {
    if (readLinesUntil([&] {
            return m_ready && (announcing == Announcing::None || !m_serviceName.isEmpty());
        }))
        return true;
    return fail(QStringLiteral("The simulator did not start: ") + m_process.errorString());
}

bool SimulatorProcess::readLinesUntil(const std::function<bool()>& done) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!done()) {
        const int left = startTimeoutMs - static_cast<int>(elapsed.elapsed());
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
    if (line.startsWith(QLatin1String("Address: ")))
        m_port = portOf();
    else if (line.startsWith(QLatin1String("Control: ")))
        m_controlPort = portOf();
    else if (line.startsWith(QLatin1String("Announced as: ")))
        m_serviceName = line.section(QLatin1String(": "), 1);
    else if (line == QLatin1String("Ready"))
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
    if (!m_process.waitForFinished(stopTimeoutMs))
        fail(QStringLiteral("The simulator did not stop when asked to."));
}

void SimulatorProcess::kill() {
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished(stopTimeoutMs);
}

bool SimulatorProcess::isRunning() const {
    return m_process.state() != QProcess::NotRunning;
}

int SimulatorProcess::exitCode() const {
    return isRunning() || m_process.exitStatus() != QProcess::NormalExit ? -1
                                                                         : m_process.exitCode();
}

QString SimulatorProcess::baseUrl() const {
    return QStringLiteral("http://%1:%2").arg(m_host).arg(m_port);
}

QString SimulatorProcess::pairingCode() {
    QJsonObject reply;
    control("GET", QStringLiteral("pairing"), {}, &reply);
    return reply[QLatin1String("code")].toString();
}

bool SimulatorProcess::setFault(const QJsonObject& fault) {
    return control("POST", QStringLiteral("faults"), fault);
}

void SimulatorProcess::clearFaults() {
    control("DELETE", QStringLiteral("faults"));
}

QJsonArray SimulatorProcess::faults() {
    QJsonObject reply;
    control("GET", QStringLiteral("faults"), {}, &reply);
    return reply[QLatin1String("faults")].toArray();
}

QJsonArray SimulatorProcess::requests() {
    QJsonObject reply;
    control("GET", QStringLiteral("requests"), {}, &reply);
    return reply[QLatin1String("requests")].toArray();
}

QJsonArray SimulatorProcess::requestsTo(const QString& path) {
    QJsonArray matching;
    const QJsonArray all = requests();
    for (const QJsonValue& request : all) {
        if (request[QLatin1String("path")] == path)
            matching.append(request);
    }
    return matching;
}

void SimulatorProcess::clearRequests() {
    control("DELETE", QStringLiteral("requests"));
}

bool SimulatorProcess::waitForRequests(const QString& path, int count, int timeoutMs) {
    return QTest::qWaitFor([&] { return requestsTo(path).size() >= count; }, timeoutMs);
}

bool SimulatorProcess::setCode(const QString& code) {
    return changePairing({{QStringLiteral("code"), code}});
}

bool SimulatorProcess::setName(const QString& name) {
    return control("POST", QStringLiteral("name"), {{QStringLiteral("name"), name}});
}

bool SimulatorProcess::changePairing(const QJsonObject& change) {
    return control("POST", QStringLiteral("pairing"), change);
}

bool SimulatorProcess::changeLibrary(const QJsonObject& change) {
    return control("POST", QStringLiteral("library"), change);
}

bool SimulatorProcess::announce(const QJsonObject& announcement) {
    m_serviceName.clear();
    if (!control("POST", QStringLiteral("announce"), announcement))
        return false;
    return !announcement[QLatin1String("announced")].toBool(true) ||
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
