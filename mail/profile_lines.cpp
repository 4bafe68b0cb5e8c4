#include "mail/profile_lines.h"

#include "platform/settings_file.h"

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace
{
using Text = QString;

/// One key of the file. `write` gives a profile's value; `read` takes one over and returns what is
/// wrong with it, empty for nothing.
struct Key
{
    Text name;
    std::function<Text(const MailProfile &)> write;
    std::function<Text(MailProfile &, const Text &)> read;
};
using Keys = std::vector<Key>;

template <typename Kind>
using Words = std::vector<std::pair<Kind, QLatin1String>>;

const Words<InboxKind> inbox_words = {{InboxKind::Local, QLatin1String("local")},
                                      {InboxKind::Maildir, QLatin1String("maildir")},
                                      {InboxKind::Mbox, QLatin1String("mbox")},
                                      {InboxKind::Imap, QLatin1String("imap")},
                                      {InboxKind::Pop3, QLatin1String("pop3")}};
const Words<OutgoingKind> outgoing_words = {{OutgoingKind::Sendmail, QLatin1String("sendmail")},
                                            {OutgoingKind::Smtp, QLatin1String("smtp")}};
const Words<LineSecurity> security_words = {{LineSecurity::Tls, QLatin1String("tls")},
                                            {LineSecurity::StartTls, QLatin1String("starttls")},
                                            {LineSecurity::Plain, QLatin1String("plain")}};
const Words<SignInKind> sign_in_words = {{SignInKind::None, QLatin1String("none")},
                                         {SignInKind::Password, QLatin1String("password")},
                                         {SignInKind::Token, QLatin1String("token")}};

bool holds_control_character(const Text &value)
{
    return std::any_of(value.begin(), value.end(),
                       [](QChar c) { return c.category() == QChar::Other_Control; });
}

/// `field` gives a profile's own text by reference, of a constant profile too.
template <typename Field>
Key text_key(const Text &name, Field field)
{
    return {name, [field](const MailProfile &profile) { return field(profile); },
            [field](MailProfile &profile, const Text &value) {
                if (holds_control_character(value))
                    return QStringLiteral("holds a control character");
                field(profile) = value;
                return Text();
            }};
}

// A profile may have any name that can be typed or stored as a setting.
Key name_key()
{
    return {QStringLiteral("name"), [](const MailProfile &profile) { return profile.name; },
            [](MailProfile &profile, const Text &value) {
                profile.name = value;
                return Text();
            }};
}

template <typename Kind, typename Field>
Key word_key(const Text &name, const Words<Kind> &words, Field field)
{
    return {name,
            [field, &words](const MailProfile &profile) {
                const auto found = std::find_if(words.begin(), words.end(), [&](const auto &word) {
                    return word.first == field(profile);
                });
                return found == words.end() ? Text() : Text(found->second);
            },
            [field, &words](MailProfile &profile, const Text &value) {
                const auto found = std::find_if(words.begin(), words.end(), [&](const auto &word) {
                    return value.compare(word.second, Qt::CaseInsensitive) == 0;
                });
                if (found == words.end())
                    return QStringLiteral("cannot be '%1'").arg(value.left(40));
                field(profile) = found->first;
                return Text();
            }};
}

template <typename Field>
Key port_key(const Text &name, Field field)
{
    return {name, [field](const MailProfile &profile) { return Text::number(field(profile)); },
            [field](MailProfile &profile, const Text &value) {
                bool is_port = false;
                const quint16 port = value.toUShort(&is_port);
                if (!is_port)
                    return QStringLiteral("is no number from 0 to 65535");
                field(profile) = port;
                return Text();
            }};
}

template <typename Server>
void add_server_keys(Keys &keys, const Text &prefix, Server server)
{
    const auto of = [&](const char *name) { return prefix + QLatin1String(name); };
    keys.push_back(text_key(
        of("host"), [=](auto &p) -> auto & { return server(p).host; }));
    keys.push_back(port_key(
        of("port"), [=](auto &p) -> auto & { return server(p).port; }));
    keys.push_back(word_key(
        of("security"), security_words, [=](auto &p) -> auto & { return server(p).security; }));
    keys.push_back(word_key(
        of("sign in"), sign_in_words, [=](auto &p) -> auto & { return server(p).sign_in; }));
    keys.push_back(text_key(
        of("user"), [=](auto &p) -> auto & { return server(p).user; }));
    keys.push_back(text_key(
        of("token command"), [=](auto &p) -> auto & { return server(p).token_command; }));
}

// What the file can say of a profile, in the order in which it is written.
Keys make_keys()
{
    Keys keys = {
        name_key(),
        text_key(
            "sender name", [](auto &p) -> auto & { return p.sender_name; }),
        text_key(
            "sender address", [](auto &p) -> auto & { return p.sender_address; }),
        word_key(
            "inbox", inbox_words, [](auto &p) -> auto & { return p.inbox; }),
        text_key(
            "inbox path", [](auto &p) -> auto & { return p.inbox_path; }),
    };
    add_server_keys(
        keys, "inbox ", [](auto &p) -> auto & { return p.inbox_server; });
    keys.push_back(word_key(
        "outgoing", outgoing_words, [](auto &p) -> auto & { return p.outgoing; }));
    keys.push_back(text_key(
        "sendmail program", [](auto &p) -> auto & { return p.sendmail_program; }));
    add_server_keys(
        keys, "outgoing ", [](auto &p) -> auto & { return p.outgoing_server; });
    return keys;
}

Text wrong_with_value(const Key &key, const Text &value, MailProfile &profile)
{
    constexpr qsizetype longest_value = 4096;
    const Text wrong = value.size() > longest_value
                           ? QStringLiteral("is longer than %1 characters").arg(longest_value)
                           : key.read(profile, value);
    return wrong.isEmpty() ? Text() : QStringLiteral("'%1' %2").arg(key.name, wrong);
}

Text wrong_with_line(const Keys &keys, const SettingLine &line, MailProfile &profile)
{
    if (line.key.isEmpty())
        return QStringLiteral("this is no 'key=value'");
    const Text key_name = line.key.trimmed();
    const auto key = std::find_if(keys.begin(), keys.end(), [&](const Key &known) {
        return known.name.compare(key_name, Qt::CaseInsensitive) == 0;
    });
    if (key == keys.end())
        return QStringLiteral("'%1' is no part of a mail profile").arg(key_name.left(40));
    return wrong_with_value(*key, line.value, profile);
}
} // namespace

