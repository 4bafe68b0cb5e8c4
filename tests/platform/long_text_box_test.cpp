// A long text on the screen, a page at a time.
#include "tests/platform/long_box_room.h"

namespace
{
TEST_F(LongBox, ShowsAShortTextAsAnyTextBoxDoes)
{
    box.set_text("a\r\nb\nc\rd");
    EXPECT_EQ(box.text(), "a\r\nb\r\nc\r\nd");
    EXPECT_FALSE(box.is_paged());
    EXPECT_EQ(box.toPlainText(), "a\nb\nc\nd");
    box.append_text("e");
    EXPECT_EQ(box.text(), "a\r\nb\r\nc\r\nde");
    press(Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&box, "f");
    EXPECT_EQ(box.text(), "a\r\nb\r\nc\r\ndef");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(box.text(), "a\r\nb\r\nc\r\nde");
    box.set_text("");
    EXPECT_EQ(box.text(), "");
}

TEST_F(LongBox, NoTextGainsALineAndEveryOtherCharacterIsKept)
{
    const QString odd = QString::fromUtf16(u"\u00A0 \u00AD\t\u200B\u2028\U0001F600") + QChar(0);
    box.set_text(QString::fromUtf16(u"a\u2029b\uFDD0c\uFDD1d") + odd);
    EXPECT_EQ(box.text(), "a b c d" + odd);
    QTest::keyClicks(&box, "x"); // what has been typed into is read back from the document
    EXPECT_EQ(box.text(), "xa b c d" + odd);
}

TEST_F(LongBox, KeepsAPageInItsDocumentWhateverTheTextsShape)
{
    const QStringList shapes = {QString(3'000'000, 'x'),
                                QString(3'000'000, ','),
                                QString(3'000'000, ' '),
                                numbered_lines(200'000),
                                QString::fromUtf16(u"\U0001F600").repeated(1'000'000),
                                QStringLiteral("\r\n").repeated(1'000'000)};
    for (const QString &shape : shapes) {
        box.set_text(shape);
        QApplication::processEvents();
        EXPECT_TRUE(box.is_paged());
        EXPECT_LT(box.document()->characterCount(), bounded);
        EXPECT_TRUE(box.text() == shape);
    }
    box.set_text("short");
    EXPECT_FALSE(box.is_paged());
    EXPECT_EQ(box.text(), "short");
}

TEST_F(LongBox, ShowsEveryLineAsThePageKeyIsHeld)
{
    constexpr int count = 40'000;
    box.set_text(numbered_lines(count));
    ASSERT_TRUE(box.is_paged());
    int shown = -1; // the last line that was on the screen
    while (shown < count - 1) {
        const int top = top_line().section(' ', 1).toInt();
        ASSERT_LE(top, shown + 1);
        const QString bottom =
            bottom_line().isEmpty() ? QStringLiteral("line 39999") : bottom_line();
        ASSERT_GT(bottom.section(' ', 1).toInt(), shown);
        shown = bottom.section(' ', 1).toInt();
        press(Qt::Key_PageDown);
    }
    EXPECT_EQ(bar().value(), bar().maximum());
    press(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(top_line(), "line 0");
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(LongBox, FollowsTheWheelAcrossPages)
{
    box.set_text(numbered_lines(40'000));
    int last = -1;
    for (int i = 0; i < 4'000; ++i) {
        wheel(1);
        const int top = top_line().section(' ', 1).toInt();
        ASSERT_GE(top, last);
        ASSERT_LE(top, last + 10);
        last = top;
    }
    EXPECT_GT(last, 10'000);
    EXPECT_LT(box.document()->characterCount(), bounded);
}

TEST_F(LongBox, FollowsItsScrollBar)
{
    box.set_text(numbered_lines(100'000));
    drag_bar_to(bar().maximum() / 2);
    EXPECT_NEAR(top_line().section(' ', 1).toInt(), 50'000, 5'000);
    drag_bar_to(bar().maximum());
    EXPECT_EQ(bottom_line(), ""); // behind the last line's end
    EXPECT_TRUE(box.toPlainText().endsWith("line 99999\n"));
    EXPECT_EQ(bar().value(), bar().maximum());
    drag_bar_to(0);
    EXPECT_EQ(top_line(), "line 0");
    const int before = bar().value();
    bar().triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(top_line(), "line 1");
    EXPECT_GT(bar().value(), before);
    bar().triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_GT(top_line().section(' ', 1).toInt(), 5);
    bar().triggerAction(QAbstractSlider::SliderToMinimum);
    EXPECT_EQ(top_line(), "line 0");
}

TEST_F(LongBox, ShowsTheMiddleOfOneLongLine)
{
    QString text(5'000'000, 'x');
    text.replace(2'500'000, 6, "middle");
    box.set_text(text);
    drag_bar_to(bar().maximum() / 2);
    EXPECT_TRUE(box.toPlainText().contains("middle"));
    EXPECT_LT(box.document()->characterCount(), bounded);
    drag_bar_to(bar().maximum());
    EXPECT_EQ(bar().value(), bar().maximum());
    EXPECT_TRUE(box.text() == text);
}

TEST_F(LongBox, AppendsToALongText)
{
    const QString text = numbered_lines(50'000);
    box.set_text(text);
    wheel(20);
    const QString top = top_line();
    box.append_text("more");
    EXPECT_TRUE(box.text() == text + "more");
    EXPECT_EQ(top_line(), top);
}

TEST_F(LongBox, KeepsItsPlaceWhenItsSizeChanges)
{
    box.set_text(numbered_lines(100'000));
    drag_bar_to(bar().maximum() / 2);
    const QString top = top_line();
    box.resize(500, 400);
    QApplication::processEvents();
    EXPECT_EQ(top_line(), top);
    EXPECT_EQ(bar().geometry().right(), box.contentsRect().right());
    EXPECT_FALSE(box.viewport()->geometry().intersects(bar().geometry()));
}

// The selection lies at the beginning, the page at the end.
// One letter with all marks of a page takes a text engine time by the square of them.
TEST_F(LongBox, ShowsLittleOfALetterWithThousandsOfMarks)
{
    constexpr int bounded_marks = 20'000;
    const QStringList hostile = {
        "a" + QString(200'000, QChar(0x0301)),
        QString::fromUtf16(u"\u0301\u0316").repeated(50'000),
        QString(120'000, 'x') + QString(3'000, QChar(0x05B0)),
        "a" + QString::fromUtf16(u"\U0001D165").repeated(100'000),
    };
    for (const QString &text : hostile) {
        box.set_text(text);
        press(Qt::Key_End, Qt::ControlModifier);
        EXPECT_LT(box.document()->characterCount(), bounded_marks);
        EXPECT_TRUE(box.is_paged());
        EXPECT_TRUE(box.toPlainText().endsWith(text.right(100)));
        box.resize(box.width() + 10, box.height());
        QApplication::processEvents();
        QTest::keyClicks(&box, ",");
        EXPECT_TRUE(box.text() == text + ",");
    }
    box.set_text(QString("e\u0301\u0316").repeated(30'000)); // as a language may have them
    EXPECT_FALSE(box.is_paged());
}

TEST_F(LongBox, SharesATextWithAnotherBoxButNoChangesOfIt)
{
    LongTextBox other;
    other.set_text(numbered_lines(50'000));
    QTest::keyClicks(&other, "typed ");
    box.share_text(other);
    other.set_text("changed");
    EXPECT_TRUE(box.text() == "typed " + numbered_lines(50'000));
    QTest::keyClicks(&box, "and ");
    EXPECT_TRUE(box.text() == "and typed " + numbered_lines(50'000));
}

TEST_F(LongBox, HoldsATextBeforeItIsShown)
{
    LongTextBox hidden;
    const QString text = numbered_lines(50'000);
    hidden.set_text(text);
    EXPECT_TRUE(hidden.text() == text);
    EXPECT_TRUE(hidden.is_paged());
}
} // namespace
