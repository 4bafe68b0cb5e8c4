#pragma once

#include "mail/sasl.h"

class ServerConnection;

/// Throws, as the step that is begun, unless there is something to sign on with and the line may
/// carry it.
void require_safe_secret(const ServerConnection &line, const Credentials &credentials);

/// Throws that no way to sign on was found among those that the server offers.
[[noreturn]] void fail_without_way(const ServerConnection &line, const QList<QByteArray> &offered);

/// A sign-on over a line by the best of the mechanisms that the server offers (SASL), for IMAP,
/// POP3 and SMTP, which put commands and codes of their own round it. What it gives to be sent is
/// hidden from the line's failures, and its own failures are told as the server's.
class SignOnTalk
{
public:
    /// @param line  outlives this.
    SignOnTalk(ServerConnection &line, const QList<QByteArray> &offered,
               const Credentials &credentials);

    /// Whether the server offers a mechanism for these credentials; without one there is no talk.
    bool is_possible() const { return talk_.has_value(); }
    /// As SaslTalk.
    QByteArray opening(bool takes_initial_response, qsizetype longest = 12'000);
    QByteArray answer(const QByteArray &challenge);
    /// The server said that all is well: throws unless it has proved what it has to.
    void require_proof() const;

private:
    ServerConnection &line_;
    std::optional<SaslTalk> talk_;
};
