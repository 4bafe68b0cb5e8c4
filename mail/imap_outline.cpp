#include "mail/imap_outline.h"

#include "mail/header_fields.h"
#include "mail/mime_parts.h"

#include <QRandomGenerator>

#include <algorithm>
#include <numeric>

namespace
{
constexpr int most_parts = 1'000; // as many as are looked at in a whole message
const QByteArray line_end = "\r\n";
const QByteArray mime = ".MIME";

// A name of a type (RFC 6838 section 4.2).
bool is_type_name(const QByteArray &text)
{
    constexpr qsizetype longest = 127;
    return !text.isEmpty() && text.size() <= longest && std::ranges::all_of(text, [](char c) {
        return c > ' ' && c < 127 && !QByteArrayView("()<>@,;:\\\"/[]?=").contains(c);
    });
}

// Fields without the empty line that ends them, and with a line end behind the last.
QByteArray fields_alone(QByteArray header)
{
    while (header.endsWith('\n') || header.endsWith('\r'))
        header.chop(1);
    return header.isEmpty() ? header : header + line_end;
}

// The fields for which `is_wanted` says so, as they stand.
template <typename IsWanted>
QByteArray some_fields(const QByteArray &header, IsWanted &&is_wanted)
{
    QByteArray kept;
    HeaderFields fields(header);
    while (fields.next()) {
        if (is_wanted(fields))
            kept.append(fields.lines());
    }
    return kept;
}

bool describes_content(const HeaderFields &field)
{
    return field.name().size() > 8 &&
           field.name().first(8).compare("content-", Qt::CaseInsensitive) == 0;
}

// Of ("name" "value" …).
QByteArray parameter(const ImapValue &list, const char *name)
{
    for (std::size_t i = 0; i + 1 < list.items.size(); i += 2) {
        if (list.items[i].text.compare(name, Qt::CaseInsensitive) == 0)
            return list.items[i + 1].text.toLower();
    }
    return {};
}

QByteArray below(const QByteArray &section, std::size_t number)
{
    return (section.isEmpty() ? QByteArray() : section + '.') + QByteArray::number(number);
}

// Where a part's disposition stands: behind its size, what its type adds, and its checksum.
std::size_t place_of_disposition(const QByteArray &type)
{
    if (type == "message/rfc822")
        return 11;
    return type.startsWith("text/") ? 9 : 8;
}
} // namespace

std::optional<ImapOutline> ImapOutline::read(const ImapValue &structure, const QByteArray &header)
{
    const bool is_multipart = !structure.items.empty() && structure.items.front().is_list();
    ImapOutline outline;
    auto root = outline.read_part(structure, is_multipart ? QByteArray() : QByteArray("1"));
    if (!root)
        return std::nullopt;
    // What the server takes for a header without end may be the text.
    if (root->kind == Kind::Leaf && root->size == 0)
        return std::nullopt;
    outline.root_ = std::move(*root);
    outline.header_ = fields_alone(header);
    // So that no content can hold it: nobody knows it before.
    outline.boundary_ = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
    outline.choose_sections();
    return outline;
}

std::optional<ImapOutline::Part> ImapOutline::read_part(const ImapValue &structure,
                                                        const QByteArray &section)
{
    if (!structure.is_list() || structure.items.empty() || ++parts_ > most_parts)
        return std::nullopt;
    if (structure.items.front().is_list())
        return read_multipart(structure, section);
    const Part leaf = read_leaf(structure, section);
    if (leaf.type == "message/rfc822" && structure.items.size() > 8)
        return read_message(structure, section);
    return leaf;
}

std::optional<ImapOutline::Part> ImapOutline::read_multipart(const ImapValue &structure,
                                                             const QByteArray &section)
{
    Part part;
    part.kind = Kind::Multipart;
    part.section = section;
    std::size_t next = 0;
    for (; next < structure.items.size() && structure.items[next].is_list(); ++next) {
        auto inner = read_part(structure.items[next], below(section, next + 1));
        if (!inner)
            return std::nullopt;
        part.parts.push_back(std::move(*inner));
    }
    // No boundary was found: the text is in front of it.
    if (size_of_leaves(part) == 0)
        return std::nullopt;
    const QByteArray subtype = structure.text_at(next).toLower();
    part.type = "multipart/" + (is_type_name(subtype) ? subtype : QByteArray("mixed"));
    part.is_delivery_report =
        next + 1 < structure.items.size() &&
        parameter(structure.items[next + 1], "report-type") == "delivery-status";
    return part;
}

