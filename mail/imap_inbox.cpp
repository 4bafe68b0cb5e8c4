#include "mail/imap_inbox.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr qint64 largest_size = qint64(1) << 40; // sums of them fit
}

ImapInbox::ImapInbox(const MailServer &server, const QString &mailbox,
                     std::function<Credentials()> credentials, const NetworkConditions &conditions)
    : ServerInbox(server, std::move(credentials), conditions),
      mailbox_(mailbox.isEmpty() ? QStringLiteral("INBOX") : mailbox)
{
}

ImapInbox::~ImapInbox()
{
    sign_off();
}

void ImapInbox::open_session(const Credentials &credentials)
{
    session_ = std::make_unique<ImapSession>(server(), conditions());
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
    const auto is_same = [](const ImapEntry &a, const ImapEntry &b) { return a.uid == b.uid; };
    entries.erase(std::unique(entries.begin(), entries.end(), is_same), entries.end());
    entries_ = std::move(entries);
    validity_ = opened_.uid_validity;
    open_window();
}

void ImapInbox::open_window()
{
    window_ = std::make_unique<ImapWindow>(*session_, entries_, conditions().bounds.most_held);
}

RawMessage ImapInbox::read_raw(std::size_t index)
{
    session_->connection().begin(QStringLiteral("reading the messages"));
    if (auto message = window_->read(index))
        return std::move(*message);
    throw MessageGone(error_number::mail_failure,
                      QStringLiteral("Message %1 is no longer in the mailbox '%2' of '%3'")
                          .arg(QString::number(index + 1), mailbox_, server().host));
}

// The unique numbers mean the same messages only while the mailbox keeps its validity number.
void ImapInbox::take_up()
{
    if (opened_.uid_validity != validity_)
        session_->connection().fail(
            QStringLiteral("going on with the messages"),
            QStringLiteral("the server has numbered the messages of '%1' anew").arg(mailbox_));
    open_window();
}

qint64 ImapInbox::close_session(bool waits)
{
    const bool is_idle = !window_ || window_->is_idle();
    window_.reset();
    session_->log_out(is_idle && waits);
    const qint64 received = session_->connection().received();
    session_.reset();
    return received;
}

const ServerConnection *ImapInbox::line() const
{
    return session_ ? &session_->connection() : nullptr;
}
