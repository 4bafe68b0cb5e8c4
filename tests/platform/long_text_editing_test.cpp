// Changing and copying a text of which the document holds a page.
#include "tests/platform/long_box_room.h"

namespace
{
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

TEST_F(LongBox, ALargeDropAtTheEdgeDoesNotScrollOn)
{
    box.set_text(numbered_lines(20'000));
    QApplication::processEvents();
    drop(QString("dropped\n").repeated(10'000), {20, box.viewport()->height() - 3});
    const QString top = top_line();
    QTest::qWait(700); // a drag that goes on would scroll ten times
    EXPECT_EQ(top_line(), top);
}

TEST_F(LongBox, PastingReplacesASelectionThatEndsWhereThePageBegins)
{
    const QString text = numbered_lines(100'000);
    for (const QString &pasted : {QString("NEW\n"), QString(100'000, 'N') + '\n'}) {
        box.set_text(text);
        press(Qt::Key_Down, Qt::ShiftModifier);
        drag_bar_to(65'536 + 6);
        ASSERT_EQ(box.document()->firstBlock().text(), "line 1");
        QApplication::clipboard()->setText(pasted);
        press(Qt::Key_V, Qt::ControlModifier);
        EXPECT_TRUE(box.text() == pasted.chopped(1) + text.mid(text.indexOf('\r')));
    }
}

TEST_F(LongBox, PastedAccentsAreLaidOutAsFewAsShownOnes)
{
    box.set_text("a");
    press(Qt::Key_End, Qt::ControlModifier);
    QApplication::clipboard()->setText(QString(60'000, QChar(0x301)));
    for (int i = 0; i < 2; ++i)
        press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_LT(box.document()->characterCount(), 20'000);
    EXPECT_EQ(box.text().size(), 120'001);
}
} // namespace
