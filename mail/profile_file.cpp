#include "mail/profile_file.h"

#include "mail/profile_rules.h"
#include "platform/runtime_error.h"
#include "platform/settings_file.h"
#include "platform/text_file.h"

#include <QFileInfo>

#include <algorithm>

namespace
{
const QString heading = QStringLiteral("[profile]");

/// A profile's lines in the file, its heading with them; or lines that belong to none.
struct Block
{
    qsizetype first_number = 1;
    QStringList lines;
    std::optional<StoredProfile> stored;
};
using Blocks = std::vector<Block>;

[[noreturn]] void fail(int number, const QString &what)
{
    throw RuntimeError(number, what);
}

QStringList lines_of_file(const QString &path)
{
    constexpr qint64 largest = 1 << 20;
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    if (!info.isFile() || info.size() > largest)
        fail(error_number::path_file_access,
             QStringLiteral("The mail profiles cannot be read: '%1' %2")
                 .arg(path, info.isFile() ? QStringLiteral("is larger than 1 MB")
                                          : QStringLiteral("is no file")));
    return read_lines(path);
}

bool is_heading(const QString &line)
{
    return line.trimmed().startsWith(u'[');
}

Blocks split_blocks(const QStringList &lines)
{
    Blocks blocks(1);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (is_heading(lines[i]))
            blocks.push_back({i + 1, {}, {}});
        blocks.back().lines += lines[i];
    }
    return blocks;
}

bool is_profile(const Block &block)
{
    return !block.lines.isEmpty() &&
           block.lines.first().trimmed().compare(heading, Qt::CaseInsensitive) == 0;
}

Blocks read_blocks(const QString &path)
{
    Blocks blocks = split_blocks(lines_of_file(path));
    QStringList names;
    for (Block &block : blocks) {
        if (!is_profile(block))
            continue;
        block.stored = read_profile(block.lines.mid(1), block.first_number + 1);
        const QString &name = block.stored->profile.name;
        if (names.contains(name, Qt::CaseInsensitive))
            block.stored->damages += QStringLiteral("line %1: another profile has the same name")
                                         .arg(block.first_number);
        names += name;
    }
    return blocks;
}

QStringList stray_lines(const Block &block)
{
    QStringList damages;
    for (qsizetype i = 0; i < block.lines.size(); ++i) {
        if (!is_comment(block.lines[i]))
            damages +=
                QStringLiteral("line %1 belongs to no mail profile").arg(block.first_number + i);
    }
    return damages;
}

Block *find_block(Blocks &blocks, const MailProfile &profile)
{
    const auto found = std::find_if(blocks.begin(), blocks.end(), [&](const Block &block) {
        return block.stored && block.stored->profile == profile;
    });
    if (found == blocks.end())
        fail(error_number::invalid_call,
             QStringLiteral("The mail profile '%1' is no longer in the file as it was read")
                 .arg(profile.name));
    return &*found;
}

void refuse_bad_name(const Blocks &blocks, const MailProfile &profile, const Block *own)
{
    if (profile.name.isEmpty())
        fail(error_number::invalid_call, QStringLiteral("A mail profile needs a name"));
    for (const Block &block : blocks) {
        if (&block != own && block.stored &&
            is_same_profile(block.stored->profile.name, profile.name))
            fail(error_number::invalid_call,
                 QStringLiteral("There is already a mail profile named '%1'")
                     .arg(block.stored->profile.name));
    }
}

// A person's own comments stay with the profile.
QStringList lines_for(const MailProfile &profile, const Block *replaced)
{
    QStringList lines = QStringList{heading} + profile_lines(profile);
    if (replaced != nullptr)
        std::copy_if(replaced->lines.begin(), replaced->lines.end(), std::back_inserter(lines),
                     is_comment);
    return lines;
}

void write_blocks(const QString &path, const Blocks &blocks)
{
    QStringList lines;
    for (const Block &block : blocks)
        lines += block.lines;
    write_settings_file(path, lines);
}
} // namespace

StoredProfiles ProfileFile::load() const
{
    StoredProfiles all;
    for (const Block &block : read_blocks(path_)) {
        if (block.stored)
            all.profiles.push_back(*block.stored);
        else
            all.damages += stray_lines(block);
    }
    return all;
}

std::optional<StoredProfile> ProfileFile::find(const QString &name) const
{
    const StoredProfiles all = load();
    const auto found =
        std::find_if(all.profiles.begin(), all.profiles.end(), [&](const StoredProfile &stored) {
            return is_same_profile(stored.profile.name, name);
        });
    return found == all.profiles.end() ? std::nullopt : std::optional(*found);
}

void ProfileFile::save(const MailProfile &profile, const std::optional<MailProfile> &instead_of)
{
    if (const QString unfit = unfit_in(profile); !unfit.isEmpty())
        fail(error_number::invalid_call,
             QStringLiteral("The mail profile cannot be saved: %1").arg(unfit));
    Blocks blocks = read_blocks(path_);
    Block *place = instead_of ? find_block(blocks, *instead_of) : nullptr;
    refuse_bad_name(blocks, profile, place);
    const QStringList lines = lines_for(profile, place);
    if (place == nullptr)
        blocks.push_back({0, lines, {}});
    else
        place->lines = lines;
    write_blocks(path_, blocks);
}

void ProfileFile::remove(const MailProfile &profile)
{
    Blocks blocks = read_blocks(path_);
    find_block(blocks, profile)->lines.clear();
    write_blocks(path_, blocks);
}
