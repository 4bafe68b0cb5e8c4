#include "mail/charset.h"

#include "platform/text_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>
#include <string_view>

namespace
{
struct Charset
{
    std::string_view label; // lower case, letters and digits only
    const char *converter;  // iconv's name, or one of the three below
};

constexpr const char *unlabelled = "";
constexpr const char *utf_8 = "UTF-8";
constexpr const char *windows_1252 = "CP1252";
constexpr const char *utf_16 = "UTF-16";

// Only these names ever reach iconv: a message must not choose among its hundreds of rare modules.
constexpr std::array charsets = std::to_array<Charset>({
    {"ansix341968", unlabelled},
    {"ascii", unlabelled},
    {"big5", "BIG5-HKSCS"},
    {"big5hkscs", "BIG5-HKSCS"},
    {"cp1250", "CP1250"},
    {"cp1251", "CP1251"},
    {"cp1252", windows_1252},
    {"cp1253", "CP1253"},
    {"cp1254", "CP1254"},
    {"cp1255", "CP1255"},
    {"cp1256", "CP1256"},
    {"cp1257", "CP1257"},
    {"cp1258", "CP1258"},
    {"cp437", "CP437"},
    {"cp850", "CP850"},
    {"cp852", "CP852"},
    {"cp866", "CP866"},
    {"cp874", "CP874"},
    {"cp932", "CP932"},
    {"cp936", "GB18030"},
    {"cp949", "CP949"},
    {"cp950", "BIG5-HKSCS"},
    {"csiso2022jp", "ISO-2022-JP"},
    {"euccn", "GB18030"},
    {"eucjp", "EUC-JP-MS"},
    {"euckr", "CP949"},
    {"euctw", "EUC-TW"},
    {"gb18030", "GB18030"},
    {"gb2312", "GB18030"},
    {"gb231280", "GB18030"},
    {"gbk", "GB18030"},
    {"ibm437", "CP437"},
    {"ibm850", "CP850"},
    {"ibm852", "CP852"},
    {"ibm866", "CP866"},
    {"iso2022jp", "ISO-2022-JP"},
    {"iso2022jp2", "ISO-2022-JP-2"},
    {"iso2022jp3", "ISO-2022-JP-3"},
    {"iso2022kr", "ISO-2022-KR"},
    {"iso88591", windows_1252},
    {"iso885910", "ISO-8859-10"},
    {"iso885911", "CP874"},
    {"iso885913", "ISO-8859-13"},
    {"iso885914", "ISO-8859-14"},
    {"iso885915", "ISO-8859-15"},
    {"iso885916", "ISO-8859-16"},
    {"iso88592", "ISO-8859-2"},
    {"iso88593", "ISO-8859-3"},
    {"iso88594", "ISO-8859-4"},
    {"iso88595", "ISO-8859-5"},
    {"iso88596", "ISO-8859-6"},
    {"iso88597", "ISO-8859-7"},
    {"iso88598", "ISO-8859-8"},
    {"iso88598i", "ISO-8859-8"},
    {"iso88599", "CP1254"},
    {"koi8r", "KOI8-R"},
    {"koi8u", "KOI8-U"},
    {"ksc5601", "CP949"},
    {"ksc56011987", "CP949"},
    {"ksc56011989", "CP949"},
    {"latin1", windows_1252},
    {"latin2", "ISO-8859-2"},
    {"latin9", "ISO-8859-15"},
    {"macintosh", "MACINTOSH"},
    {"shiftjis", "CP932"},
    {"sjis", "CP932"},
    {"tis620", "CP874"},
    {"unicode11utf7", "UTF-7"},
    {"unicode11utf8", utf_8},
    {"usascii", unlabelled},
    {"utf16", utf_16},
    {"utf16be", "UTF-16BE"},
    {"utf16le", "UTF-16LE"},
    {"utf32", "UTF-32"},
    {"utf7", "UTF-7"},
    {"utf8", utf_8},
    {"windows1250", "CP1250"},
    {"windows1251", "CP1251"},
    {"windows1252", windows_1252},
    {"windows1253", "CP1253"},
    {"windows1254", "CP1254"},
    {"windows1255", "CP1255"},
    {"windows1256", "CP1256"},
    {"windows1257", "CP1257"},
    {"windows1258", "CP1258"},
    {"windows31j", "CP932"},
    {"windows874", "CP874"},
    {"windows932", "CP932"},
    {"windows936", "GB18030"},
    {"windows949", "CP949"},
    {"windows950", "BIG5-HKSCS"},
    {"xgbk", "GB18030"},
    {"xsjis", "CP932"},
});

static_assert(std::ranges::is_sorted(charsets, {}, &Charset::label));

const char *converter_for(QByteArrayView label)
{
    std::array<char, 16> plain{};
    std::size_t length = 0;
    for (const char c : label) {
        const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (!is_letter && (c < '0' || c > '9'))
            continue;
        if (length == plain.size())
            return unlabelled;
        plain[length++] = is_letter ? static_cast<char>(c | 0x20) : c;
    }
    const std::string_view wanted(plain.data(), length);
    const auto *found = std::ranges::lower_bound(charsets, wanted, {}, &Charset::label);
    return found != charsets.end() && found->label == wanted ? found->converter : unlabelled;
}

class Converter
{
public:
    explicit Converter(const char *from) : handle_(iconv_open("UTF-16LE", from)) {}
    ~Converter()
    {
        if (is_open())
            iconv_close(handle_);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    // iconv_open's own word for failure is a pointer of all ones.
    bool is_open() const { return handle_ != iconv_t(-1); } // NOLINT

    QString decode(QByteArrayView bytes)
    {
        QString text;
        text.reserve(bytes.size());
        char *in = const_cast<char *>(bytes.data()); // iconv's signature; it only reads
        auto left = static_cast<std::size_t>(bytes.size());
        while (left > 0 && append(text, &in, &left) != 0)
            skip_bad_byte(text, in, left);
        append(text, nullptr, nullptr);
        return text;
    }

private:
    static constexpr std::size_t unit = sizeof(char16_t);

    // Converts until the input ends or holds something bad. @return 0 or the error.
    int append(QString &text, char **in, std::size_t *left)
    {
        std::array<char16_t, 4096> units; // NOLINT: filled by iconv
        int error = E2BIG;
        while (error == E2BIG) {
            char *out = reinterpret_cast<char *>(units.data());
            std::size_t room = units.size() * unit;
            const bool failed = iconv(handle_, in, left, &out, &room) == std::size_t(-1); // NOLINT
            error = failed ? errno : 0;
            text.append(reinterpret_cast<const QChar *>(units.data()),
                        static_cast<qsizetype>((units.size() * unit - room) / unit));
        }
        return error;
    }

    static void skip_bad_byte(QString &text, char *&in, std::size_t &left)
    {
        text.append(QChar(QChar::ReplacementCharacter));
        ++in;
        --left;
    }

    iconv_t handle_;
};

// Without a mark the high bytes tell: in text of any script most of them are alike, and in Western
// text they are 0.
const char *utf_16_order(QByteArrayView bytes)
{
    if (bytes.startsWith("\xFE\xFF"))
        return "UTF-16BE";
    if (bytes.startsWith("\xFF\xFE"))
        return "UTF-16LE";
    return !bytes.isEmpty() && bytes[0] == '\0' ? "UTF-16BE" : "UTF-16LE";
}

QString decode_with(const char *converter_name, QByteArrayView bytes)
{
    Converter converter(converter_name);
    if (!converter.is_open()) // a system without that module
        return decode_charset(bytes, {});
    QString text = converter.decode(bytes);
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    return text;
}
} // namespace

QString decode_charset(QByteArrayView bytes, QByteArrayView label)
{
    const char *converter = converter_for(label);
    if (converter == utf_8 || (converter == unlabelled && bytes.isValidUtf8()))
        return QString::fromUtf8(bytes);
    if (converter == unlabelled || converter == windows_1252)
        return decode_windows_1252(bytes);
    if (converter == utf_16)
        return decode_with(utf_16_order(bytes), bytes);
    return decode_with(converter, bytes);
}
