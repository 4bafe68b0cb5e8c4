#include "mail/transfer_decoding.h"

#include <gtest/gtest.h>

namespace
{
TEST(Base64, GoesOnBehindPadding)
{
    EXPECT_EQ(decode_base64("SGVsbG8="), "Hello");
    EXPECT_EQ(decode_base64("SGVsbG8=IHdvcmxk"), "Hello world");
    EXPECT_EQ(decode_base64("SGVsbG8gdw==b3JsZA=="), "Hello world");
}

TEST(Base64, SkipsWhatIsOutsideTheAlphabet)
{
    EXPECT_EQ(decode_base64("SG Vs\r\nbG8\x80*"), "Hello");
    EXPECT_EQ(decode_base64("SGVsbG8"), "Hello"); // padding forgotten
    EXPECT_EQ(decode_base64("S"), "");
    EXPECT_EQ(decode_base64(""), "");
    EXPECT_EQ(decode_base64("AABB"), QByteArray("\0\0A", 3));
}

TEST(QuotedPrintable, DecodesBytesAndJoinsLines)
{
    EXPECT_EQ(decode_quoted_printable("a=3D=c3=A4"), "a=\xC3\xA4");
    EXPECT_EQ(decode_quoted_printable("one=\r\n two=\nthree= \t\nfour"), "one twothreefour");
    EXPECT_EQ(decode_quoted_printable("blanks  \t\r\nend \n"), "blanks\r\nend\n");
}

TEST(QuotedPrintable, KeepsWhatIsNoEscape)
{
    EXPECT_EQ(decode_quoted_printable("a=b = c =G1 =4"), "a=b = c =G1 =4");
    EXPECT_EQ(decode_quoted_printable("end="), "end=");
    EXPECT_EQ(decode_quoted_printable("a_b"), "a_b");
    EXPECT_EQ(decode_q("a_b=5F"), "a b_");
}

TEST(Uuencode, DecodesLinesUpToTheEnd)
{
    EXPECT_EQ(decode_uuencode("begin 644 a.txt\n%2&5L;&\\\n`\nend\nmore\n"), "Hello");
    EXPECT_EQ(decode_uuencode("M2&5L\n"), "Hel"); // shorter than its length says
}
} // namespace
