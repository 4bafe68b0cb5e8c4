#pragma once

#include "mail/sasl.h"

#include <QByteArray>

/// SCRAM-SHA-256 (RFC 5802, RFC 7677) without channel binding: the password is never sent, and the
/// server proves that it knows it. 4,096 to 1,000,000 iterations.
class ScramSha256 : public SaslExchange
{
public:
    /// @throws RuntimeError 32000 when the user or the password holds a control character.
    ScramSha256(const Credentials &credentials, const QByteArray &nonce);

    QByteArray name() const override { return "SCRAM-SHA-256"; }
    std::optional<QByteArray> initial_response() override;
    QByteArray respond(const QByteArray &challenge) override;
    bool is_complete() const override { return state_ == State::Proved; }

private:
    enum class State { Begun, ProofSent, Proved };

    QByteArray prove(const QByteArray &server_first);
    void verify(const QByteArray &server_final);

    QByteArray password_;
    QByteArray nonce_;
    QByteArray first_bare_; // client-first-message-bare
    QByteArray server_signature_;
    State state_ = State::Begun;
};

/// Text as a stored password and a typed one are made alike (SASLprep, RFC 4013): other blanks as
/// blanks, letters that show nothing left out, compatibility forms composed (NFKC).
/// @throws RuntimeError 32000 when it holds a control character; `what` names it.
QString prepared_for_sasl(const QString &text, const QString &what);
