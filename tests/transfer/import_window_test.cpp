// What the window "Import Into Ostrix" shows and saves.
#include "tests/transfer/import_room.h"

namespace
{
TEST_F(Importing, ASaveToAPlaceThatCannotBeWrittenFails)
{
    import_text("Ann");
    prompts.will_answer(home.file("none/saved.txt"));
    EXPECT_EQ(number_of([this] { window.SaveAs_Click(); }), error_number::path_not_found);
}

TEST_F(Importing, ShowsItsWindowInTheTurnOfTheEventLoop)
{
    QString title;
    QString text;
    bool modal = true;
    when_window_shows([&] {
        title = import_window()->windowTitle();
        modal = import_window()->isModal();
        text = box().toPlainText();
    });
    import_text("Ann a@x.org\r\nb@x.org\r\n");
    EXPECT_EQ(title, "Import Into Ostrix");
    EXPECT_FALSE(modal);
    EXPECT_EQ(text, "Ann,a@x.org,b@x.org");
}

TEST_F(Importing, SavesItsTextMeanwhile)
{
    const QString saved = home.file("saved.txt");
    when_window_shows([&] {
        prompts.will_answer(saved);
        auto *save = import_window()->findChild<QAction *>("SaveAs");
        EXPECT_EQ(save->text(), "Save As");
        save->trigger();
    });
    import_text("Ann a@x.org\r\nb@x.org\r\n");
    EXPECT_EQ(journal, all_well + QStringList{"save file: Text files (*.*)|*.* in "});
    EXPECT_EQ(content(saved), "Ann,a@x.org,b@x.org\r\n");
}

TEST_F(Importing, SavesTheWholeTextAfterAFailure)
{
    show(Data2, "select distinct email from master");
    QByteArray line;
    for (int i = 0; i < 3000; ++i)
        line += QByteArray("j\xC3\xBCrgen") + QByteArray::number(i) + "@x.org,";
    import_text(line + "end@x.org");
    const QByteArray expected = line + "end@x.orgj\xC3\xBCrgen2999@x.org\r\n";
    EXPECT_EQ(box().text(), QString::fromUtf8(expected));
    EXPECT_TRUE(seen_at_the_end().endsWith(QStringLiteral("end@x.orgj\u00FCrgen2999@x.org")));
    prompts.will_answer(home.file("saved.txt"));
    import_window()->findChild<QAction *>("SaveAs")->trigger();
    EXPECT_EQ(content(home.file("saved.txt")), expected + "\r\n");
}

TEST_F(Importing, ASaveThatIsCancelledDoesNothing)
{
    import_text("Ann");
    prompts.will_answer(QString());
    import_window()->findChild<QAction *>("SaveAs")->trigger();
    EXPECT_EQ(journal.last(), "save file: Text files (*.*)|*.* in ");
    EXPECT_EQ(QDir(home.path()).entryList(QDir::Files), QStringList{"list.csv"});
}

TEST_F(Importing, ShowsTheWholeTextAtEveryStage)
{
    for (const qsizetype size : {1'000, 32'767, 32'768, 65'536, 300'000}) {
        QString text = "Ann a@x.org\nBob\n";
        for (int i = 0; text.size() + 30 < size; ++i)
            text += QString("reader%1@example.org\r\n").arg(i);
        text += QString("z").repeated(size - text.size() - 12) + ",end@x.org\n";
        int stages = 0;
        import_items(text, [&](const QString &stage) {
            ++stages;
            window.show_text(stage);
            EXPECT_TRUE(box().text() == with_cr_lf(stage)) << stages << " of " << size;
            QApplication::processEvents();
            EXPECT_TRUE(box().toPlainText().startsWith(stage.left(20))) << stages;
            EXPECT_TRUE(seen_at_the_end().endsWith("end@x.org") ||
                        seen_at_the_end().endsWith("end@x.org,"))
                << stages << " of " << size << seen_at_the_end().toStdString();
            EXPECT_TRUE(box().text() == with_cr_lf(stage)) << stages << " of " << size;
        });
        EXPECT_EQ(stages, 4);
    }
}

TEST_F(Importing, ShowsEveryItemAsItIsAppended)
{
    QStringList list;
    for (int i = 0; i <= 3'000; ++i)
        list.append(QString("reader%1@example.org").arg(i));
    const ImportItems items(list.join(','));
    window.show_text(items.text());
    QString expected = items.text();
    for (qsizetype number = items.highest() - 1; number >= 0; --number) {
        window.append_item(items, number);
        expected += list[number] + "\r\n";
        if (number % 500 == 0 || number > 2'990) { // a turn of the event loop in between
            ASSERT_TRUE(seen_at_the_end().endsWith(list[number])) << number;
            ASSERT_TRUE(box().text() == expected) << number;
        }
    }
    EXPECT_EQ(seen_at_the_end(), "reader0@example.org");
    EXPECT_EQ(box().cursorForPosition({0, 6}).block().text().left(6), "reader");
    EXPECT_TRUE(box().text() == expected);
}

TEST_F(Importing, AppendedItemsLeaveAPersonWhereTheyRead)
{
    const ImportItems items(QString(1'000, 'x') + ",b,a");
    window.show_text(items.text());
    QApplication::processEvents();
    EXPECT_EQ(box().toPlainText(), items.text());
    window.append_item(items, 1);
    window.append_item(items, 0);
    EXPECT_EQ(box().text(), items.text() + "b\r\n" + QString(1'000, 'x') + "\r\n");
    QApplication::processEvents();
    EXPECT_EQ(box().toPlainText(), items.text() + "b\n" + QString(1'000, 'x') + "\n");
    EXPECT_EQ(box().verticalScrollBar()->value(), 0);
}

TEST_F(Importing, TheBoxIsReadAndNotTypedInto)
{
    window.show_text("a@x.org");
    QApplication::processEvents();
    box().setFocus();
    QTest::keyClicks(&box(), "typed");
    EXPECT_EQ(box().text(), "a@x.org");
    EXPECT_TRUE(box().isReadOnly());
}

TEST_F(Importing, SavesALongTextAsItIs)
{
    // The pieces in which it is written end between the halves of a character, and in a line break.
    const QString text = QString((1 << 20) - 1, 'x') + QStringLiteral("\U0001F600\u2029") +
                         QString((1 << 20) - 4, 'y') + "\nz";
    window.show_text(text);
    prompts.will_answer(home.file("saved.txt"));
    import_window()->findChild<QAction *>("SaveAs")->trigger();
    EXPECT_TRUE(content(home.file("saved.txt")) ==
                QString(text).replace("\n", "\r\n").toUtf8() + "\r\n");
}
} // namespace
