#include "mail/charset.h"

#include <gtest/gtest.h>

namespace
{
struct Case
{
    QByteArray label;
    QByteArray bytes;
    QString text;
};
class Charset : public testing::TestWithParam<Case>
{
};

TEST_P(Charset, DecodesByWhatMailProgramsMeanByTheLabel)
{
    EXPECT_EQ(decode_charset(GetParam().bytes, GetParam().label), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Labels, Charset,
    testing::Values(Case{"utf-8", "\xC3\xA4", u"ä"_qs}, Case{"UTF8", "\xC3\xA4", u"ä"_qs},
                    Case{"utf-8",
                         "a\xE4"
                         "b",
                         u"a\uFFFDb"_qs}, // a bad byte, a replacement
                    Case{"utf-8",
                         "\xEF\xBB\xBF"
                         "a",
                         u"a"_qs},                            // its mark is no text
                    Case{"iso-8859-1", "\x80\xE4", u"€ä"_qs}, // Windows-1252 in truth
                    Case{"windows-1252", "\x93x\x94", u"“x”"_qs},
                    Case{"windows-1252", "\x81",
                         QString(QChar(0x81))}, // a byte without a character
                    Case{"windows-1251", "\xCF\xF0\xE8", u"При"_qs},
                    Case{"windows-1250", "\x9E", u"ž"_qs}, Case{"iso-8859-2", "\xB1", u"ą"_qs},
                    Case{"ISO_8859-5", "\xB0", u"А"_qs}, Case{"iso-8859-9", "\xFD", u"ı"_qs},
                    Case{"iso-8859-15", "\xA4", u"€"_qs}, Case{"koi8-r", "\xF0\xD2\xC9", u"При"_qs},
                    Case{"koi8-u", "\xA4", u"є"_qs}));

INSTANTIATE_TEST_SUITE_P(
    AsianLabels, Charset,
    testing::Values(Case{"gb2312", "\xC4\xE3\xBA\xC3", u"你好"_qs},
                    Case{"gb2312", "\x81\x40", u"丂"_qs}, // GBK under the older label
                    Case{"gbk", "\xC4\xE3", u"你"_qs}, Case{"gb18030", "\xC4\xE3", u"你"_qs},
                    Case{"iso-2022-jp", "\x1B$B$\"\x1B(B.", u"あ."_qs},
                    Case{"shift_jis", "\x82\xA0\x87\x40", u"あ①"_qs}, // code page 932
                    Case{"euc-jp", "\xA4\xA2", u"あ"_qs}, Case{"euc-kr", "\xB0\xA1", u"가"_qs},
                    Case{"ks_c_5601-1987", "\x81\x41", u"갂"_qs}, // code page 949
                    Case{"big5", "\xA7\x41", u"你"_qs}, Case{"utf-7", "+AOQ-", u"ä"_qs}));

INSTANTIATE_TEST_SUITE_P(
    Utf16, Charset,
    testing::Values(Case{"utf-16", QByteArray("\xFE\xFF\x00\xE4", 4), u"ä"_qs},
                    Case{"utf-16", QByteArray("\xFF\xFE\xE4\x00", 4), u"ä"_qs},
                    Case{"utf-16", QByteArray("\x00\x61", 2), u"a"_qs}, // no mark
                    Case{"utf-16", QByteArray("\x61\x00", 2), u"a"_qs},
                    Case{"utf-16le", QByteArray("\xE4\x00\x61", 3), u"ä\uFFFD"_qs}));

INSTANTIATE_TEST_SUITE_P(
    NoUsefulLabel, Charset,
    testing::Values(Case{"", "\xC3\xA4", u"ä"_qs}, Case{"", "\xE4", u"ä"_qs},
                    Case{"us-ascii", "\xC3\xA4", u"ä"_qs}, Case{"us-ascii", "\xE4", u"ä"_qs},
                    Case{"x-unknown", "\x80", u"€"_qs}, Case{"UTF-8//TRANSLIT", "\xE4", u"ä"_qs},
                    Case{"IBM1390", "\xE4", u"ä"_qs}, // known to iconv, not to mail
                    Case{QByteArray(5000, 'a'), "x", u"x"_qs}));

TEST(CharsetBytes, KeepsNulBytes)
{
    EXPECT_EQ(decode_charset(QByteArrayView("a\0b", 3), "koi8-r"), QString::fromLatin1("a\0b", 3));
    EXPECT_EQ(decode_charset(QByteArrayView("a\0b", 3), ""), QString::fromLatin1("a\0b", 3));
}

TEST(CharsetBytes, RarerLabelsHaveTheirConverterToo)
{
    EXPECT_EQ(decode_charset("\xE1", "iso-8859-7"), u"α"_qs);
    EXPECT_EQ(decode_charset("\xA1", "tis-620"), u"ก"_qs);
    EXPECT_EQ(decode_charset("\x8E", "macintosh"), u"é"_qs);
    EXPECT_EQ(decode_charset("\x8E", "cp866"), u"О"_qs);
    EXPECT_EQ(decode_charset("\xE0", "windows-1255"), u"א"_qs);
}
} // namespace
