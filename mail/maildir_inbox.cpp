#include "mail/maildir_inbox.h"

#include "mail/mail_file.h"
#include "mail/message_reader.h"

#include <QByteArrayView>
#include <QFile>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <tuple>

namespace
{
struct CloseFolder
{
    void operator()(DIR *folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

// The part that stays when flags change: what stands before the ":".
QByteArrayView unique_part(QByteArrayView name)
{
    const qsizetype colon = name.indexOf(':');
    return colon < 0 ? name : name.first(colon);
}

bool is_trashed(QByteArrayView name)
{
    const qsizetype flags = name.indexOf(":2,");
    return flags >= 0 && name.sliced(flags + 3).contains('T');
}

// Names begin with the second of the arrival ("1700000000.M1P2.host"); 0 for others.
qint64 arrival_of(QByteArrayView name)
{
    bool is_number = false;
    const qsizetype dot = name.indexOf('.');
    const qint64 seconds = dot < 0 ? 0 : name.first(dot).toByteArray().toLongLong(&is_number);
    return is_number ? seconds : 0;
}

// Some file systems do not tell the kind while listing.
bool is_regular(DIR *folder, const dirent &found)
{
    if (found.d_type != DT_UNKNOWN)
        return found.d_type == DT_REG;
    struct stat status = {};
    return fstatat(dirfd(folder), found.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
}
// Whether an opening failed because the file is no longer there; a link in its place is not it.
bool means_gone(int error)
{
    return error == ENOENT || error == ELOOP || error == ENOTDIR;
}
} // namespace

MaildirInbox::MaildirInbox(const QString &folder) : folder_(QFile::encodeName(folder)) {}

void MaildirInbox::fetch()
{
    std::vector<Entry> entries;
    // This order: a message that is moved to cur/ in between is seen twice, not never.
    list(true, entries);
    list(false, entries);
    std::ranges::sort(entries, [](const Entry &a, const Entry &b) {
        return std::tuple(a.arrived, unique_part(a.name), a.is_new) <
               std::tuple(b.arrived, unique_part(b.name), b.is_new);
    });
    const auto is_same = [](const Entry &a, const Entry &b) {
        return unique_part(a.name) == unique_part(b.name);
    };
    entries.erase(std::unique(entries.begin(), entries.end(), is_same), entries.end());
    std::erase_if(entries, [](const Entry &entry) { return is_trashed(entry.name); });
    entries_ = std::move(entries);
}

void MaildirInbox::list(bool is_new, std::vector<Entry> &entries) const
{
    const QByteArray path = folder_ + (is_new ? "/new" : "/cur");
    MailFile file(path, O_DIRECTORY);
    if (!file.is_open() && file.error() == ENOENT)
        return; // one of the two may never have been made
    if (!file.is_open())
        throw_file_error("The mail folder cannot be read", path, file.error());
    const Folder folder(fdopendir(file.descriptor()));
    if (!folder)
        throw_file_error("The mail folder cannot be read", path, errno);
    file.release();
    errno = 0;
    while (const dirent *found = readdir(folder.get())) {
        const QByteArrayView name(found->d_name);
        if (!name.startsWith('.') && is_regular(folder.get(), *found))
            entries.push_back({arrival_of(name), is_new, name.toByteArray()});
        errno = 0;
    }
    if (errno != 0)
        throw_file_error("The mail folder cannot be read", path, errno);
}

QByteArray MaildirInbox::path_of(const Entry &entry) const
{
    return folder_ + (entry.is_new ? "/new/" : "/cur/") + entry.name;
}

// One listing serves all messages: a mail program that marks a whole folder as read renames
// everything at once.
void MaildirInbox::follow_renames()
{
    std::vector<Entry> present;
    list(true, present);
    list(false, present);
    QHash<QByteArray, QByteArray> names;
    QSet<QByteArray> in_new;
    for (const Entry &entry : present) {
        names.insert(unique_part(entry.name).toByteArray(), entry.name);
        if (entry.is_new)
            in_new.insert(entry.name);
    }
    for (Entry &entry : entries_) {
        entry.name = names.value(unique_part(entry.name).toByteArray());
        entry.is_new = in_new.contains(entry.name);
        if (is_trashed(entry.name))
            entry.name.clear();
    }
}

MailFile MaildirInbox::open_message(std::size_t index)
{
    const Entry &entry = entries_.at(index);
    MailFile file(path_of(entry), O_NOFOLLOW);
    if (!file.is_open() && file.error() == ENOENT) {
        follow_renames();
        file = MailFile(path_of(entry), O_NOFOLLOW);
    }
    return file;
}

MessageFields MaildirInbox::read(int index)
{
    const auto at = static_cast<std::size_t>(index);
    const QByteArray path = path_of(entries_.at(at));
    const MailFile file = entries_[at].name.isEmpty() ? MailFile() : open_message(at);
    const bool is_gone = entries_[at].name.isEmpty() || means_gone(file.error());
    if (is_gone || (file.is_open() && !S_ISREG(file.status().st_mode)))
        throw MessageGone(error_number::mail_failure,
                          QStringLiteral("The message is no longer in the inbox: '%1'")
                              .arg(QFile::decodeName(path)));
    if (!file.is_open())
        throw_file_error("The message cannot be read", path, file.error());
    const struct stat status = file.status();
    const qint64 size = std::min<qint64>(status.st_size, longest_message);
    return read_message({file.read(0, size), changed_at(status), status.st_size - size});
}
