#include "simulator/options.h"

#include "simulator/announcing/service_name.h"

#include <QCommandLineParser>
#include <QStandardPaths>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

// Reads values, remembers the first problem.
class OptionReader {
public:
    explicit OptionReader(const QStringList& arguments);

    bool isSet(const char* name) const { return m_parser.isSet(QLatin1String(name)); }
    QString text(const char* name) const { return m_parser.value(QLatin1String(name)); }
    QString text(const char* name, const QString& otherwise) const;
    int number(const char* name, int otherwise, int smallest, int largest);
    std::optional<quint16> port(const char* name);
    std::optional<qint64> bytes(const char* name);
    std::chrono::seconds seconds(const char* name, int otherwise);
    QString code();
    Announcer::Way announceWay();
    QString serviceName(const QString& tvName);

    QString problem() const { return m_problem; }

private:
    void addOptions();
    void add(const char* name, const char* description, const char* valueName = "");
    void complain(const QString& problem);

    QCommandLineParser m_parser;
    QString m_problem;
};

} // namespace

OptionReader::OptionReader(const QStringList& arguments) {
    m_parser.setApplicationDescription(
        u"A simulated TV: found over DNS-SD, paired with by its code, browsed over "
        "HTTP. Faults are switched on through its control address."_s);
    m_parser.addHelpOption();
    m_parser.addVersionOption();
    addOptions();
    if (!m_parser.parse(arguments))
        complain(m_parser.errorText());
    else if (!m_parser.positionalArguments().isEmpty())
        complain(u"Unexpected argument: "_s + m_parser.positionalArguments().first());
    if (isSet("help"))
        m_parser.showHelp(0);
    if (isSet("version"))
        m_parser.showVersion();
}

void OptionReader::add(const char* name, const char* description, const char* valueName) {
    m_parser.addOption({QString::fromLatin1(name), QString::fromLatin1(description),
                        QString::fromLatin1(valueName)});
}

void OptionReader::addOptions() {
    add("name", "Name of the TV.", "name");
    add("port", "HTTP port; 0 takes a free one. Default: 8080, or a free one.", "port");
    add("control-port", "Port of the control address; 0 (default) takes a free one.", "port");
    add("log-requests", "Print the requests.");
    add("exit-with-parent", "End when the program that started this one ends.");
    add("media", "Media folder; made if missing.", "folder");
    add("usb", "Folder that stands for the USB drive; made if missing.", "folder");
    add("no-usb", "The TV has no USB drive.");
    add("no-samples", "Do not make sample media in an empty media folder.");
    add("generate", "List that many made-up files besides the real ones.", "count");
    add("move-seconds", "How long a move between storages takes, default 4.", "seconds");
    add("free-bytes", "How much is left on each storage. Default: a lot.", "bytes");
    add("code", "Pairing code, three digits. Default: random.", "code");
    add("code-lifetime", "Life of a code, default 300.", "seconds");
    add("token-lifetime", "Life of a token, default 86400.", "seconds");
    add("lockout-seconds", "Pause after five wrong codes, default 30.", "seconds");
    add("require-pairing-to-browse", "Show the library to paired clients only.");
    add("no-announce", "Do not announce the TV over DNS-SD.");
    add("announce-with", "daemon, embedded or auto (default): who speaks mDNS.", "way");
    add("service-name", "DNS-SD name, up to 63 bytes. Default: the TV's name.", "name");
    add("host-name", "Announced host name without .local.", "name");
    add("announce-port", "Announced port, if not the real one.", "port");
    add("ipv6-only", "Listen on IPv6 and announce IPv6 addresses only.");
}

void OptionReader::complain(const QString& problem) {
    if (m_problem.isEmpty())
        m_problem = problem;
}

QString OptionReader::text(const char* name, const QString& otherwise) const {
    return isSet(name) ? text(name) : otherwise;
}

