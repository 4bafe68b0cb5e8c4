#include "mail/imap_session.h"

#include "mail/sign_in_refused.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr int most_untagged = 10'000'000; // between two commands' ends
constexpr std::chrono::seconds patience_at_the_end{3};
constexpr quint16 tls_port = 993;
constexpr quint16 plain_port = 143;

MailServer with_port(MailServer server)
{
    if (server.port == 0)
        server.port = server.security == LineSecurity::Tls ? tls_port : plain_port;
    return server;
}

const auto ignore = [](const ImapResponse &) {};

QString words_of(const ImapResponse &response)
{
    return QString::fromUtf8(response.rest());
}

// "[UIDVALIDITY 7] read this" gives 7 for "UIDVALIDITY"; nothing when it says something else.
std::optional<quint32> number_in_code(const QByteArray &text, const QByteArray &name)
{
    const QByteArray begin = '[' + name + ' ';
    const qsizetype end = text.indexOf(']');
    if (end < 0 || text.left(begin.size()).toUpper() != begin)
        return std::nullopt;
    bool is_number = false;
    const quint32 number = text.sliced(begin.size(), end - begin.size()).toUInt(&is_number);
    return is_number ? std::optional(number) : std::nullopt;
}

bool needs_literal(const QByteArray &text)
{
    return std::ranges::any_of(text, [](char c) { return c < ' ' || c > '~'; });
}
} // namespace

ImapSession::ImapSession(const MailServer &server, const NetworkConditions &conditions)
    : server_(with_port(server)),
      connection_(server_, conditions)
{
}

void ImapSession::sign_on(const Credentials &credentials)
{
    connection_.hide(credentials.secret.toUtf8());
    connection_.hide(imap_quoted(credentials.secret.toUtf8()).sliced(1).chopped(1));
    connection_.open();
    read_greeting();
    if (server_.security == LineSecurity::StartTls)
        start_tls();
    if (!is_signed_on_)
        authenticate(credentials);
}

// A server that takes the line for signed on before it is encrypted would keep it from being so.
void ImapSession::read_greeting()
{
    connection_.begin(QStringLiteral("connecting"));
    const ImapResponse greeting = read_imap_response(connection_);
    const QByteArray keyword = greeting.keyword();
    if (!greeting.is_untagged() || (keyword != "OK" && keyword != "PREAUTH" && keyword != "BYE"))
        connection_.fail(connection_.step(), QStringLiteral("this is no IMAP server"));
    if (keyword == "BYE")
        connection_.fail(connection_.step(), words_of(greeting));
    is_signed_on_ = keyword == "PREAUTH";
    if (is_signed_on_ && server_.security == LineSecurity::StartTls)
        connection_.fail(connection_.step(),
                         QStringLiteral("the server signs on before the line is encrypted"));
}

void ImapSession::read_capabilities()
{
    capabilities_.clear();
    run("CAPABILITY", [this](const ImapResponse &response) {
        if (response.keyword() == "CAPABILITY")
            capabilities_ = response.rest().toUpper().split(' ');
    });
}

bool ImapSession::can(const QByteArray &capability) const
{
    return capabilities_.contains(capability);
}

void ImapSession::start_tls()
{
    connection_.begin(QStringLiteral("encrypting the line"));
    read_capabilities();
    if (!can("STARTTLS"))
        connection_.fail(connection_.step(),
                         QStringLiteral("the server does not offer to encrypt it (STARTTLS)"));
    run("STARTTLS", ignore);
    connection_.start_tls();
}

void ImapSession::authenticate(const Credentials &credentials)
{
    connection_.begin(QStringLiteral("logging in"));
    if (credentials.kind == SignInKind::None)
        connection_.fail(connection_.step(), QStringLiteral("the server asks for a password"));
    if (!connection_.may_carry_secrets())
        connection_.fail(connection_.step(),
                         QStringLiteral("the line is not encrypted, so no password is sent"));
    read_capabilities();
    QList<QByteArray> offered;
    for (const QByteArray &capability : std::as_const(capabilities_)) {
        if (capability.startsWith("AUTH="))
            offered += capability.sliced(5);
    }
    auto exchange = connection_.telling_failure([&] { return choose_sasl(offered, credentials); });
    if (exchange) {
        authenticate_with(SaslTalk(std::move(exchange)));
    } else if (credentials.kind == SignInKind::Password && !can("LOGINDISABLED")) {
        log_in(credentials);
    } else {
        connection_.fail(
            connection_.step(),
            QStringLiteral("the server offers no way to sign on with this; it offers: ") +
                QString::fromUtf8(offered.join(", ")));
    }
    is_signed_on_ = true;
}

void ImapSession::authenticate_with(SaslTalk talk)
{
    const QByteArray opening = talk.opening(can("SASL-IR"));
    if (const qsizetype blank = opening.indexOf(' '); blank > 0)
        connection_.hide(opening.sliced(blank + 1));
    const auto answer = [&](const ImapResponse &challenge) {
        const QByteArray text =
            connection_.telling_failure([&] { return talk.answer(challenge.pieces.first()); });
        connection_.hide(text);
        connection_.write(text + "\r\n");
    };
    if (const auto refusal = finish(send("AUTHENTICATE " + opening), ignore, answer))
        fail_sign_on(connection_, *refusal);
    if (!talk.is_complete())
        connection_.fail(connection_.step(),
                         QStringLiteral("the server has not proved that it knows the password"));
}

