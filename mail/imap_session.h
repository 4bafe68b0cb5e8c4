#pragma once

#include "mail/imap_response.h"
#include "mail/server_connection.h"
#include "mail/sign_on_talk.h"

#include <QList>

#include <functional>

/// A mailbox as EXAMINE opens it.
struct ImapMailbox
{
    quint32 exists = 0;
    quint32 uid_validity = 0;
};

/// A conversation with an IMAP server (RFC 3501) over one line. It opens mailboxes for reading
/// only. Every failure is RuntimeError 32000 with the server, the step and the server's own words.
class ImapSession
{
public:
    using Handler = std::function<void(ImapResponse response)>;

    ImapSession(const MailServer &server, const NetworkConditions &conditions);

    /// Opens the line, encrypted as the server's security says, and signs on.
    void sign_on(const Credentials &credentials);
    /// Opens a mailbox by EXAMINE. A "/" in its name stands for whatever divides the server's
    /// names.
    ImapMailbox examine(const QString &mailbox);

    /// Sends a command without waiting. @return its tag.
    QByteArray send(const QByteArray &command);
    /// The end of a command.
    struct End
    {
        QByteArray tag;
        std::optional<QString> refusal; // the server's words when it said NO, or BAD
        bool is_bad = false;            // it could not even make sense of the command
    };

    /// Reads up to the next end of a command; servers work on several at a time.
    /// @param on_untagged  is handed every untagged response.
    /// @param on_continuation  is handed the server's requests to go on.
    End read_to_an_end(
        const Handler &on_untagged, const Handler &on_continuation = [](const ImapResponse &) {});
    /// The same for the only command that is on its way. @return its refusal (NO); BAD fails.
    std::optional<QString> finish(
        const QByteArray &tag, const Handler &on_untagged,
        const Handler &on_continuation = [](const ImapResponse &) {});
    /// Sends a command and reads up to its end. @throws when the server says NO.
    void run(const QByteArray &command, const Handler &on_untagged);

    /// Says good-bye without failing. @param waits  whether for the answer, which then is the next
    /// one
    void log_out(bool waits);

    ServerConnection &connection() { return connection_; }

private:
    ImapResponse next();
    void read_greeting();
    void read_capabilities();
    void start_tls();
    void authenticate(const Credentials &credentials);
    void authenticate_with(SignOnTalk &talk);
    void log_in(const Credentials &credentials);
    bool can(const QByteArray &capability) const;
    std::optional<QString> try_examine(const QString &name, ImapMailbox &mailbox);
    QString with_own_delimiter(const QString &name);

    MailServer server_;
    ServerConnection connection_;
    int most_untagged_;              // between two commands' ends
    QList<QByteArray> capabilities_; // in capital letters
    bool is_signed_on_ = false;
    int last_tag_ = 0;
    QString farewell_; // the server's words when it said BYE
};
