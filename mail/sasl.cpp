#include "mail/sasl.h"

#include "mail/scram.h"
#include "platform/runtime_error.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <utility>

namespace
{
constexpr char field_end = '\x01'; // of XOAUTH2
constexpr int most_answers = 10;   // more than any mechanism has

[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::mail_failure, what);
}

void refuse(bool is_bad, const char *what)
{
    if (is_bad)
        fail(QStringLiteral("the %1 holds a character that cannot be sent")
                 .arg(QLatin1String(what)));
}

[[noreturn]] void refuse_challenge()
{
    fail(QStringLiteral("the server asks for more than the sign-on has"));
}

// RFC 4616.
class Plain : public SaslExchange
{
public:
    explicit Plain(const Credentials &credentials)
        : user_(credentials.user.toUtf8()),
          password_(credentials.secret.toUtf8())
    {
        refuse(user_.contains('\0'), "user name");
        refuse(password_.contains('\0'), "password");
    }

    QByteArray name() const override { return "PLAIN"; }
    std::optional<QByteArray> initial_response() override
    {
        is_complete_ = true;
        return '\0' + user_ + '\0' + password_;
    }
    QByteArray respond(const QByteArray &) override { refuse_challenge(); }
    bool is_complete() const override { return is_complete_; }

private:
    QByteArray user_;
    QByteArray password_;
    bool is_complete_ = false;
};

// Never a standard, but all that some servers offer: the server asks for the user and then for the
// password, in words of its own.
class Login : public SaslExchange
{
public:
    explicit Login(const Credentials &credentials)
        : answers_{credentials.user.toUtf8(), credentials.secret.toUtf8()}
    {
    }

    QByteArray name() const override { return "LOGIN"; }
    std::optional<QByteArray> initial_response() override { return std::nullopt; }
    QByteArray respond(const QByteArray &) override
    {
        if (is_complete())
            refuse_challenge();
        return answers_[answered_++];
    }
    bool is_complete() const override { return answered_ == answers_.size(); }

private:
    std::array<QByteArray, 2> answers_;
    std::size_t answered_ = 0;
};

// An OAuth 2 token as large providers take it. A challenge is the server's refusal in JSON, which
// an empty answer ends.
class XOAuth2 : public SaslExchange
{
public:
    explicit XOAuth2(const Credentials &credentials)
        : user_(credentials.user.toUtf8()),
          token_(credentials.secret.toUtf8())
    {
        refuse(user_.contains(field_end), "user name");
        refuse(std::ranges::any_of(token_, [](char c) { return c <= ' ' || c > '~'; }), "token");
    }

    QByteArray name() const override { return "XOAUTH2"; }
    std::optional<QByteArray> initial_response() override
    {
        is_complete_ = true;
        return "user=" + user_ + field_end + "auth=Bearer " + token_ + field_end + field_end;
    }
    QByteArray respond(const QByteArray &) override
    {
        if (is_refused_)
            refuse_challenge();
        is_refused_ = true;
        return {};
    }
    bool is_complete() const override { return is_complete_ && !is_refused_; }

private:
    QByteArray user_;
    QByteArray token_;
    bool is_complete_ = false;
    bool is_refused_ = false;
};

bool is_offered(const QList<QByteArray> &offered, QByteArrayView name)
{
    return std::ranges::any_of(offered, [name](const QByteArray &each) {
        return each.compare(name, Qt::CaseInsensitive) == 0;
    });
}
} // namespace

QByteArray new_nonce()
{
    std::array<quint32, 5> random = {};
    QRandomGenerator::system()->fillRange(random.data(), random.size());
    // 18 of the 20 bytes: base64 without padding.
    return QByteArray(reinterpret_cast<const char *>(random.data()), 18).toBase64();
}

std::unique_ptr<SaslExchange> choose_sasl(const QList<QByteArray> &offered,
                                          const Credentials &credentials, const QByteArray &nonce)
{
    switch (credentials.kind) {
    case SignInKind::Token:
        if (is_offered(offered, "XOAUTH2"))
            return std::make_unique<XOAuth2>(credentials);
        break;
    case SignInKind::Password:
        if (is_offered(offered, "SCRAM-SHA-256"))
            return std::make_unique<ScramSha256>(credentials, nonce);
        if (is_offered(offered, "PLAIN"))
            return std::make_unique<Plain>(credentials);
        if (is_offered(offered, "LOGIN"))
            return std::make_unique<Login>(credentials);
        break;
    case SignInKind::None:
        break;
    }
    return nullptr;
}

SaslTalk::SaslTalk(std::unique_ptr<SaslExchange> exchange) : exchange_(std::move(exchange)) {}

QByteArray SaslTalk::opening(bool takes_initial_response, qsizetype longest)
{
    unsaid_ = exchange_->initial_response();
    if (!takes_initial_response || !unsaid_)
        return exchange_->name();
    const QByteArray encoded = unsaid_->isEmpty() ? QByteArray("=") : unsaid_->toBase64();
    if (encoded.size() > longest)
        return exchange_->name();
    unsaid_.reset();
    return exchange_->name() + ' ' + encoded;
}

QByteArray SaslTalk::answer(const QByteArray &challenge)
{
    if (++answers_ > most_answers)
        refuse_challenge();
    if (unsaid_)
        return std::exchange(unsaid_, std::nullopt)->toBase64();
    const auto decoded = QByteArray::fromBase64Encoding(challenge.trimmed(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        fail(QStringLiteral("the server's challenge is not in base64"));
    return exchange_->respond(*decoded).toBase64();
}
