#include "platform/long_text_box.h"
#include "tests/support/print_qt.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace
{
QString numbered_lines(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QStringLiteral("line %1\r\n").arg(i);
    return text;
}

class LongBox : public testing::Test
{
protected:
    LongBox()
    {
        box.resize(400, 300);
        box.show();
        box.activateWindow();
        box.setFocus();
        QApplication::processEvents();
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&box, static_cast<Qt::Key>(key), modifiers);
        QApplication::processEvents();
    }

    void wheel(int notches)
    {
        const QPointF place(50, 50);
        QWheelEvent event(place, box.mapToGlobal(place), {}, {0, -120 * notches}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(box.viewport(), &event);
        QApplication::processEvents();
    }

    /// The bar of a paged text.
    QScrollBar &bar()
    {
        const auto bars = box.findChildren<QScrollBar *>(Qt::FindDirectChildrenOnly);
        for (QScrollBar *candidate : bars) {
            if (candidate->isVisible())
                return *candidate;
        }
        throw std::runtime_error("no scroll bar of its own");
    }

    void drag_bar_to(int value)
    {
        bar().setSliderDown(true);
        bar().setSliderPosition(value);
        bar().setSliderDown(false);
        QApplication::processEvents();
    }

    void drop(const QString &text, const QPoint &place)
    {
        QMimeData dragged;
        dragged.setText(text);
        QDragEnterEvent enter(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(box.viewport(), &enter);
        QDropEvent drop(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(box.viewport(), &drop);
        QApplication::processEvents();
    }

    QString top_line() { return box.cursorForPosition({0, 6}).block().text(); }
    QString bottom_line()
    {
        return box.cursorForPosition({0, box.viewport()->height() - 6}).block().text();
    }

    /// Chooses an entry of the context menu.
    void choose(const char *entry)
    {
        bool chosen = false;
        QTimer::singleShot(0, &box, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            auto *action = menu->findChild<QAction *>(QLatin1String(entry));
            ASSERT_NE(action, nullptr) << entry;
            ASSERT_TRUE(action->isEnabled()) << entry;
            chosen = true;
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 20},
                                box.mapToGlobal(QPoint(20, 20)));
        QApplication::sendEvent(box.viewport(), &event);
        EXPECT_TRUE(chosen);
    }

    static constexpr int bounded = 300'000; // characters that a document lays out in no time
    LongTextBox box;
};

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

TEST_F(LongBox, TakesACommaBehindTheLastCharacter)
{
    const QString text(1'000'000, 'x');
    box.set_text(text);
    press(Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&box, ",");
    EXPECT_TRUE(box.text() == text + ",");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(box.text() == text);
}

TEST_F(LongBox, KeepsWhatWasTypedWhenThePageMoves)
{
    box.set_text(numbered_lines(50'000));
    QTest::keyClicks(&box, "first ");
    drag_bar_to(bar().maximum());
    EXPECT_FALSE(box.toPlainText().contains("first"));
    EXPECT_TRUE(box.text() == "first " + numbered_lines(50'000));
    QTest::keyClicks(&box, "and "); // where the cursor is, not where the screen is
    EXPECT_TRUE(box.text() == "first and " + numbered_lines(50'000));
    EXPECT_EQ(top_line(), "first and line 0");
}

TEST_F(LongBox, TypesWhereItWasClicked)
{
    box.set_text(numbered_lines(50'000));
    drag_bar_to(bar().maximum() / 2);
    const QString line = top_line();
    QTest::mouseClick(box.viewport(), Qt::LeftButton, {}, {0, 8});
    QTest::keyClicks(&box, ">");
    EXPECT_TRUE(box.text() == numbered_lines(50'000).replace(line + "\r\n", ">" + line + "\r\n"));
}

TEST_F(LongBox, CopiesTheWholeText)
{
    const QString text = numbered_lines(50'000);
    box.set_text(text);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QApplication::clipboard()->text() == QString(text).replace("\r\n", "\n"));
    EXPECT_EQ(top_line(), "line 0"); // still where it was
    QApplication::clipboard()->clear();
    wheel(3000);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().size(), text.size() - 50'000);
}

TEST_F(LongBox, DeletesTheWholeText)
{
    for (const int key : {Qt::Key_Delete, Qt::Key_Backspace}) {
        box.set_text(numbered_lines(50'000));
        press(Qt::Key_A, Qt::ControlModifier);
        press(key);
        EXPECT_EQ(box.text(), "");
        EXPECT_FALSE(box.is_paged());
    }
}

TEST_F(LongBox, CutsAndPastesTheWholeText)
{
    const QString text = numbered_lines(50'000);
    box.set_text(text);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(box.text(), "");
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(box.text() == text);
    EXPECT_LT(box.document()->characterCount(), bounded);
    press(Qt::Key_V, Qt::ControlModifier); // behind what was pasted
    EXPECT_TRUE(box.text() == text + text);
}

TEST_F(LongBox, TypesOverTheWholeText)
{
    box.set_text(numbered_lines(50'000));
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&box, "new");
    EXPECT_EQ(box.text(), "new");
    box.set_text(numbered_lines(50'000));
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Return);
    EXPECT_EQ(box.text(), "\r\n");
    box.set_text(numbered_lines(50'000));
    press(Qt::Key_A, Qt::ControlModifier);
    QApplication::clipboard()->setText("pasted");
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(box.text(), "pasted");
}

TEST_F(LongBox, SelectsToTheTextsEnds)
{
    box.set_text(numbered_lines(50'000));
    press(Qt::Key_Down);
    press(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(bottom_line(), "");
    press(Qt::Key_Left, Qt::ShiftModifier); // all but the last line break
    press(Qt::Key_Delete);
    EXPECT_EQ(box.text(), "line 0\r\n\r\n");

    box.set_text(numbered_lines(50'000));
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Up);
    press(Qt::Key_Home, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Delete);
    EXPECT_EQ(box.text(), "line 49999\r\n");
}

TEST_F(LongBox, AClickEndsALongSelection)
{
    box.set_text(numbered_lines(50'000));
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::mouseClick(box.viewport(), Qt::LeftButton, {}, {0, 8});
    QTest::keyClicks(&box, ">");
    EXPECT_TRUE(box.text() == ">" + numbered_lines(50'000));
}

TEST_F(LongBox, ALongSelectionIsNotDraggedButReplacedByANewOne)
{
    box.set_text(numbered_lines(50'000));
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::mousePress(box.viewport(), Qt::LeftButton, {}, {0, 8});
    QTest::mouseMove(box.viewport(), {100, 8});
    QTest::mouseMove(box.viewport(), {200, 8});
    QTest::mouseRelease(box.viewport(), Qt::LeftButton, {}, {200, 8});
    QApplication::processEvents();
    QTest::keyClicks(&box, "x");
    EXPECT_TRUE(box.text() == numbered_lines(50'000).replace(0, 6, "x"));
}

TEST_F(LongBox, HasTheWholeTextInItsMenuToo)
{
    const QString text = numbered_lines(50'000);
    box.set_text(text);
    choose("select-all");
    choose("edit-copy");
    EXPECT_EQ(QApplication::clipboard()->text().size(), text.size() - 50'000);
    choose("edit-cut");
    EXPECT_EQ(box.text(), "");
    choose("edit-paste");
    EXPECT_TRUE(box.text() == text);
    choose("select-all");
    choose("edit-delete");
    EXPECT_EQ(box.text(), "");
}

TEST_F(LongBox, ComposedCharactersReplaceALongSelection)
{
    box.set_text(numbered_lines(50'000));
    press(Qt::Key_A, Qt::ControlModifier);
    QInputMethodEvent event;
    event.setCommitString(QString::fromUtf16(u"\u6F22"));
    QApplication::sendEvent(&box, &event);
    EXPECT_EQ(box.text(), QString::fromUtf16(u"\u6F22"));
}

TEST_F(LongBox, AReadOnlyTextStays)
{
    const QString text = numbered_lines(50'000);
    box.setReadOnly(true);
    box.set_text(text);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    QTest::keyClicks(&box, "x");
    press(Qt::Key_V, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(box.text() == text);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().size(), text.size() - 50'000);
    press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(bar().value(), bar().maximum());
    press(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(bar().value(), 0);
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

TEST_F(LongBox, IsPagedOnceTypingOrPastingHasMadeItLong)
{
    box.set_text(QString(120'000, 'x'));
    EXPECT_FALSE(box.is_paged());
    QApplication::clipboard()->setText(QString(60'000, 'y'));
    for (int i = 0; i < 20; ++i)
        press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(box.is_paged());
    EXPECT_LT(box.document()->characterCount(), bounded);
    EXPECT_TRUE(box.text() == QString(1'200'000, 'y') + QString(120'000, 'x'));
}

// The selection lies at the beginning, the page at the end.
TEST_F(LongBox, CopiesAndCutsASelectionThatWasScrolledAway)
{
    const QString text = numbered_lines(100'000);
    box.set_text(text);
    press(Qt::Key_Down, Qt::ShiftModifier);
    const QString first_line = text.left(text.indexOf('\n') + 1);
    drag_bar_to(bar().maximum());
    QApplication::clipboard()->setText("old");
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), first_line.chopped(2) + "\n");
    EXPECT_TRUE(box.text() == text);
    drag_bar_to(bar().maximum());
    QApplication::clipboard()->setText("old");
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), first_line.chopped(2) + "\n");
    EXPECT_TRUE(box.text() == text.mid(first_line.size()));
}

TEST_F(LongBox, ADropGoesWhereItFallsAndTakesNothingAway)
{
    const QString text = numbered_lines(100'000);
    box.set_text(text);
    press(Qt::Key_A, Qt::ControlModifier);
    drop("dropped ", {0, 1});
    EXPECT_TRUE(box.text() == "dropped " + text);
    box.set_text(text);
    const QString large(100'000, 'X');
    drop(large, {0, 1});
    EXPECT_TRUE(box.text() == large + text);
}

TEST_F(LongBox, ALargeDropGoesWhereItFallsToo)
{
    for (const int size : {1'000, 66'000, 300'000}) {
        box.set_text("0123456789\r\nabcdefghij");
        press(Qt::Key_Right, Qt::ShiftModifier); // a selection elsewhere
        const QRect place = box.cursorRect(QTextCursor(box.document()->lastBlock()));
        drop(QString(size, 'X'), place.center());
        EXPECT_TRUE(box.text() == "0123456789\r\n" + QString(size, 'X') + "abcdefghij") << size;
    }
}

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

TEST_F(LongBox, HoldsATextBeforeItIsShown)
{
    LongTextBox hidden;
    const QString text = numbered_lines(50'000);
    hidden.set_text(text);
    EXPECT_TRUE(hidden.text() == text);
    EXPECT_TRUE(hidden.is_paged());
}
} // namespace
