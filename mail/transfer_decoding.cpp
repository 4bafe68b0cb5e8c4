#include "mail/transfer_decoding.h"

#include "mail/blank.h"

#include <array>
#include <cstdint>

namespace
{
constexpr int not_in_alphabet = -1;

constexpr std::array<std::int8_t, 256> base64_values = [] {
    std::array<std::int8_t, 256> values{};
    values.fill(not_in_alphabet);
    for (std::int8_t i = 0; i < 26; ++i) {
        values[static_cast<std::size_t>('A' + i)] = i;
        values[static_cast<std::size_t>('a' + i)] = static_cast<std::int8_t>(26 + i);
    }
    for (std::int8_t i = 0; i < 10; ++i)
        values[static_cast<std::size_t>('0' + i)] = static_cast<std::int8_t>(52 + i);
    values['+'] = 62;
    values['/'] = 63;
    return values;
}();

// The digits read so far, at most four, and the bytes that they make.
class Quantum
{
public:
    void add(int value, char *&out)
    {
        bits_ = bits_ << 6U | static_cast<std::uint32_t>(value);
        if (++digits_ == 4)
            flush(out);
    }

    // Two digits hold one byte, three hold two; a single digit holds none.
    void flush(char *&out)
    {
        const std::uint32_t bits = bits_ << 6U * (4U - digits_);
        for (unsigned byte = 0; byte + 1 < digits_; ++byte)
            *out++ = static_cast<char>(bits >> (16U - 8U * byte) & 0xFFU);
        bits_ = 0;
        digits_ = 0;
    }

private:
    std::uint32_t bits_ = 0;
    unsigned digits_ = 0;
};

int hex_value(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const auto lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : not_in_alphabet;
}

// The byte that "=XX" at `at` stands for, or not_in_alphabet.
int escaped_byte(QByteArrayView text, qsizetype at)
{
    if (at + 2 >= text.size())
        return not_in_alphabet;
    const int high = hex_value(text[at + 1]);
    const int low = hex_value(text[at + 2]);
    return high < 0 || low < 0 ? not_in_alphabet : high << 4 | low;
}

bool ends_line(QByteArrayView text, qsizetype at)
{
    return at == text.size() || text[at] == '\n' ||
           (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n');
}

qsizetype behind_blanks(QByteArrayView text, qsizetype at)
{
    while (at < text.size() && is_blank(text[at]))
        ++at;
    return at;
}

// Behind the line break at `at`, when there is one.
qsizetype behind_line_break(QByteArrayView text, qsizetype at)
{
    if (at < text.size() && text[at] == '\r')
        ++at;
    if (at < text.size() && text[at] == '\n')
        ++at;
    return at;
}

// Appends what the "=" at `at` stands for. @return where the text goes on.
qsizetype decode_equals_sign(QByteArrayView text, qsizetype at, QByteArray &out)
{
    const int byte = escaped_byte(text, at);
    if (byte != not_in_alphabet) {
        out.append(static_cast<char>(byte));
        return at + 3;
    }
    const qsizetype end = behind_blanks(text, at + 1);
    if (end < text.size() && ends_line(text, end))
        return behind_line_break(text, end);
    out.append('=');
    return at + 1;
}

// One line's bytes; the length in its first character is not believed beyond the line's end.
void decode_uu_line(QByteArrayView line, QByteArray &out)
{
    qsizetype left = (line[0] - ' ') & 0x3F;
    const auto digit = [line](qsizetype i) {
        return i < line.size() ? static_cast<unsigned>(line[i] - ' ') & 0x3FU : 0U;
    };
    for (qsizetype i = 1; left > 0 && i < line.size(); i += 4) {
        const unsigned bits =
            digit(i) << 18U | digit(i + 1) << 12U | digit(i + 2) << 6U | digit(i + 3);
        for (unsigned byte = 0; byte < 3 && left > 0; ++byte, --left)
            out.append(static_cast<char>(bits >> (16U - 8U * byte) & 0xFFU));
    }
}
} // namespace

QByteArray decode_base64(QByteArrayView encoded)
{
    QByteArray decoded(encoded.size() / 4 * 3 + 3, Qt::Uninitialized);
    char *out = decoded.data();
    Quantum quantum;
    for (const char c : encoded) {
        const std::int8_t value = base64_values[static_cast<unsigned char>(c)];
        if (value != not_in_alphabet)
            quantum.add(value, out);
        else if (c == '=')
            quantum.flush(out);
    }
    quantum.flush(out);
    decoded.truncate(out - decoded.data());
    return decoded;
}

QByteArray decode_quoted_printable(QByteArrayView encoded)
{
    QByteArray decoded;
    decoded.reserve(encoded.size());
    for (qsizetype at = 0; at < encoded.size();) {
        if (encoded[at] == '=') {
            at = decode_equals_sign(encoded, at, decoded);
            continue;
        }
        // All blanks in one step: a line of nothing else is looked at once.
        const qsizetype end = is_blank(encoded[at]) ? behind_blanks(encoded, at) : at + 1;
        if (!is_blank(encoded[at]) || !ends_line(encoded, end))
            decoded.append(encoded.sliced(at, end - at));
        at = end;
    }
    return decoded;
}

QByteArray decode_q(QByteArrayView encoded)
{
    QByteArray decoded;
    decoded.reserve(encoded.size());
    for (qsizetype i = 0; i < encoded.size(); ++i) {
        const int byte = encoded[i] == '=' ? escaped_byte(encoded, i) : not_in_alphabet;
        if (byte != not_in_alphabet)
            i += 2;
        const char plain = encoded[i] == '_' ? ' ' : encoded[i];
        decoded.append(byte != not_in_alphabet ? static_cast<char>(byte) : plain);
    }
    return decoded;
}

QByteArray decode_uuencode(QByteArrayView encoded)
{
    QByteArray decoded;
    for (qsizetype at = 0; at < encoded.size();) {
        qsizetype end = encoded.indexOf('\n', at);
        end = end < 0 ? encoded.size() : end;
        const QByteArrayView line = encoded.sliced(at, end - at).trimmed();
        at = end + 1;
        if (line == "end")
            break;
        if (!line.isEmpty() && !line.startsWith("begin "))
            decode_uu_line(line, decoded);
    }
    return decoded;
}
