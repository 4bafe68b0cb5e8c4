#pragma once

#include "mail/envelopes.h"
#include "mail/mail_way_out.h"
#include "mail/smtp_session.h"

#include <deque>
#include <vector>

/// One message on its way to all its recipients over SMTP: a transaction an envelope, everybody's
/// answer kept, what is refused for the moment offered once more at the end. It can go on in a new
/// session where the last one broke off; what may have been taken is never sent again.
class SmtpDelivery
{
public:
    SmtpDelivery(const QString &sender, const QStringList &recipients, const QByteArray &message);

    /// Delivers what is still due.
    /// @throws RuntimeError 32000 when the session breaks off, or does not take such a message.
    void run(SmtpSession &session);

    /// Whether nobody's turn is still to come.
    bool is_done() const { return due_.empty(); }
    /// How many envelopes have been dealt with.
    int concluded() const { return concluded_; }
    /// Whether a session broke off before it answered a message's content: nobody knows what became
    /// of it.
    bool has_lost_content() const { return has_lost_content_; }
    /// Nobody's turn comes any more, for this reason.
    void give_up(const QString &why);

    const std::vector<RecipientFate> &fates() const { return fates_; }

private:
    void check(SmtpSession &session);
    void refuse_beyond_ascii();
    void offer(SmtpSession &session);
    std::vector<SmtpReply> name_everybody(SmtpSession &session);
    Envelope taken_of(const SmtpSession &session, const std::vector<SmtpReply> &replies);
    void announce(SmtpSession &session, const Envelope &taken);
    SmtpStep content_step(SmtpSession &session);
    void finish_content(SmtpSession &session);
    void start_second_round();
    QByteArray mail_command(const SmtpSession &session) const;
    void conclude();
    void set_fates(const Envelope &envelope, Fate fate, const QString &words);
    void set_fates(const Envelope &envelope, const SmtpReply &reply, const SmtpSession &session);
    RecipientFate &fate_at(qsizetype place) { return fates_[static_cast<std::size_t>(place)]; }

    QByteArray sender_;
    bool message_needs_utf8_;
    qsizetype size_;
    QByteArray content_; // as it goes over the line
    std::vector<RecipientFate> fates_;
    std::deque<Envelope> due_;
    Envelope under_way_; // whose content goes out with the next step
    bool is_second_round_ = false;
    bool has_lost_content_ = false;
    int concluded_ = 0;
};

/// A message as SMTP carries it (RFC 5321 4.5.2): lines that begin with a dot get another one, and
/// a dot on a line of its own ends it.
QByteArray smtp_content(const QByteArray &message);
