#pragma once

#include <QString>

#include <chrono>
#include <functional>

/// What an attempt to reach a server came to.
struct TcpLine
{
    int descriptor = -1; // the open line, which is the caller's to close; -1 when there is none
    QString trouble;     // why there is none
};

/// Opens a TCP line to a host, a name (also an international one) or an address (IPv6 also in
/// brackets), trying its addresses in the system's order. While it looks up the name and waits it
/// calls `turn` several times a second.
/// @param patience  for the name, and for the addresses together
TcpLine open_tcp_line(const QString &host, quint16 port, std::chrono::milliseconds patience,
                      const std::function<void()> &turn);
