#include "mail/mbox_inbox.h"

#include "mail/message_reader.h"

#include <QFile>
#include <QHash>

#include <algorithm>
#include <fcntl.h>
#include <utility>

namespace
{
constexpr int most_tries = 3;

// A shared lock on the file's whole length for as long as it lives; without one when another
// program writes just then, which the comparison of the file's state notices.
class SharedLock
{
public:
    explicit SharedLock(int descriptor) : descriptor_(descriptor) { set(F_RDLCK); }
    ~SharedLock() { set(F_UNLCK); }
    SharedLock(const SharedLock &) = delete;
    SharedLock &operator=(const SharedLock &) = delete;

private:
    void set(short type) const
    {
        struct flock lock = {};
        lock.l_type = type;
        lock.l_whence = SEEK_SET;
        // Of the open file, not of the process: closing the same file elsewhere keeps it.
        fcntl(descriptor_, F_OFD_SETLK, &lock);
    }

    int descriptor_;
};

using Identity = std::pair<std::size_t, qint64>;

Identity identity_of(const MboxMessage &message)
{
    return {message.mark, message.end - message.begin};
}

QDateTime date_of_words(const QByteArray &month_name, const QByteArray &day_number,
                        const QByteArray &clock, const QByteArray &year)
{
    static constexpr QByteArrayView months("JanFebMarAprMayJunJulAugSepOctNovDec");
    const qsizetype month = month_name.size() == 3 ? months.indexOf(month_name) : -1;
    if (month < 0 || year.startsWith('+') || year.startsWith('-')) // a zone is no year
        return {};
    const QDate day(year.toInt(), static_cast<int>(month / 3 + 1), day_number.toInt());
    const QTime time = QTime::fromString(QString::fromLatin1(clock), Qt::ISODate);
    return day.isValid() && time.isValid() ? QDateTime(day, time) : QDateTime();
}

// The date in a separator line: "From ann@example.org Mon Jan  2 10:20:30 2006", perhaps with a
// zone before or behind the year; invalid when it is in another form. Mail programs write it in
// local time, a few in universal time.
QDateTime separator_date(QByteArrayView line)
{
    const QList<QByteArray> words = line.toByteArray().simplified().split(' ');
    for (qsizetype year = words.size() - 1; year >= 4; --year) {
        for (const qsizetype time : {year - 1, year - 2}) {
            const QDateTime date =
                date_of_words(words[time - 2], words[time - 1], words[time], words[year]);
            if (date.isValid())
                return date;
        }
    }
    return {};
}
} // namespace

MboxInbox::MboxInbox(const QString &file) : path_(QFile::encodeName(file)) {}

void MboxInbox::fetch()
{
    file_ = MailFile(path_);
    if (!file_.is_open())
        throw_file_error("The mailbox file cannot be read", path_, file_.error());
    if (!S_ISREG(file_.status().st_mode))
        fail(QStringLiteral("This is no mailbox file"));
    messages_ = scan();
}

MboxInbox::State MboxInbox::state() const
{
    const struct stat status = file_.status();
    return {status.st_size, status.st_mtim.tv_sec * qint64(1'000'000'000) + status.st_mtim.tv_nsec};
}

std::vector<MboxMessage> MboxInbox::scan()
{
    for (int tries = 0; tries < most_tries; ++tries) {
        const SharedLock lock(file_.descriptor());
        scanned_ = state();
        auto found = scan_mbox(file_, scanned_.size);
        if (state() != scanned_)
            continue;
        if (!found)
            fail(QStringLiteral("The mailbox file does not begin with a \"From \" line"));
        std::erase_if(*found, [](const MboxMessage &message) { return message.deleted; });
        return std::move(*found);
    }
    fail(QStringLiteral("The mailbox file keeps changing while it is read"));
}

// Gives every message of the last fetch its new place; one that is not found again has none (its
// end is its begin). Equal ones keep their order.
void MboxInbox::scan_again()
{
    QMultiHash<Identity, qint64> places;
    const std::vector<MboxMessage> present = scan();
    for (auto message = present.rbegin(); message != present.rend(); ++message)
        places.insert(identity_of(*message), message->begin); // the last one in is the first out
    for (MboxMessage &message : messages_) {
        const qint64 length = message.end - message.begin;
        const auto found = places.find(identity_of(message));
        message.end = message.begin;
        if (length == 0 || found == places.end())
            continue;
        message.begin = *found;
        message.end = *found + length;
        places.erase(found);
    }
}

MessageFields MboxInbox::read(int index)
{
    const MboxMessage &message = messages_.at(static_cast<std::size_t>(index));
    for (int tries = 0; tries < most_tries; ++tries) {
        const SharedLock lock(file_.descriptor());
        if (state() != scanned_)
            scan_again();
        if (message.end == message.begin)
            throw MessageGone(error_number::mail_failure,
                              QStringLiteral("Message %1 is no longer in the mailbox file: '%2'")
                                  .arg(QString::number(index + 1), QFile::decodeName(path_)));
        MessageFields fields = read_at(message);
        if (state() == scanned_)
            return fields;
    }
    fail(QStringLiteral("The mailbox file keeps changing while it is read"));
}

MessageFields MboxInbox::read_at(const MboxMessage &message) const
{
    const qint64 length = message.end - message.begin;
    const qint64 size = std::min(length, longest_message);
    QByteArray bytes = file_.read(message.begin, size);
    const qsizetype header = bytes.indexOf('\n') + 1;
    const QDateTime arrived = separator_date(QByteArrayView(bytes).first(header));
    bytes.remove(0, header > 0 ? header : bytes.size());
    unquote_from_lines(bytes);
    return read_message({std::move(bytes), arrived, length - size});
}

void MboxInbox::fail(const QString &what) const
{
    throw RuntimeError(error_number::mail_failure,
                       QStringLiteral("%1: '%2'").arg(what, QFile::decodeName(path_)));
}
