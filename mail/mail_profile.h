#pragma once

#include <QString>

/// Where a profile's messages are read.
enum class InboxKind {
    Local, // the user's local inbox, found by local_inbox()
    Maildir,
    Mbox,
    Imap,
    Pop3
};

/// How a profile's messages go out.
enum class OutgoingKind { Sendmail, Smtp };

/// What protects the line to a server.
enum class LineSecurity {
    Tls,      // from the first byte on
    StartTls, // asked for on a plain line, and required
    Plain     // nothing; a password then goes to this machine's own servers alone
};

/// What a server is signed on to with.
enum class SignInKind {
    None, // the server asks for nothing
    Password,
    Token // an OAuth 2 access token that a command of the user's prints
};

struct MailServer
{
    QString host;
    quint16 port = 0; // 0: the protocol's own port for its security
    LineSecurity security = LineSecurity::Tls;
    SignInKind sign_in = SignInKind::Password;
    QString user;
    QString token_command; // for SignInKind::Token

    bool operator==(const MailServer &) const = default;
};

/// What a mail profile says. It holds no secret.
struct MailProfile
{
    QString name; // empty: the profile of a user who made none
    InboxKind inbox = InboxKind::Local;
    QString inbox_path;      // Maildir, Mbox: the folder or file, native or in drive notation
    MailServer inbox_server; // Imap, Pop3
    OutgoingKind outgoing = OutgoingKind::Sendmail;
    QString sendmail_program;   // empty: looked up on this machine
    MailServer outgoing_server; // Smtp
    QString sender_name;
    QString sender_address; // empty: the user's own local address

    bool operator==(const MailProfile &) const = default;
};

/// What signs on to a server: `secret` is the password or the access token.
struct Credentials
{
    SignInKind kind = SignInKind::None;
    QString user;
    QString secret;
};
