#pragma once

#include "platform/runtime_error.h"

#include <QString>

class ServerConnection;

/// A server did not take the credentials. Another password may help; for every other failure of a
/// server asking for one would only mislead.
class SignInRefused : public RuntimeError
{
public:
    using RuntimeError::RuntimeError;
};

/// Whether a server's refusal may be for the credentials: it names no other reason in a response
/// code, as "[UNAVAILABLE] try later" does (RFC 5530, RFC 2449, RFC 3206).
bool blames_credentials(const QString &words);

/// Throws what a refused sign-on is: SignInRefused, or a plain failure when the server names
/// another reason than the credentials.
[[noreturn]] void fail_sign_on(const ServerConnection &connection, const QString &words);
