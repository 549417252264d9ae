#pragma once

#include <QByteArray>

namespace quiv::simulator {

// One request over a plain socket, to see what HTTP clients hide.
class RawExchange {
public:
    // A GET, or a PUT whose body is announced and never sent.
    RawExchange(quint16 port, const QByteArray& path, qint64 announcedBytes = 0);
    ~RawExchange();
    Q_DISABLE_COPY_MOVE(RawExchange)

    // Reads until the peer ends the connection or falls silent for that long.
    void read(int silenceMs);

    QByteArray received; // head and body
    bool peerWasSilent = false;
    bool wasReset = false;  // by the peer, instead of an orderly end
    int longestPauseMs = 0; // between two pieces
    int pieces = 0;

    // What came after the head.
    QByteArray body() const;

private:
    int m_socket;
};

} // namespace quiv::simulator
