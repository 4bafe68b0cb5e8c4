#include "mail/recipient.h"

#include "platform/runtime_error.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace
{
// RFC 5321 4.5.3.1: what every server must take, and no more.
constexpr qsizetype longest_local_part = 64;
constexpr qsizetype longest_address = 254;
constexpr qsizetype longest_label = 63;
constexpr qsizetype longest_shown = 300;

bool is_ascii(const QString &text)
{
    return std::ranges::all_of(text, [](QChar c) { return c.unicode() < 0x80; });
}

// Characters that cannot be seen, or that break or turn the line: none of them is part of an
// address, and each would make it look like another one.
bool is_hidden(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

bool has_hidden(const QString &text)
{
    return !text.isValidUtf16() ||
           std::ranges::any_of(text.toUcs4(), [](uint c) { return is_hidden(c); });
}

bool is_letter_beyond_ascii(char32_t c)
{
    return c >= 0x80 && !QChar::isSpace(c) && QChar::category(c) != QChar::Other_NotAssigned &&
           QChar::category(c) != QChar::Other_PrivateUse;
}

bool is_atom_character(char32_t c)
{
    if (c >= 0x80)
        return is_letter_beyond_ascii(c);
    return (c >= U'0' && c <= U'9') || (c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z') ||
           QLatin1String("!#$%&'*+-/=?^_`{|}~").contains(QChar(char16_t(c)));
}

bool is_dot_string(const QString &text)
{
    const QStringList atoms = text.split(u'.');
    return std::ranges::all_of(atoms, [](const QString &atom) {
        return !atom.isEmpty() && std::ranges::all_of(atom.toUcs4(), is_atom_character);
    });
}

bool is_quoted_string(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral(R"(\A"(?:[^"\\\x00-\x1f\x7f]|\\[\x20-\x7e])*"\z)"));
    return form.match(text).hasMatch();
}

bool is_local_part(const QString &text)
{
    return text.toUtf8().size() <= longest_local_part &&
           (is_dot_string(text) || is_quoted_string(text));
}

bool is_address_literal(const QString &text)
{
    static const QString ip6 = QStringLiteral("IPv6:");
    if (!text.startsWith(u'[') || !text.endsWith(u']'))
        return false;
    const QString inside = text.mid(1, text.size() - 2);
    QHostAddress address;
    if (inside.startsWith(ip6, Qt::CaseInsensitive))
        return address.setAddress(inside.mid(ip6.size())) && !inside.contains(u'%') &&
               address.protocol() == QAbstractSocket::IPv6Protocol;
    static const QRegularExpression ip4(QStringLiteral(R"(\A\d{1,3}(\.\d{1,3}){3}\z)"));
    return ip4.match(inside).hasMatch() && address.setAddress(inside);
}

bool is_host_name(const QString &text)
{
    static const QRegularExpression label(
        QStringLiteral(R"(\A[A-Za-z0-9](?:[A-Za-z0-9-]*[A-Za-z0-9])?\z)"));
    const QStringList labels = text.split(u'.');
    return std::ranges::all_of(labels, [](const QString &each) {
        return each.size() <= longest_label && label.match(each).hasMatch();
    });
}

// In ASCII; empty when the text is no domain.
QString ascii_domain(const QString &text)
{
    if (is_address_literal(text))
        return text;
    const QString ascii = is_ascii(text) ? text : QString::fromLatin1(QUrl::toAce(text));
    return is_host_name(ascii) ? ascii : QString();
}

// Where the local part ends: its "@" may stand in quotes, the domain has none.
QString resolve_mailbox(const QString &mailbox)
{
    const qsizetype at = mailbox.lastIndexOf(u'@');
    const QString local_part = mailbox.left(std::max<qsizetype>(at, 0));
    const QString domain = at < 0 ? QString() : ascii_domain(mailbox.mid(at + 1));
    QString address = local_part + u'@' + domain;
    const bool is_valid = at > 0 && !domain.isEmpty() && is_local_part(local_part) &&
                          address.toUtf8().size() <= longest_address;
    return is_valid ? address : QString();
}

// What stands in the angle brackets at the end; without them, all of it.
QString without_name(const QString &text)
{
    const qsizetype open = text.lastIndexOf(u'<');
    return open >= 0 && text.endsWith(u'>') ? text.mid(open + 1, text.size() - open - 2) : text;
}

[[noreturn]] void refuse(const QString &recipient, const QString &why)
{
    throw RuntimeError(error_number::mail_failure,
                       QStringLiteral("The recipient \"%1\" cannot be used: %2 Nothing was sent.")
                           .arg(harmless_text(recipient), why));
}

QString escaped(char32_t c)
{
    switch (c) {
    case U'\n':
        return QStringLiteral("\\n");
    case U'\r':
        return QStringLiteral("\\r");
    case U'\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u%1").arg(QString::number(c, 16).toUpper(), 4, u'0');
    }
}
} // namespace

std::optional<QString> resolve_recipient(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    if (has_hidden(trimmed))
        refuse(trimmed, QStringLiteral("it holds a line break or another control character."));
    const QString address = resolve_mailbox(without_name(trimmed));
    if (address.isEmpty())
        refuse(trimmed, QStringLiteral("it is not an e-mail address."));
    return address;
}

bool needs_utf8(const QString &address)
{
    return !is_ascii(address);
}

QString domain_of(const QString &address)
{
    return address.mid(address.lastIndexOf(u'@') + 1);
}

QString harmless_text(const QString &text)
{
    QString shown;
    const QList<uint> characters = text.toUcs4();
    for (const uint c : characters) {
        if (shown.size() >= longest_shown)
            return shown + u'…';
        shown += is_hidden(c) ? escaped(c)
                              : QString::fromUcs4(reinterpret_cast<const char32_t *>(&c), 1);
    }
    return shown;
}
