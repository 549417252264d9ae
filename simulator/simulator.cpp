#include "simulator/simulator.h"

#include "simulator/console.h"
#include "simulator/network_addresses.h"

namespace quiv::simulator {

static constexpr quint16 usualPort = 8080;
static constexpr std::chrono::milliseconds codeCheckInterval{200};

static void printCode(const QString& code) {
    printLine(QStringLiteral("Pairing code: ") + code);
}

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
      m_server(m_television, m_faults, m_log, !m_options.quiet),
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
    m_codeTimer.start(codeCheckInterval);
    return true;
}

bool Simulator::listen() {
    const auto protocol =
        m_options.ipv6Only ? TvServer::Protocol::Ipv6Only : TvServer::Protocol::AnyIp;
    const quint16 port = m_options.port.value_or(usualPort);
    if (!m_server.listen(port, protocol) && (m_options.port || !m_server.listen(0, protocol))) {
        printError(QStringLiteral("Port %1 is taken.").arg(port));
        return false;
    }
    if (m_control.listen(m_options.controlPort))
        return true;
    printError(QStringLiteral("Control port %1 is taken.").arg(m_options.controlPort));
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
            [](const QString& name) { printLine(QStringLiteral("Announced as: ") + name); },
        .failed =
            [](const QString& reason) { printError(QStringLiteral("Not announced: ") + reason); },
    };
    m_announcement.start(
        Announcer::create(settings),
        {m_options.serviceName, m_options.announcedPort.value_or(m_server.port())});
}

void Simulator::printStart() const {
    const QString host = m_options.ipv6Only ? u'[' + firstAddress(AddressFamily::Ipv6) + u']'
                                            : firstAddress(AddressFamily::Ipv4);
    printLine(QStringLiteral("Name: ") + m_options.name);
    printLine(QStringLiteral("Address: http://%1:%2").arg(host).arg(m_server.port()));
    printLine(QStringLiteral("Control: http://127.0.0.1:%1").arg(m_control.port()));
    printLine(QStringLiteral("Media folder: ") + m_options.mediaFolder);
    printLine(QStringLiteral("USB folder: ") +
              (m_options.usbFolder.isEmpty() ? QStringLiteral("none") : m_options.usbFolder));
    printCode(m_television.pairing.code());
    printLine(QStringLiteral("Ready"));
}

} // namespace quiv::simulator
