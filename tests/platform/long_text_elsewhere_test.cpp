// A text that the box reads where it lies.
#include "tests/platform/long_box_room.h"

namespace
{
/// A text of numbered lines that grows.
class Lines : public LongText
{
public:
    explicit Lines(int count) { add(count); }
    void add(int count)
    {
        for (; count > 0; --count)
            text_ += QStringLiteral("line %1\n").arg(count_++);
    }
    qsizetype size() const override { return text_.size(); }
    QString stretch(qsizetype start, qsizetype count) const override
    {
        longest = std::max(longest, count);
        return text_.sliced(start, count);
    }
    mutable qsizetype longest = 0; // of the stretches that were asked for

private:
    QString text_;
    int count_ = 0;
};

TEST_F(LongBox, ReadsATextFromElsewhereAPageAtATime)
{
    const auto lines = std::make_shared<Lines>(100'000);
    box.set_text("before");
    box.show_text(lines);
    QApplication::processEvents();
    EXPECT_EQ(top_line(), "line 0");
    drag_bar_to(bar().maximum() / 2);
    EXPECT_NEAR(top_line().section(' ', 1).toInt(), 50'000, 5'000);
    press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_TRUE(box.toPlainText().endsWith("line 99999\n"));
    EXPECT_LT(lines->longest, bounded);
    EXPECT_LT(box.document()->characterCount(), bounded);
    EXPECT_TRUE(box.text() == numbered_lines(100'000));
}

TEST_F(LongBox, ShowsEveryLineFromElsewhereAsThePageKeyIsHeld)
{
    constexpr int count = 20'000;
    box.show_text(std::make_shared<Lines>(count));
    QApplication::processEvents();
    int shown = -1; // the last line that was on the screen
    while (shown < count - 1) {
        ASSERT_LE(top_line().section(' ', 1).toInt(), shown + 1);
        const QString bottom =
            bottom_line().isEmpty() ? QStringLiteral("line 19999") : bottom_line();
        ASSERT_GT(bottom.section(' ', 1).toInt(), shown);
        shown = bottom.section(' ', 1).toInt();
        press(Qt::Key_PageDown);
    }
}

TEST_F(LongBox, FollowsATextFromElsewhereAsItGrows)
{
    const auto lines = std::make_shared<Lines>(2);
    box.show_text(lines);
    QApplication::processEvents();
    EXPECT_EQ(box.toPlainText(), "line 0\nline 1\n");
    EXPECT_FALSE(box.is_paged());
    lines->add(1);
    box.text_has_grown();
    EXPECT_EQ(box.text(), "line 0\r\nline 1\r\nline 2\r\n");
    QApplication::processEvents();
    EXPECT_EQ(box.toPlainText(), "line 0\nline 1\nline 2\n");
    lines->add(49'997);
    box.text_has_grown();
    QApplication::processEvents();
    EXPECT_EQ(top_line(), "line 0");
    EXPECT_TRUE(box.is_paged());
    drag_bar_to(bar().maximum());
    EXPECT_TRUE(box.toPlainText().endsWith("line 49999\n"));
    lines->add(1);
    box.text_has_grown();
    QApplication::processEvents();
    wheel(1);
    EXPECT_TRUE(box.toPlainText().endsWith("line 50000\n"));
    EXPECT_EQ(bottom_line(), "");
}

TEST_F(LongBox, OwnsATextFromElsewhereOnceItIsChanged)
{
    const auto lines = std::make_shared<Lines>(50'000);
    box.show_text(lines);
    QApplication::processEvents();
    QTest::keyClicks(&box, "typed ");
    drag_bar_to(bar().maximum()); // what was typed is stored
    lines->add(1);
    EXPECT_TRUE(box.text() == "typed " + numbered_lines(50'000));

    box.show_text(lines);
    box.append_text("more");
    lines->add(1);
    EXPECT_TRUE(box.text() == numbered_lines(50'001) + "more");

    box.show_text(std::make_shared<Lines>(50'000));
    QApplication::processEvents();
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    press(Qt::Key_Delete);
    EXPECT_EQ(box.text(), "");
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(box.text() == numbered_lines(50'000));
    box.set_text("own");
    EXPECT_EQ(box.text(), "own");
}

TEST_F(LongBox, ATextFromElsewhereGainsNoLineEither)
{
    const QString odd = QString::fromUtf16(u"a\u2029b\uFDD0c\uFDD1d\ne");
    box.show_text(std::make_shared<PlainText>(odd));
    QApplication::processEvents();
    EXPECT_EQ(box.text(), "a b c d\r\ne");
    EXPECT_EQ(box.toPlainText(), "a b c d\ne");
}
} // namespace
