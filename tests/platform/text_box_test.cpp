#include "platform/text_box.h"

#include <gtest/gtest.h>

namespace
{
TEST(TextBox, HandsOverTextWithCrLf)
{
    TextBox box;
    box.set_text("a\r\nb\nc\rd");
    EXPECT_EQ(box.text(), "a\r\nb\r\nc\r\nd");
    box.set_text("");
    EXPECT_EQ(box.text(), "");
}

TEST(TextBox, AppendsAtTheEnd)
{
    TextBox box;
    box.append_text("\r\nann@example.org");
    box.append_text("\r\nbob@example.org");
    EXPECT_EQ(box.text(), "\r\nann@example.org\r\nbob@example.org");
}

TEST(TextBox, NoTextGainsALine)
{
    const QString hidden = QString::fromUtf16(u"a\u2029b\uFDD0c\uFDD1d");
    TextBox box;
    box.set_text(hidden);
    box.append_text(hidden);
    EXPECT_EQ(box.text(), "a b c da b c d");
}

TEST(TextBox, KeepsEveryOtherCharacter)
{
    const QString odd =
        QString::fromUtf16(u"\u00A0 \u00AD\t\u200B\U0001F600") + QChar(0) + QChar(1);
    TextBox box;
    box.set_text(odd);
    EXPECT_EQ(box.text(), odd);
}
} // namespace
