#pragma once

#include "mail/server_connection.h"
#include "mail/sign_on_talk.h"

#include <QByteArrayList>

#include <functional>
#include <optional>

/// A text of several lines as a POP3 server sends it.
struct Pop3Text
{
    QByteArray bytes;
    qint64 bytes_left_out = 0; // behind them
};

/// A conversation with a POP3 server (RFC 1939, RFC 2449, RFC 5034) over one line. It deletes
/// nothing. Every failure is RuntimeError 32000 with the server, the step and the server's own
/// words.
class Pop3Session
{
public:
    Pop3Session(const MailServer &server, const NetworkConditions &conditions);

    /// Opens the line, encrypted as the server's security says, and signs on.
    void sign_on(const Credentials &credentials);
    /// Whether the server says what it can (CAPA); an old one may know TOP without saying so.
    bool names_capabilities() const { return names_capabilities_; }
    /// Whether the server names this capability ("TOP").
    bool can(const QByteArray &capability) const;

    void send(const QByteArray &command);
    /// Reads the answer's first line. @return the server's words when it refused, else nothing.
    std::optional<QString> read_status();
    /// Reads the lines that follow, dots taken off; beyond `limit` bytes they are left out.
    /// @throws when more than `most_left_out` bytes are; the line is of no more use then.
    Pop3Text read_text(qint64 limit, qint64 most_left_out);
    /// The same, handing over each line without its end. @throws when a line is longer than 64 KiB,
    /// or there are more than the conditions' bounds allow.
    void read_lines(const std::function<void(const QByteArray &line)> &on_line);
    /// Says good-bye without failing. @param waits  whether for the answer, which then is the next
    /// one
    void quit(bool waits);

    ServerConnection &connection() { return connection_; }

private:
    void run(const QByteArray &command);
    void read_capabilities();
    QByteArrayList mechanisms() const;
    void start_tls();
    void authenticate(const Credentials &credentials);
    void authenticate_with(SignOnTalk &talk);
    void log_in(const Credentials &credentials);

    MailServer server_;
    ServerConnection connection_;
    int most_lines_;
    bool names_capabilities_ = false;
    QByteArrayList capabilities_; // their lines, in capital letters
};