int OptionReader::number(const char* name, int otherwise, int smallest, int largest) {
    if (!isSet(name))
        return otherwise;
    bool isNumber = false;
    const int value = text(name).toInt(&isNumber);
    if (!isNumber || value < smallest || value > largest)
        complain(u"--%1 takes a number from %2 to %3."_s.arg(QLatin1String(name))
                     .arg(smallest)
                     .arg(largest));
    return value;
}

std::optional<quint16> OptionReader::port(const char* name) {
    if (!isSet(name))
        return std::nullopt;
    return static_cast<quint16>(number(name, 0, 0, 65535));
}

std::optional<qint64> OptionReader::bytes(const char* name) {
    if (!isSet(name))
        return std::nullopt;
    bool isNumber = false;
    const qint64 value = text(name).toLongLong(&isNumber);
    if (!isNumber || value < 0)
        complain(u"--%1 takes a number of bytes."_s.arg(QLatin1String(name)));
    return value;
}

std::chrono::seconds OptionReader::seconds(const char* name, int otherwise) {
    return std::chrono::seconds(number(name, otherwise, 1, 1'000'000'000));
}

QString OptionReader::code() {
    QString code = text("code");
    if (isSet("code") && !Pairing::isCode(code))
        complain(u"--code takes three digits."_s);
    return code;
}

Announcer::Way OptionReader::announceWay() {
    const QString way = text("announce-with", u"auto"_s);
    if (way == "daemon"_L1)
        return Announcer::Way::Daemon;
    if (way == "embedded"_L1)
        return Announcer::Way::Embedded;
    if (way != "auto"_L1)
        complain(u"--announce-with takes daemon, embedded or auto."_s);
    return Announcer::Way::Auto;
}

QString OptionReader::serviceName(const QString& tvName) {
    if (!isSet("service-name"))
        return serviceNameFor(tvName);
    if (!isServiceName(text("service-name")))
        complain(u"--service-name takes a name of 1 to 63 bytes."_s);
    return text("service-name");
}

namespace {

QString defaultFolder(const char* name) {
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + u'/' +
           QLatin1String(name);
}

void readPlaces(OptionReader& reader, Options& options) {
    options.port = reader.port("port");
    options.controlPort = reader.port("control-port").value_or(0);
    options.mediaFolder = reader.text("media", defaultFolder("media"));
    if (!reader.isSet("no-usb"))
        options.usbFolder = reader.text("usb", defaultFolder("usb"));
    options.makesSamples = !reader.isSet("no-samples");
    options.moveDuration = reader.seconds("move-seconds", 4);
    options.freeBytes = reader.bytes("free-bytes");
    options.generatedCount = reader.number("generate", 0, 0, 10'000'000);
}

void readPairing(OptionReader& reader, Options& options) {
    options.pairing.code = reader.code();
    options.pairing.codeLifetime = reader.seconds("code-lifetime", 300);
    options.pairing.tokenLifetime = reader.seconds("token-lifetime", 86400);
    options.pairing.lockout = reader.seconds("lockout-seconds", 30);
    options.browsingNeedsPairing = reader.isSet("require-pairing-to-browse");
}

void readAnnouncing(OptionReader& reader, Options& options) {
    options.announces = !reader.isSet("no-announce");
    options.announceWay = reader.announceWay();
    options.serviceName = reader.serviceName(options.name);
    options.hostName = reader.text("host-name");
    options.announcedPort = reader.port("announce-port");
    options.ipv6Only = reader.isSet("ipv6-only");
}

} // namespace

std::optional<Options> parseOptions(const QStringList& arguments, QString* problem) {
    OptionReader reader(arguments);
    Options options;
    options.name = reader.text("name", u"Quiv TV Simulator"_s);
    options.logsRequests = reader.isSet("log-requests");
    options.exitWithParent = reader.isSet("exit-with-parent");
    readPlaces(reader, options);
    readPairing(reader, options);
    readAnnouncing(reader, options);
    *problem = reader.problem();
    if (!problem->isEmpty())
        return std::nullopt;
    return options;
}

} // namespace quiv::simulator
