#include "mail/imap_inbox.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr qint64 largest_size = qint64(1) << 40; // sums of them fit
}

ImapInbox::ImapInbox(const MailServer &server, const QString &mailbox,
                     std::function<Credentials()> credentials, const NetworkConditions &conditions)
    : server_(server),
      mailbox_(mailbox.isEmpty() ? QStringLiteral("INBOX") : mailbox),
      credentials_(std::move(credentials)),
      conditions_(conditions)
{
}

ImapInbox::~ImapInbox()
{
    sign_off();
}

void ImapInbox::fetch()
{
    sign_off();
    entries_.clear();
    failure_.reset();
    may_resume_ = true;
    try {
        open_and_list();
    } catch (const RuntimeError &error) {
        give_up(error);
        throw;
    }
}

void ImapInbox::open_and_list()
{
    try {
        open();
        list();
    } catch (const LineLost &) {
        sign_off();
        open();
        list();
    }
}

// The user may be asked for a password: before the line is open, for servers do not wait.
void ImapInbox::open()
{
    const Credentials credentials = credentials_();
    session_ = std::make_unique<ImapSession>(server_, conditions_);
    session_->sign_on(credentials);
    opened_ = session_->examine(mailbox_);
}

void ImapInbox::list()
{
    session_->connection().begin(QStringLiteral("listing the messages"));
    std::vector<ImapEntry> entries;
    const auto note = [&entries](ImapResponse response) {
        if (response.keyword() != "FETCH")
            return;
        const ImapFetch fetch = read_fetch(std::move(response));
        if (fetch.uid != 0 && fetch.size >= 0 && !fetch.is_deleted)
            entries.push_back({fetch.uid, std::min(fetch.size, largest_size), fetch.arrived});
    };
    if (opened_.exists > 0)
        session_->run("UID FETCH 1:* (UID FLAGS RFC822.SIZE INTERNALDATE)", note);
    std::ranges::sort(entries, {}, &ImapEntry::uid);
    const auto same = std::ranges::unique(entries, {}, &ImapEntry::uid);
    entries.erase(same.begin(), same.end());
    entries_ = std::move(entries);
    window_ = std::make_unique<ImapWindow>(*session_, entries_);
}

MessageFields ImapInbox::read(int index)
{
    if (failure_)
        throw *failure_;
    RawMessage message = read_raw(static_cast<std::size_t>(index));
    may_resume_ = true;
    return read_message(std::move(message));
}

RawMessage ImapInbox::read_raw(std::size_t index)
{
    const QString number = QString::number(index + 1);
    try {
        session_->connection().begin(QStringLiteral("reading the messages"));
        if (auto message = window_->read(index))
            return std::move(*message);
    } catch (const LineLost &error) {
        if (!may_resume_) {
            give_up(error);
            throw;
        }
        resume();
        return read_raw(index);
    } catch (const MessageRefused &) {
        throw; // the next one may come
    } catch (const RuntimeError &error) {
        give_up(error);
        throw;
    }
    throw MessageGone(error_number::mail_failure,
                      QStringLiteral("Message %1 is no longer in the mailbox '%2' of '%3'")
                          .arg(number, mailbox_, server_.host));
}

// The unique numbers mean the same messages only while the mailbox keeps its validity number.
void ImapInbox::resume()
{
    may_resume_ = false;
    const quint32 validity = opened_.uid_validity;
    sign_off();
    try {
        open();
        if (opened_.uid_validity != validity)
            session_->connection().fail(
                QStringLiteral("going on with the messages"),
                QStringLiteral("the server has numbered the messages of '%1' anew").arg(mailbox_));
    } catch (const RuntimeError &error) {
        give_up(error);
        throw;
    }
    window_ = std::make_unique<ImapWindow>(*session_, entries_);
}

// The line is of no more use.
void ImapInbox::give_up(const RuntimeError &error)
{
    failure_ = error;
    sign_off();
}

void ImapInbox::sign_off()
{
    if (!session_)
        return;
    const bool is_idle = !window_ || window_->is_idle();
    window_.reset();
    session_->log_out(is_idle && !failure_);
    received_before_ += session_->connection().received();
    session_.reset();
}

qint64 ImapInbox::received() const
{
    return received_before_ + (session_ ? session_->connection().received() : 0);
}
