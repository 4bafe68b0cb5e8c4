#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class ServerConnection;

/// What a mail server answers to a command (RFC 5321 4.2).
struct SmtpReply
{
    int code = 0;
    QList<QByteArray> lines; // without the code

    bool is_positive() const { return code / 100 == 2; }
    bool is_for_the_moment() const { return code / 100 == 4; }
    /// The server closes the line with this answer.
    bool is_farewell() const { return code == 421; }
    /// As the server sent it, on one line: "550 5.1.1 no such user".
    QString text() const;
};

/// Reads an answer, of one line or several.
/// @throws RuntimeError 32000 when the line fails or what comes is no answer.
SmtpReply read_smtp_reply(ServerConnection &line);
