#include "mail/pop3_inbox.h"

#include "mail/header_fields.h"
#include "mail/mail_file.h"
#include "mail/message_date.h"
#include "mail/message_reader.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace
{
constexpr std::size_t most_asked = 100;
constexpr qint64 most_bytes_asked = qint64(16) * 1024 * 1024;
constexpr qint64 largest_size = qint64(1) << 30; // larger messages do not exist
constexpr qsizetype longest_identifier = 70;     // RFC 1939 section 7
// A message is cut where its file would be.
static_assert(AnswerBounds().most_held == longest_message);
const QByteArray all_lines = "2147483647";

// When the user's own server took the message: it puts its Received field first.
QDateTime received_date(const QByteArray &message)
{
    HeaderFields fields(message);
    while (fields.next()) {
        if (fields.is("Received")) {
            const QByteArray value = unfolded(fields.value());
            return read_message_date(QByteArrayView(value).sliced(value.lastIndexOf(';') + 1));
        }
    }
    return {};
}
} // namespace

Pop3Inbox::Pop3Inbox(const MailServer &server, std::function<Credentials()> credentials,
                     const NetworkConditions &conditions)
    : ServerInbox(server, std::move(credentials), conditions)
{
}

Pop3Inbox::~Pop3Inbox()
{
    sign_off();
}

void Pop3Inbox::open_session(const Credentials &credentials)
{
    session_ = std::make_unique<Pop3Session>(server(), conditions());
    session_->sign_on(credentials);
}

std::vector<Pop3Inbox::Entry> Pop3Inbox::listed()
{
    session_->connection().begin(QStringLiteral("listing the messages"));
    std::vector<Entry> entries;
    session_->send("LIST");
    if (const auto refusal = session_->read_status())
        session_->connection().fail(session_->connection().step(), *refusal);
    session_->read_lines([&entries](const QByteArray &line) {
        const QByteArrayList words = line.split(' ');
        const quint32 number = words.first().toUInt();
        if (number != 0)
            entries.push_back(
                {number, std::clamp<qint64>(words.value(1).toLongLong(), 0, largest_size), {}});
    });
    std::ranges::stable_sort(entries, {}, &Entry::number);
    const auto is_same = [](const Entry &a, const Entry &b) { return a.number == b.number; };
    entries.erase(std::unique(entries.begin(), entries.end(), is_same), entries.end());
    name_entries(entries);
    return entries;
}

// An identifier that several messages share tells none of them from the others.
void Pop3Inbox::name_entries(std::vector<Entry> &entries)
{
    session_->send("UIDL");
    if (session_->read_status())
        return;
    QHash<QByteArray, int> uses;
    session_->read_lines([&](const QByteArray &line) {
        const qsizetype blank = line.indexOf(' ');
        const quint32 number = line.left(std::max<qsizetype>(0, blank)).toUInt();
        const auto entry = std::ranges::lower_bound(entries, number, {}, &Entry::number);
        const QByteArray identifier = line.sliced(blank + 1);
        if (entry == entries.end() || entry->number != number ||
            identifier.size() > longest_identifier)
            return;
        entry->identifier = identifier;
        ++uses[identifier];
    });
    for (Entry &entry : entries) {
        if (uses.value(entry.identifier) > 1)
            entry.identifier.clear();
    }
}

RawMessage Pop3Inbox::read_raw(std::size_t index)
{
    session_->connection().begin(QStringLiteral("reading the messages"));
    if (entries_.at(index).number == 0)
        tell_gone(index);
    if (!asked_.empty() && asked_.front() != index)
        pass_over_asked();
    ask_ahead(index);
    asked_.pop_front();
    auto refusal = session_->read_status();
    if (refusal && may_lack_top())
        refusal = ask_by_retr(index);
    if (refusal)
        tell_refusal(index, *refusal);
    top_was_taken_ = asks_by_top();
    Pop3Text text = session_->read_text(conditions().bounds.most_held, most_to_pass_over(index));
    const QDateTime arrived = received_date(text.bytes);
    return {std::move(text.bytes), arrived, text.bytes_left_out};
}