QStringList profile_lines(const MailProfile &profile)
{
    QStringList lines;
    for (const Key &key : make_keys()) {
        const Text value = key.write(profile);
        if (value != key.write(MailProfile()))
            lines += format_setting({key.name, value, {}});
    }
    return lines;
}

QString unfit_in(const MailProfile &profile)
{
    MailProfile read_back;
    for (const Key &key : make_keys()) {
        if (const Text wrong = wrong_with_value(key, key.write(profile), read_back);
            !wrong.isEmpty())
            return wrong;
    }
    return {};
}

StoredProfile read_profile(const QStringList &lines, qsizetype first_number)
{
    const Keys keys = make_keys();
    StoredProfile stored;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (is_comment(lines[i]))
            continue;
        const Text wrong = wrong_with_line(keys, parse_setting(lines[i]), stored.profile);
        if (!wrong.isEmpty())
            stored.damages += QStringLiteral("line %1: %2").arg(first_number + i).arg(wrong);
    }
    if (stored.profile.name.isEmpty())
        stored.damages += QStringLiteral("line %1: the profile has no name").arg(first_number);
    return stored;
}

bool is_comment(const QString &line)
{
    const Text text = line.trimmed();
    return text.isEmpty() || text.startsWith(u'#') || text.startsWith(u';');
}
