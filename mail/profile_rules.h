#pragma once

#include "mail/mail_profile.h"

#include <QString>

/// What a session uses a profile for.
enum class MailUse { Reading, Sending };

/// The server that this use of the profile signs on to; null when it takes none (a local inbox, the
/// sendmail program).
const MailServer *server_for(const MailProfile &profile, MailUse use);

/// "IMAP", "POP3" or "SMTP".
QString protocol_name(const MailProfile &profile, MailUse use);

/// The port that a server listens on when none is given (RFC 8314, else the protocol's first).
quint16 default_port(const MailProfile &profile, MailUse use);

/// What this use of the profile lacks, as the rest of a sentence ("it names no IMAP server"); empty
/// when it is complete. Looks at the profile alone, not at files or servers.
QString missing_in(const MailProfile &profile, MailUse use);

/// Whether two profile names mean the same profile: they are matched without regard to letter case.
bool is_same_profile(const QString &name, const QString &other);

/// Whether a text can be a server's host: a name or an IP address (version 6 also in brackets),
/// without blanks, slashes or control characters.
bool is_host(const QString &text);

/// "ann on mail.example.org", for a person.
QString sign_on_name(const MailServer &server);
