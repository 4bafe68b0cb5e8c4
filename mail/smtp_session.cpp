#include "mail/smtp_session.h"

#include "mail/recipient.h"
#include "mail/sign_in_refused.h"
#include "mail/sign_on_talk.h"

#include <utility>

namespace
{
// Servers write the name into each message for all recipients to read: the machine's own name, or
// the socket's address, would tell strangers about the network behind it. This one is valid in form
// (RFC 5321 4.1.3), tells nothing, and is what mail programs that care send.
const QByteArray own_name = QByteArrayLiteral("[127.0.0.1]");

constexpr int ready = 220;
constexpr int signed_on = 235;
constexpr int refused_credentials = 535; // RFC 4954 6
constexpr int go_on = 334;
// RFC 4954 4: a longer initial response does not go on the command's line.
constexpr qsizetype longest_opening =
    512 - qsizetype(sizeof "AUTH " - 1) - qsizetype(sizeof "\r\n" - 1);

MailServer with_port(MailServer server)
{
    if (server.port != 0)
        return server;
    switch (server.security) {
    case LineSecurity::Tls:
        server.port = 465;
        break;
    case LineSecurity::StartTls:
        server.port = 587;
        break;
    case LineSecurity::Plain:
        server.port = 25;
        break;
    }
    return server;
}
} // namespace

SmtpSession::SmtpSession(MailServer server, const std::function<Credentials()> &credentials,
                         const NetworkConditions &conditions)
    : server_(with_port(std::move(server))),
      patience_(conditions.patience),
      line_(server_, conditions)
{
    line_.open();
    line_.begin(QStringLiteral("greeting the server"), ServerConnection::StepLength::Short);
    const SmtpReply welcome = read_smtp_reply(line_);
    if (welcome.code != ready)
        fail(welcome);
    greet();
    if (server_.security == LineSecurity::StartTls)
        encrypt();
    if (server_.sign_in != SignInKind::None)
        sign_on(credentials);
}

void SmtpSession::greet()
{
    const SmtpReply reply = command("EHLO " + own_name);
    if (!reply.is_positive())
        fail(reply);
    extensions_.clear();
    for (const QByteArray &line : reply.lines.mid(1)) {
        // "AUTH=PLAIN" is an old way to write "AUTH PLAIN".
        const QByteArray capability = line.trimmed().toUpper().replace("AUTH=", "AUTH ");
        const QByteArray name = capability.split(' ').first();
        const QByteArray parameters = capability.mid(name.size());
        extensions_[name] = (extensions_.value(name) + parameters).trimmed();
    }
}

void SmtpSession::encrypt()
{
    line_.begin(QStringLiteral("encrypting the line"), ServerConnection::StepLength::Short);
    if (!offers("STARTTLS"))
        fail(QStringLiteral(
            "the server does not offer encryption (STARTTLS), which the profile asks "
            "for"));
    const SmtpReply reply = command("STARTTLS");
    if (reply.code != ready)
        fail(reply);
    line_.start_tls();
    line_.begin(QStringLiteral("greeting the server"), ServerConnection::StepLength::Short);
    greet(); // what was said on the plain line does not count (RFC 3207 4.2)
}

QList<QByteArray> SmtpSession::offered_mechanisms() const
{
    return extensions_.value("AUTH").split(' ');
}

void SmtpSession::sign_on(const std::function<Credentials()> &credentials)
{
    line_.begin(QStringLiteral("signing on"), ServerConnection::StepLength::Short);
    if (!line_.may_carry_secrets())
        fail(QStringLiteral(
            "the line is not encrypted: everybody on the way could read the password"));
    const Credentials given = credentials();
    if (given.kind != SignInKind::None)
        sign_on_with(given);
}

void SmtpSession::sign_on_with(const Credentials &credentials)
{
    line_.hide(credentials.secret.toUtf8());
    SignOnTalk talk(line_, offered_mechanisms(), credentials);
    if (!talk.is_possible())
        fail(QStringLiteral("the server offers no way to sign on that is known here; it offers: %1")
                 .arg(harmless_text(QString::fromLatin1(extensions_.value("AUTH", "none")))));
    SmtpReply reply = command("AUTH " + talk.opening(true, longest_opening));
    while (reply.code == go_on)
        reply = command(talk.answer(reply.lines.constLast()));
    if (reply.code == refused_credentials)
        line_.fail_as<SignInRefused>(line_.step(), words_of(reply));
    if (reply.code != signed_on)
        fail(reply);
    talk.require_proof();
}

std::optional<qint64> SmtpSession::largest_message() const
{
    bool is_number = false;
    const qint64 size = extensions_.value("SIZE").toLongLong(&is_number);
    return is_number && size > 0 ? std::optional(size) : std::nullopt;
}

QString SmtpSession::words_of(const SmtpReply &reply) const
{
    return harmless_text(line_.without_secrets(reply.text()));
}

SmtpReply SmtpSession::command(const QByteArray &command)
{
    line_.write(command + "\r\n");
    return read_smtp_reply(line_);
}

void SmtpSession::go_through(const std::vector<SmtpStep> &steps)
{
    const bool at_once = offers("PIPELINING");
    if (at_once) {
        QByteArray all;
        for (const SmtpStep &step : steps)
            all += step.bytes;
        line_.write(all);
    }
    for (const SmtpStep &step : steps) {
        if (!at_once)
            line_.write(step.bytes);
        line_.set_patience(step.patience * patience_);
        const SmtpReply reply = read_smtp_reply(line_);
        line_.set_patience(patience_);
        step.take(reply);
    }
}

void SmtpSession::quit()
{
    constexpr auto last_words = std::chrono::seconds(2);
    line_.hurry(last_words);
    attempt([this] { command("QUIT"); });
    line_.close();
}