qint64 ImapOutline::size_of_leaves(const Part &part)
{
    return std::accumulate(
        part.parts.begin(), part.parts.end(), part.size,
        [](qint64 size, const Part &inner) { return size + size_of_leaves(inner); });
}

std::optional<ImapOutline::Part> ImapOutline::read_message(const ImapValue &structure,
                                                           const QByteArray &section)
{
    const ImapValue &content = structure.items[8];
    const bool is_multipart = !content.items.empty() && content.items.front().is_list();
    auto inner = read_part(content, is_multipart ? section : below(section, 1));
    if (!inner)
        return std::nullopt;
    Part part = read_leaf(structure, section);
    part.kind = Kind::Message;
    part.parts.push_back(std::move(*inner));
    return part;
}

ImapOutline::Part ImapOutline::read_leaf(const ImapValue &structure, const QByteArray &section)
{
    Part part;
    part.section = section;
    const QByteArray type = structure.text_at(0).toLower();
    const QByteArray subtype = structure.text_at(1).toLower();
    if (is_type_name(type) && is_type_name(subtype))
        part.type = type + '/' + subtype;
    constexpr qint64 largest_size = qint64(1) << 40; // sums of them fit
    part.size = std::clamp<qint64>(structure.text_at(6).toLongLong(), 0, largest_size);
    const std::size_t place = place_of_disposition(part.type);
    if (place < structure.items.size())
        part.is_attachment =
            structure.items[place].text_at(0).compare("attachment", Qt::CaseInsensitive) == 0;
    return part;
}

const ImapOutline::Part *ImapOutline::find(const Part &part, QByteArrayView section)
{
    if (part.kind == Kind::Leaf)
        return part.section == section ? &part : nullptr;
    for (const Part &inner : part.parts) {
        if (const Part *found = find(inner, section))
            return found;
    }
    return nullptr;
}

qint64 ImapOutline::size_of(const QByteArray &section) const
{
    const Part *part = find(root_, section);
    return part == nullptr ? 0 : part->size;
}

// Of a leaf: what decides whether it is the text. An enclosed message that the server does not look
// into must not be looked into here either.
QByteArray ImapOutline::short_header(const Part &part)
{
    const bool is_opaque =
        part.type.startsWith("message/") && !part.type.endsWith("delivery-status");
    return "Content-Type: " + (is_opaque ? QByteArray("application/octet-stream") : part.type) +
           line_end +
           (part.is_attachment ? "Content-Disposition: attachment" + line_end : QByteArray());
}

void ImapOutline::choose_sections()
{
    const MimeParts parts = read_mime_parts(trial());
    QByteArrayList needed = parts.delivery_status;
    needed.prepend(parts.text);
    for (const QByteArray &each : needed) {
        const QByteArray section = each.trimmed();
        if (find(root_, section) == nullptr)
            continue;
        if (!is_single())
            sections_ += section + mime;
        sections_ += section;
    }
}

// The only part of a message keeps its own header but for the encoding, for its reader looks
// closely at odd types.
QByteArray ImapOutline::trial() const
{
    QByteArray message;
    if (is_single())
        message =
            some_fields(header_,
                        [](const HeaderFields &field) {
                            return field.is("Content-Type") || field.is("Content-Disposition");
                        }) +
            line_end + root_.section;
    else
        write(
            root_, [](const Part &part) { return short_header(part) + line_end + part.section; },
            message);
    return message;
}

QByteArray ImapOutline::message(const Content &content) const
{
    if (is_single())
        return header_ + line_end + (sections_.isEmpty() ? QByteArray() : content(root_.section));
    QByteArray message =
        some_fields(header_, [](const HeaderFields &field) { return !describes_content(field); });
    write(
        root_,
        [&](const Part &part) {
            return sections_.contains(part.section) ? fields_alone(content(part.section + mime)) +
                                                          line_end + content(part.section)
                                                    : short_header(part) + line_end;
        },
        message);
    return message;
}

void ImapOutline::write(const Part &part, const Leaf &leaf, QByteArray &message) const
{
    if (part.kind == Kind::Leaf) {
        message += leaf(part);
        return;
    }
    message += "Content-Type: " + part.type;
    if (part.kind == Kind::Message) {
        message += line_end + line_end;
        write(part.parts.front(), leaf, message);
        return;
    }
    const QByteArray boundary = boundary_ + '-' + part.section + '-';
    message += "; boundary=\"" + boundary + '"' +
               (part.is_delivery_report ? "; report-type=delivery-status" : "") + line_end +
               line_end;
    for (const Part &inner : part.parts) {
        message += "--" + boundary + line_end;
        write(inner, leaf, message);
        message += line_end;
    }
    message += "--" + boundary + "--" + line_end;
}
