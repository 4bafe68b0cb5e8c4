#include "platform/long_text.h"
#include "platform/text_page.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
TEST(PageAround, IsTheWholeOfAShortText)
{
    EXPECT_EQ(page_around(PlainText({}), 0, 10), (TextPage{0, 0}));
    EXPECT_EQ(page_around(PlainText(QString(20, 'x')), 20, 10), (TextPage{0, 20}));
}

TEST(PageAround, ReachesToEitherSide)
{
    const QString text(100, 'x');
    EXPECT_EQ(page_around(PlainText(text), 50, 10), (TextPage{40, 60}));
    EXPECT_EQ(page_around(PlainText(text), 0, 10), (TextPage{0, 20}));
    EXPECT_EQ(page_around(PlainText(text), 100, 10), (TextPage{80, 100}));
}

TEST(PageAround, BeginsBehindALineBreakNearItsStart)
{
    QString text(100, 'x');
    text[42] = '\n';
    EXPECT_EQ(page_around(PlainText(text), 50, 10), (TextPage{43, 60}));
    EXPECT_EQ(page_around(PlainText(text), 53, 10), (TextPage{43, 63})); // there already
    EXPECT_EQ(page_around(PlainText(text), 47, 10), (TextPage{37, 57})); // too far off
}

TEST(PageAround, PartsNoSurrogatePair)
{
    QString text;
    for (int i = 0; i < 50; ++i)
        text += QString::fromUtf16(u"\U0001F600");
    EXPECT_EQ(page_around(PlainText(text), 51, 10), (TextPage{40, 60}));
    EXPECT_EQ(page_around(PlainText(text), 50, 10), (TextPage{40, 60}));
}

TEST(LongCluster, IsALetterWithHundredsOfMarks)
{
    const QString mark(QChar(0x0301));
    EXPECT_FALSE(has_long_cluster(""));
    EXPECT_FALSE(has_long_cluster(QString(10'000, 'x')));
    EXPECT_FALSE(has_long_cluster("a" + mark.repeated(512)));
    EXPECT_TRUE(has_long_cluster("a" + mark.repeated(513)));
    EXPECT_TRUE(has_long_cluster("ab" + mark.repeated(513) + "c"));
    EXPECT_FALSE(has_long_cluster(("a" + mark.repeated(500)).repeated(10)));
    EXPECT_TRUE(has_long_cluster(QString::fromUtf16(u"\U0001D165").repeated(513)));
    EXPECT_FALSE(has_long_cluster(QString::fromUtf16(u"\U0001F600").repeated(5'000)));
}

TEST(DocumentText, HasOneCharacterForEveryLineBreak)
{
    EXPECT_EQ(document_text("a\r\nb\nc\rd\r\r\n\n"), "a\nb\nc\nd\n\n\n");
    EXPECT_EQ(document_text("\r"), "\n");
    EXPECT_EQ(document_text(""), "");
}

TEST(DocumentText, HasNoHiddenBreaksAndKeepsEveryOtherCharacter)
{
    EXPECT_EQ(document_text(QString::fromUtf16(u"a\u2029b\uFDD0c\uFDD1d")), "a b c d");
    const QString odd = QString::fromUtf16(u"\u00A0\u2028\uFFFC\U0001F600\t") + QChar(0);
    EXPECT_EQ(document_text(odd), odd);
}

TEST(DocumentText, SharesATextThatNeedsNoChange)
{
    const QString text = "a\nb";
    EXPECT_EQ(document_text(text).constData(), text.constData());
}

TEST(DocumentText, LeavesTheGivenTextAlone)
{
    const QString text = "a\r\nb";
    EXPECT_EQ(document_text(text), "a\nb");
    EXPECT_EQ(text, "a\r\nb");
}
} // namespace