// Asks again once half of the answers have come, so that several commands go in one packet.
void Pop3Inbox::ask_ahead(std::size_t index)
{
    const bool at_once = session_->can("PIPELINING");
    if (asked_.size() > (at_once ? most_asked / 2 : 0))
        return;
    qint64 bytes = 0;
    for (const std::size_t asked : asked_)
        bytes += entries_[asked].size;
    const std::size_t most = at_once ? most_asked : 1;
    QByteArray commands;
    for (std::size_t next = asked_.empty() ? index : asked_.back() + 1;
         next < entries_.size() && asked_.size() < most; ++next) {
        const Entry &entry = entries_[next];
        bytes += entry.size;
        if (entry.number == 0)
            continue;
        if (!asked_.empty() && bytes > most_bytes_asked)
            break;
        const QByteArray number = QByteArray::number(entry.number);
        commands +=
            asks_by_top() ? "TOP " + number + ' ' + all_lines + "\r\n" : "RETR " + number + "\r\n";
        asked_.push_back(next);
    }
    if (!commands.isEmpty())
        session_->connection().write(commands);
}

bool Pop3Inbox::asks_by_top() const
{
    return session_->names_capabilities() ? session_->can("TOP") : !lacks_top_;
}

// Then a refusal may be one of the command itself, not of the message.
bool Pop3Inbox::may_lack_top() const
{
    return !session_->names_capabilities() && !lacks_top_ && !top_was_taken_;
}

// @return the server's words when it refused.
std::optional<QString> Pop3Inbox::ask_by_retr(std::size_t index)
{
    session_->send("RETR " + QByteArray::number(entries_[index].number));
    const auto refusal = session_->read_status();
    lacks_top_ = !refusal; // else the message has gone: the next one tells
    return refusal;
}

QString Pop3Inbox::caution() const
{
    if (!session_ || !session_->names_capabilities() || session_->can("TOP"))
        return {};
    return QStringLiteral("This server lacks TOP: reading marks messages as read for other mail "
                          "programs, on most servers.");
}

void Pop3Inbox::pass_over_asked()
{
    while (!asked_.empty()) {
        const std::size_t index = asked_.front();
        asked_.pop_front();
        if (!session_->read_status())
            session_->read_text(0, most_to_pass_over(index));
    }
}

// Servers count sizes in more than one way, but a text that goes on and on is none.
qint64 Pop3Inbox::most_to_pass_over(std::size_t index) const
{
    return std::max(conditions().bounds.most_passed_over, 4 * entries_.at(index).size);
}

// A message that the server no longer lists has gone; else its refusal means something.
void Pop3Inbox::tell_refusal(std::size_t index, const QString &words)
{
    pass_over_asked();
    session_->send("LIST " + QByteArray::number(entries_[index].number));
    if (session_->read_status())
        tell_gone(index);
    session_->connection().fail_as<MessageRefused>(
        QStringLiteral("reading message %1").arg(index + 1), words);
}

void Pop3Inbox::tell_gone(std::size_t index) const
{
    throw MessageGone(error_number::mail_failure,
                      QStringLiteral("Message %1 is no longer in the inbox of '%2'")
                          .arg(QString::number(index + 1), server().host));
}

// The numbers are those of one session; the identifiers tell which message is which.
void Pop3Inbox::take_up()
{
    QHash<QByteArray, quint32> numbers;
    for (const Entry &entry : listed()) {
        if (!entry.identifier.isEmpty())
            numbers.insert(entry.identifier, entry.number);
    }
    for (Entry &entry : entries_)
        entry.number = numbers.value(entry.identifier, 0);
}

bool Pop3Inbox::can_be_found_again(std::size_t index) const
{
    return !entries_.at(index).identifier.isEmpty();
}

qint64 Pop3Inbox::close_session(bool waits)
{
    session_->quit(asked_.empty() && waits);
    asked_.clear();
    const qint64 received = session_->connection().received();
    session_.reset();
    return received;
}

const ServerConnection *Pop3Inbox::line() const
{
    return session_ ? &session_->connection() : nullptr;
}