// For servers without a mechanism: what a quoted string cannot hold goes as a literal, each at the
// server's request.
void ImapSession::log_in(const Credentials &credentials)
{
    QByteArray command = "LOGIN";
    QList<QByteArray> rest;
    for (const QByteArray &text : {credentials.user.toUtf8(), credentials.secret.toUtf8()}) {
        QByteArray &end = rest.isEmpty() ? command : rest.last();
        if (!needs_literal(text)) {
            end += ' ' + imap_quoted(text);
        } else {
            end += " {" + QByteArray::number(text.size()) + '}';
            rest += text;
        }
    }
    const auto go_on = [&](const ImapResponse &) {
        if (!rest.isEmpty())
            connection_.write(rest.takeFirst() + "\r\n");
    };
    if (const auto refusal = finish(send(command), ignore, go_on))
        fail_sign_on(connection_, *refusal);
}

ImapMailbox ImapSession::examine(const QString &mailbox)
{
    connection_.begin(QStringLiteral("opening the mailbox '%1'").arg(mailbox));
    ImapMailbox opened;
    auto refusal = try_examine(mailbox, opened);
    if (refusal && mailbox.contains(u'/')) {
        const QString own_name = with_own_delimiter(mailbox);
        if (own_name != mailbox)
            refusal = try_examine(own_name, opened);
    }
    if (refusal)
        connection_.fail(connection_.step(), *refusal);
    return opened;
}

std::optional<QString> ImapSession::try_examine(const QString &name, ImapMailbox &mailbox)
{
    const auto note = [&mailbox](const ImapResponse &response) {
        if (response.keyword() == "EXISTS" && response.rest().isEmpty())
            mailbox.exists = response.number().value_or(mailbox.exists);
        else if (const auto number = number_in_code(response.rest(), "UIDVALIDITY"))
            mailbox.uid_validity = *number;
    };
    return finish(send("EXAMINE " + imap_mailbox_name(name)), note);
}

// LIST with an empty name tells what divides names: (\Noselect) "." "".
QString ImapSession::with_own_delimiter(const QString &name)
{
    QByteArray delimiter = "/";
    run(R"(LIST "" "")", [&delimiter](const ImapResponse &response) {
        const QByteArray text = response.rest();
        const qsizetype quote = text.indexOf(") \"") + 3;
        if (response.keyword() == "LIST" && quote > 2 && quote < text.size())
            delimiter = text.sliced(quote, 1);
    });
    return QString(name).replace(u'/', QString::fromLatin1(delimiter));
}

QByteArray ImapSession::send(const QByteArray &command)
{
    const QByteArray tag = 'o' + QByteArray::number(++last_tag_);
    connection_.write(tag + ' ' + command + "\r\n");
    return tag;
}

ImapResponse ImapSession::next()
{
    try {
        ImapResponse response = read_imap_response(connection_);
        if (response.is_untagged() && response.keyword() == "BYE")
            farewell_ = words_of(response);
        return response;
    } catch (const LineLost &) {
        if (farewell_.isEmpty())
            throw;
        connection_.fail_as<LineLost>(connection_.step(), farewell_);
    }
}

ImapSession::End ImapSession::read_to_an_end(const Handler &on_untagged,
                                             const Handler &on_continuation)
{
    for (int untagged = 0; untagged < most_untagged; ++untagged) {
        ImapResponse response = next();
        if (response.is_untagged()) {
            on_untagged(std::move(response));
            continue;
        }
        if (response.is_continuation()) {
            on_continuation(std::move(response));
            continue;
        }
        const QByteArray keyword = response.keyword();
        if (keyword != "OK" && keyword != "NO" && keyword != "BAD")
            connection_.fail(connection_.step(), words_of(response));
        return {response.tag, keyword == "OK" ? std::nullopt : std::optional(words_of(response)),
                keyword == "BAD"};
    }
    connection_.fail(connection_.step(), QStringLiteral("the server never comes to an end"));
}

std::optional<QString> ImapSession::finish(const QByteArray &tag, const Handler &on_untagged,
                                           const Handler &on_continuation)
{
    const End end = read_to_an_end(on_untagged, on_continuation);
    if (end.tag != tag)
        connection_.fail(connection_.step(),
                         QStringLiteral("the server answers what it was not asked"));
    if (end.is_bad)
        connection_.fail(connection_.step(), *end.refusal);
    return end.refusal;
}

void ImapSession::run(const QByteArray &command, const Handler &on_untagged)
{
    if (const auto refusal = finish(send(command), on_untagged))
        connection_.fail(connection_.step(), *refusal);
}

void ImapSession::log_out(bool waits)
{
    connection_.hurry(patience_at_the_end);
    attempt([&] {
        const QByteArray tag = send("LOGOUT");
        if (waits)
            finish(tag, ignore);
    });
    connection_.close();
}
