#include "mail/smtp_delivery.h"

#include "mail/recipient.h"
#include "platform/runtime_error.h"

#include <QLocale>

#include <algorithm>

namespace
{
constexpr int go_ahead = 354;
// RFC 5321 4.5.3.2.6: a server may take ten minutes to look at a message. One that is given up on
// before may deliver it all the same.
constexpr int patience_for_content = 10;
const QString naming = QStringLiteral("naming the recipients");
const QString no_utf8 =
    QStringLiteral("the server takes no address with letters beyond ASCII (SMTPUTF8)");

bool is_ascii(const QByteArray &bytes)
{
    return std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

QString megabytes(qint64 bytes)
{
    constexpr double megabyte = 1e6;
    return QLocale(QLocale::English).toString(static_cast<double>(bytes) / megabyte, 'f', 1);
}

Fate fate_of(const SmtpReply &reply)
{
    if (reply.is_positive())
        return Fate::Accepted;
    return reply.is_for_the_moment() ? Fate::NotNow : Fate::Refused;
}
} // namespace

QByteArray smtp_content(const QByteArray &message)
{
    QByteArray content = message;
    if (!content.isEmpty() && !content.endsWith("\r\n"))
        content += "\r\n";
    if (content.startsWith('.'))
        content.prepend('.');
    content.replace("\r\n.", "\r\n..");
    return content + ".\r\n";
}

SmtpDelivery::SmtpDelivery(const QString &sender, const QStringList &recipients,
                           const QByteArray &message)
    : sender_(sender.toUtf8()),
      message_needs_utf8_(needs_utf8(sender) || !is_ascii(message)),
      size_(message.size()),
      content_(smtp_content(message))
{
    for (const QString &recipient : recipients)
        fates_.push_back({recipient, Fate::NotTried, {}});
    const std::vector<Envelope> envelopes = envelopes_for(recipients);
    due_.assign(envelopes.begin(), envelopes.end());
}

void SmtpDelivery::run(SmtpSession &session)
{
    check(session);
    try {
        for (;;) {
            if (due_.empty())
                finish_content(session);
            if (due_.empty())
                start_second_round();
            if (due_.empty())
                return;
            offer(session);
        }
    } catch (const RuntimeError &error) {
        has_lost_content_ = !under_way_.empty();
        set_fates(under_way_, Fate::Unknown, error.description());
        under_way_.clear();
        throw;
    }
}

void SmtpDelivery::check(SmtpSession &session)
{
    session.begin(QStringLiteral("sending"));
    const auto most = session.largest_message();
    if (most && size_ > *most)
        session.fail(
            QStringLiteral("the message is too large: it has %1 MB, and the server takes at "
                           "most %2 MB")
                .arg(megabytes(size_), megabytes(*most)));
    if (session.offers("SMTPUTF8"))
        return;
    if (message_needs_utf8_)
        session.fail(no_utf8);
    refuse_beyond_ascii();
}

void SmtpDelivery::refuse_beyond_ascii()
{
    while (!due_.empty() && needs_utf8(fate_at(due_.back().front()).recipient)) {
        set_fates(due_.back(), Fate::Refused, no_utf8);
        due_.pop_back();
        ++concluded_;
    }
}

// The content that is under way goes out first, in front of the next envelope's names.
void SmtpDelivery::offer(SmtpSession &session)
{
    if (under_way_.empty())
        session.begin(naming);
    const std::vector<SmtpReply> replies = name_everybody(session);
    const Envelope taken = taken_of(session, replies);
    if (taken.empty()) {
        conclude();
        session.command("RSET");
        return;
    }
    due_.front() = taken; // the others have their answer
    announce(session, taken);
}

std::vector<SmtpReply> SmtpDelivery::name_everybody(SmtpSession &session)
{
    std::vector<SmtpReply> replies; // to MAIL, then to each RCPT
    const auto keep = [&](const SmtpReply &reply) {
        if (reply.is_farewell())
            session.fail(reply);
        replies.push_back(reply);
    };
    std::vector<SmtpStep> steps;
    if (!under_way_.empty())
        steps.push_back(content_step(session));
    steps.push_back({mail_command(session), keep});
    for (const qsizetype place : due_.front())
        steps.push_back({"RCPT TO:<" + fate_at(place).recipient.toUtf8() + ">\r\n", keep});
    session.go_through(steps);
    return replies;
}

// Notes down who is refused. @return the others.
Envelope SmtpDelivery::taken_of(const SmtpSession &session, const std::vector<SmtpReply> &replies)
{
    const Envelope &envelope = due_.front();
    if (!replies.front().is_positive()) {
        set_fates(envelope, replies.front(), session);
        return {};
    }
    Envelope taken;
    for (std::size_t i = 0; i < envelope.size(); ++i) {
        if (replies[i + 1].is_positive())
            taken.push_back(envelope[i]);
        else
            set_fates({envelope[i]}, replies[i + 1], session);
    }
    return taken;
}

void SmtpDelivery::announce(SmtpSession &session, const Envelope &taken)
{
    session.begin(QStringLiteral("sending the message"));
    const SmtpReply reply = session.command("DATA");
    // A server that has "taken" a message which it was not sent cannot be understood.
    if (reply.is_farewell() || reply.is_positive())
        session.fail(reply);
    conclude();
    if (reply.code == go_ahead) {
        under_way_ = taken;
        return;
    }
    set_fates(taken, reply, session);
    session.command("RSET");
}

SmtpStep SmtpDelivery::content_step(SmtpSession &session)
{
    return {content_,
            [this, &session](const SmtpReply &reply) {
                set_fates(under_way_, reply, session);
                under_way_.clear();
                if (reply.is_farewell())
                    session.fail(reply);
                session.begin(naming);
            },
            patience_for_content};
}

void SmtpDelivery::finish_content(SmtpSession &session)
{
    if (!under_way_.empty())
        session.go_through({content_step(session)});
}

void SmtpDelivery::start_second_round()
{
    if (is_second_round_)
        return;
    is_second_round_ = true;
    std::vector<qsizetype> again;
    for (qsizetype place = 0; place < std::ssize(fates_); ++place) {
        if (fate_at(place).fate == Fate::NotNow)
            again.push_back(place);
    }
    std::stable_partition(again.begin(), again.end(), [this](qsizetype place) {
        return !needs_utf8(fate_at(place).recipient);
    });
    const std::vector<Envelope> envelopes = envelopes_of(again);
    due_.assign(envelopes.begin(), envelopes.end());
}

QByteArray SmtpDelivery::mail_command(const SmtpSession &session) const
{
    QByteArray command = "MAIL FROM:<" + sender_ + '>';
    if (session.offers("SIZE"))
        command += " SIZE=" + QByteArray::number(size_);
    const bool has_recipient_beyond_ascii =
        std::ranges::any_of(due_.front(), [this](qsizetype place) {
            return needs_utf8(fates_[static_cast<std::size_t>(place)].recipient);
        });
    if (message_needs_utf8_ || has_recipient_beyond_ascii)
        command += session.offers("8BITMIME") ? " BODY=8BITMIME SMTPUTF8" : " SMTPUTF8";
    return command + "\r\n";
}

void SmtpDelivery::conclude()
{
    due_.pop_front();
    ++concluded_;
}

void SmtpDelivery::give_up(const QString &why)
{
    for (RecipientFate &fate : fates_) {
        if (fate.fate == Fate::NotTried)
            fate.words = why;
    }
    due_.clear();
}

void SmtpDelivery::set_fates(const Envelope &envelope, Fate fate, const QString &words)
{
    for (const qsizetype place : envelope) {
        fate_at(place).fate = fate;
        fate_at(place).words = words;
    }
}

void SmtpDelivery::set_fates(const Envelope &envelope, const SmtpReply &reply,
                             const SmtpSession &session)
{
    const Fate fate = fate_of(reply);
    set_fates(envelope, fate, fate == Fate::Accepted ? QString() : session.words_of(reply));
}
