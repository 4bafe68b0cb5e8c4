#include "platform/text_box.h"

#include <QTest>
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

TEST(TextBox, EveryEnterKeyBreaksTheLine)
{
    TextBox box;
    QTest::keyClicks(&box, "a");
    QTest::keyClick(&box, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(&box, "b");
    QTest::keyClick(&box, Qt::Key_Enter, Qt::ShiftModifier | Qt::KeypadModifier);
    QTest::keyClicks(&box, "c");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.text(), "a\r\nb\r\nc\r\n");
    box.setReadOnly(true);
    QTest::keyClick(&box, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(box.text(), "a\r\nb\r\nc\r\n");
}

TEST(TextBox, ALineSeparatorOfAFileStays)
{
    TextBox box;
    box.set_text(QStringLiteral("a\u2028b"));
    QTest::keyClicks(&box, "x");
    EXPECT_EQ(box.text(), QStringLiteral("xa\u2028b"));
}
} // namespace
