#include "simulator/simulator.h"

#include "simulator/announcing/network_addresses.h"
#include "simulator/console.h"

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr quint16 UsualPort = 8080;
constexpr std::chrono::milliseconds CodeCheckInterval{200};

void printCode(const QString& code) {
    printLine(u"Pairing code: "_s + code);
}

} // namespace

Simulator::Simulator(Options options)
    : m_options(std::move(options)),
      m_television{
          .identity = {m_options.name, m_options.mediaFolder},
          .library = {m_options.mediaFolder, m_options.usbFolder, m_options.generatedCount},
          .pairing = {m_options.pairing, printCode},
          .player = Player(),
          .mover = {m_television.library, m_options.moveDuration},
          .uploads = UploadStore(m_television.library),
          .thumbnails = Thumbnails(m_television.library),
          .browsingNeedsPairing = m_options.browsingNeedsPairing},
      m_server(m_television, m_faults, m_log, m_options.logsRequests),
      m_control(m_television, m_faults, m_log, m_announcement) {
    m_television.library.setFreeBytes(m_options.freeBytes);
}

Simulator::~Simulator() {
    m_announcement.stop();
    m_control.stop();
    m_server.stop();
}

bool Simulator::start() {
    if (!listen())
        return false;
    printStart();
    announce();
    QObject::connect(&m_codeTimer, &QTimer::timeout, &m_codeTimer,
                     [this] { m_television.pairing.renewExpiredCode(); });
    m_codeTimer.start(CodeCheckInterval);
    return true;
}

bool Simulator::listen() {
    const auto protocol =
        m_options.ipv6Only ? TvServer::Protocol::Ipv6Only : TvServer::Protocol::AnyIp;
    const quint16 port = m_options.port.value_or(UsualPort);
    if (!m_server.listen(port, protocol) && (m_options.port || !m_server.listen(0, protocol))) {
        printError(u"Port %1 is taken."_s.arg(port));
        return false;
    }
    if (m_control.listen(m_options.controlPort))
        return true;
    printError(u"Control port %1 is taken."_s.arg(m_options.controlPort));
    return false;
}

void Simulator::announce() {
    if (!m_options.announces)
        return;
    const Announcer::Settings settings{
        .way = m_options.announceWay,
        .hostName = m_options.hostName,
        .ipv6Only = m_options.ipv6Only,
        .announced =
            [this](const QString& name) {
                printLine(u"Announced as: "_s + name);
                // What a person needs next is the last thing that is said.
                printCode(m_television.pairing.code());
            },
        .failed = [](const QString& reason) { printError(u"Not announced: "_s + reason); },
    };
    m_announcement.start(
        Announcer::create(settings),
        {m_options.serviceName, m_options.announcedPort.value_or(m_server.port())});
}

void Simulator::printStart() const {
    const QString host = m_options.ipv6Only ? u'[' + firstAddress(AddressFamily::Ipv6) + u']'
                                            : firstAddress(AddressFamily::Ipv4);
    printLine(u"Name: "_s + m_options.name);
    printLine(u"Address: http://%1:%2"_s.arg(host).arg(m_server.port()));
    printLine(u"Control: http://127.0.0.1:%1"_s.arg(m_control.port()));
    printLine(u"Media folder: "_s + m_options.mediaFolder);
    printLine(u"USB folder: "_s +
              (m_options.usbFolder.isEmpty() ? u"none"_s : m_options.usbFolder));
    printCode(m_television.pairing.code());
    printLine(u"Ready"_s);
}

} // namespace quiv::simulator
