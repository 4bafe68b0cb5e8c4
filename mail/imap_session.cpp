#include "mail/imap_session.h"

#include "mail/sign_in_refused.h"

#include <algorithm>
#include <utility>

namespace
{
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
      connection_(server_, conditions),
      most_untagged_(conditions.bounds.most_lines)
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
    connection_.begin(QStringLiteral("connecting"), ServerConnection::StepLength::Short);
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
    connection_.begin(QStringLiteral("encrypting the line"), ServerConnection::StepLength::Short);
    read_capabilities();
    if (!can("STARTTLS"))
        connection_.fail(connection_.step(),
                         QStringLiteral("the server does not offer to encrypt it (STARTTLS)"));
    run("STARTTLS", ignore);
    connection_.start_tls();
}

void ImapSession::authenticate(const Credentials &credentials)
{
    connection_.begin(QStringLiteral("logging in"), ServerConnection::StepLength::Short);
    require_safe_secret(connection_, credentials);
    read_capabilities();
    QList<QByteArray> offered;
    for (const QByteArray &capability : std::as_const(capabilities_)) {
        if (capability.startsWith("AUTH="))
            offered += capability.sliced(5);
    }
    SignOnTalk talk(connection_, offered, credentials);
    if (talk.is_possible())
        authenticate_with(talk);
    else if (credentials.kind == SignInKind::Password && !can("LOGINDISABLED"))
        log_in(credentials);
    else
        fail_without_way(connection_, offered);
    is_signed_on_ = true;
}

void ImapSession::authenticate_with(SignOnTalk &talk)
{
    const auto answer = [&](const ImapResponse &challenge) {
        connection_.write(talk.answer(challenge.pieces.first()) + "\r\n");
    };
    const QByteArray tag = send("AUTHENTICATE " + talk.opening(can("SASL-IR")));
    if (const auto refusal = finish(tag, ignore, answer))
        fail_sign_on(connection_, *refusal);
    talk.require_proof();
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
    connection_.begin(QStringLiteral("opening the mailbox '%1'").arg(mailbox),
                      ServerConnection::StepLength::Short);
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
    for (int untagged = 0; untagged < most_untagged_; ++untagged) {
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
        if (keyword == "OK")
            return {response.tag, std::nullopt};
        if (keyword != "NO" && keyword != "BAD")
            connection_.fail(connection_.step(), words_of(response));
        return {response.tag, words_of(response), keyword == "BAD"};
    }
    connection_.fail(connection_.step(), QStringLiteral("the server never comes to an end"));
}

std::optional<QString> ImapSession::finish(const QByteArray &tag, const Handler &on_untagged,
                                           const Handler &on_continuation)
{
    const End end = read_to_an_end(on_untagged, on_continuation);
    if (end.is_bad)
        connection_.fail(connection_.step(), *end.refusal);
    if (end.tag != tag)
        connection_.fail(connection_.step(),
                         QStringLiteral("the server answers what it was not asked"));
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
