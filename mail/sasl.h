#pragma once

#include "mail/mail_profile.h"

#include <QByteArray>
#include <QList>

#include <memory>
#include <optional>

/// A client's side of one sign-on (SASL, RFC 4422). What goes in and out is raw: the mail protocols
/// put it into base64 (see SaslTalk).
class SaslExchange
{
public:
    virtual ~SaslExchange() = default;

    /// The mechanism, "PLAIN".
    virtual QByteArray name() const = 0;
    /// What may go along with the mechanism's name; nothing when the server speaks first.
    virtual std::optional<QByteArray> initial_response() = 0;
    /// The answer to a challenge.
    /// @throws RuntimeError 32000 when the server cannot be understood or has not proved itself.
    virtual QByteArray respond(const QByteArray &challenge) = 0;
    /// Whether all was said, and the server has proved what the mechanism makes it prove. Only then
    /// does its "signed on" count.
    virtual bool is_complete() const = 0;
};

/// A fresh nonce: 24 printable characters that nobody can guess.
QByteArray new_nonce();

/// The best of the offered mechanisms for these credentials: for a password SCRAM-SHA-256, PLAIN,
/// LOGIN, in this order; for a token XOAUTH2. Names count without regard to letter case.
/// @return nullptr when none of them is offered, or there is nothing to sign on with.
/// @throws RuntimeError 32000 when the user or the secret holds what cannot be sent.
std::unique_ptr<SaslExchange> choose_sasl(const QList<QByteArray> &offered,
                                          const Credentials &credentials,
                                          const QByteArray &nonce = new_nonce());

/// An exchange in base64, as IMAP, POP3 and SMTP carry it in lines.
class SaslTalk
{
public:
    explicit SaslTalk(std::unique_ptr<SaslExchange> exchange);

    /// What stands behind the command: "PLAIN AGFubgB4", or "PLAIN" alone when the server speaks
    /// first, takes no initial response, or it is longer than `longest` characters.
    QByteArray opening(bool takes_initial_response, qsizetype longest = 12'000);
    /// The line that answers a challenge. @throws as respond(), when it is no base64, and when the
    /// server goes on and on.
    QByteArray answer(const QByteArray &challenge);
    bool is_complete() const { return exchange_->is_complete(); }

private:
    std::unique_ptr<SaslExchange> exchange_;
    std::optional<QByteArray> unsaid_; // the initial response, until it goes out
    int answers_ = 0;
};
