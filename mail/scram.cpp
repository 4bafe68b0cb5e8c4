#include "mail/scram.h"

#include "mail/sign_in_refused.h"
#include "platform/runtime_error.h"

#include <QCryptographicHash>
#include <QHash>
#include <QMessageAuthenticationCode>
#include <QPasswordDigestor>

#include <algorithm>

namespace
{
constexpr auto sha256 = QCryptographicHash::Sha256;
constexpr int hash_size = 32;
constexpr int least_iterations = 4'096;      // RFC 7677 section 4
constexpr int most_iterations = 1'000'000;   // about two seconds
constexpr qsizetype longest_message = 4'096; // of the server

[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::mail_failure, what);
}

// What a server names as its reason (RFC 5802 section 7).
[[noreturn]] void tell_error(const QByteArray &error)
{
    const QString words = QString::fromUtf8(error);
    if (error == "invalid-proof" || error == "unknown-user")
        throw SignInRefused(error_number::mail_failure, words);
    fail(words);
}

QByteArray hmac(const QByteArray &key, const QByteArray &message)
{
    return QMessageAuthenticationCode::hash(message, key, sha256);
}

// In a time that does not tell where they differ.
bool are_equal(const QByteArray &a, const QByteArray &b)
{
    int difference = a.size() == b.size() ? 0 : 1;
    for (qsizetype i = 0; i < std::min(a.size(), b.size()); ++i)
        difference |= a[i] ^ b[i];
    return difference == 0;
}

// "r=…,s=…,i=…" by its letters.
QHash<char, QByteArray> attributes_of(const QByteArray &message)
{
    if (message.size() > longest_message)
        fail(QStringLiteral("the server's challenge is too long"));
    QHash<char, QByteArray> attributes;
    for (const QByteArray &attribute : message.split(',')) {
        if (attribute.size() < 2 || attribute[1] != '=' || attributes.contains(attribute[0]))
            fail(QStringLiteral("the server's challenge cannot be read"));
        attributes.insert(attribute[0], attribute.sliced(2));
    }
    return attributes;
}

QByteArray decoded(const QByteArray &text)
{
    const auto result =
        QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    return result ? *result : QByteArray();
}

QByteArray escaped_name(const QString &user)
{
    QByteArray name = prepared_for_sasl(user, QStringLiteral("user name")).toUtf8();
    return name.replace("=", "=3D").replace(",", "=2C");
}

// RFC 3454 table B.1.
bool shows_nothing(QChar c)
{
    const char16_t code = c.unicode();
    return code == 0x00AD || code == 0x034F || code == 0x1806 ||
           (code >= 0x180B && code <= 0x180D) || (code >= 0x200B && code <= 0x200D) ||
           code == 0x2060 || (code >= 0xFE00 && code <= 0xFE0F) || code == 0xFEFF;
}
} // namespace

QString prepared_for_sasl(const QString &text, const QString &what)
{
    QString prepared;
    for (const QChar c : text) {
        if (!shows_nothing(c))
            prepared += c.category() == QChar::Separator_Space ? QChar(u' ') : c;
    }
    prepared = prepared.normalized(QString::NormalizationForm_KC);
    if (std::ranges::any_of(prepared, [](QChar c) { return c.category() == QChar::Other_Control; }))
        fail(QStringLiteral("the %1 holds a control character").arg(what));
    return prepared;
}

ScramSha256::ScramSha256(const Credentials &credentials, const QByteArray &nonce)
    : password_(prepared_for_sasl(credentials.secret, QStringLiteral("password")).toUtf8()),
      nonce_(nonce),
      first_bare_("n=" + escaped_name(credentials.user) + ",r=" + nonce)
{
}

std::optional<QByteArray> ScramSha256::initial_response()
{
    return "n,," + first_bare_;
}

QByteArray ScramSha256::respond(const QByteArray &challenge)
{
    switch (state_) {
    case State::Begun:
        return prove(challenge);
    case State::ProofSent:
        verify(challenge);
        return {};
    case State::Proved:
        break;
    }
    fail(QStringLiteral("the server asks for more than the sign-on has"));
}

QByteArray ScramSha256::prove(const QByteArray &server_first)
{
    const QHash<char, QByteArray> said = attributes_of(server_first);
    if (said.contains('e'))
        tell_error(said['e']);
    const QByteArray salt = decoded(said['s']);
    const int iterations = said['i'].toInt();
    // An extension that must be understood; a nonce that is not this exchange's.
    if (said.contains('m') || salt.isEmpty() || said['r'].size() <= nonce_.size() ||
        !said['r'].startsWith(nonce_))
        fail(QStringLiteral("the server's challenge does not belong to this sign-on"));
    if (iterations < least_iterations || iterations > most_iterations)
        fail(QStringLiteral("the server asks for %1 iterations").arg(QString::fromUtf8(said['i'])));

    const QByteArray salted =
        QPasswordDigestor::deriveKeyPbkdf2(sha256, password_, salt, iterations, hash_size);
    const QByteArray client_key = hmac(salted, "Client Key");
    const QByteArray without_proof = "c=biws,r=" + said['r'];
    const QByteArray signed_text = first_bare_ + ',' + server_first + ',' + without_proof;
    QByteArray proof = hmac(QCryptographicHash::hash(client_key, sha256), signed_text);
    std::ranges::transform(proof, client_key, proof.begin(),
                           [](char a, char b) { return static_cast<char>(a ^ b); });
    server_signature_ = hmac(hmac(salted, "Server Key"), signed_text);
    state_ = State::ProofSent;
    return without_proof + ",p=" + proof.toBase64();
}

void ScramSha256::verify(const QByteArray &server_final)
{
    const QHash<char, QByteArray> said = attributes_of(server_final);
    if (said.contains('e'))
        tell_error(said['e']);
    if (!are_equal(decoded(said['v']), server_signature_))
        fail(QStringLiteral("the server has not proved that it knows the password"));
    state_ = State::Proved;
}
