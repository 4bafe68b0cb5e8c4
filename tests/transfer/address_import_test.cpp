#include "platform/long_text_box.h"
#include "platform/words.h"
#include "tests/support/turn_journal.h"
#include "tests/transfer/transfer_room.h"
#include "transfer/address_import.h"
#include "transfer/import_items.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

#include <functional>
#include <new>
#include <sys/stat.h>

namespace
{
const QString patience =
    "notice: Importing large lists can take some time and it may seem that the program has crashed "
    "when in fact it has not. Please allow processes to complete. As an estimate, consider that "
    "importing 1,000 entries may take upto five minutes and therefore importing 10,000 entries may "
    "take upto fifty minutes.";
const QString choose =
    "notice: You will now be asked to choose a file from which to import email addresses. This "
    "file must be in the correct format else an error will occur.";
const QString dialog = "open file: All files (*.*)|*.* in c:\\Ostrix\\";
const QString failure =
    "notice: An error occurred. Most probably the file being imported was not in the correct "
    "format. Please ensure the file is in CSV format containing only email addresses. You can use "
    "the Ostrix text manipulator to make a CSV file of the correct format. To use the Ostrix text "
    "manipulator goto File>Make A Text File Into a CSV File For Import";
const QStringList all_well = {patience, choose, dialog};
const QStringList failed = all_well + QStringList{failure};

class Importing : public TransferRoom
{
protected:
    const QString file = home.file("list.csv");

    void import_file(const QString &path)
    {
        prompts.will_answer(path);
        import_addresses({Data2, prompts, please_wait, window, *this});
    }
    void import_text(const QByteArray &text)
    {
        write_file(file, text);
        import_file(file);
    }
    QStringList stored(const QString &table = "master")
    {
        show(Data1, table);
        return walk(Data1, "email");
    }
    /// Whether both windows are there, as after a failure, or neither.
    std::pair<bool, bool> open_windows() const
    {
        return {window.is_shown(), please_wait.is_shown()};
    }
    static constexpr auto both = std::pair(true, true);
    static constexpr auto neither = std::pair(false, false);

    /// Runs in the turn of the event loop that an import gives once its window is there.
    void when_window_shows(std::function<void()> action)
    {
        action_ = std::move(action);
        qApp->installEventFilter(this_filter_.get());
    }
    QWidget *import_window() const { return parent.findChild<QWidget *>("frmIMport"); }
    LongTextBox &box() const { return *import_window()->findChild<LongTextBox *>("Text1"); }

    /// The line on the screen that ends before the empty one behind the text's last line break, or
    /// the last characters of a text without one, once a person has scrolled there.
    QString seen_at_the_end() const
    {
        QApplication::processEvents();
        QTest::keyClick(&box(), Qt::Key_End, Qt::ControlModifier);
        QApplication::processEvents();
        QTextBlock last = box().cursorForPosition(box().viewport()->rect().bottomRight()).block();
        return last.text().isEmpty() ? last.previous().text() : last.text().right(40);
    }

private:
    class Filter : public QObject
    {
    public:
        explicit Filter(std::function<void()> &action) : action_(action) {}
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Show && watched->objectName() == "frmIMport")
                QTimer::singleShot(0, [this] {
                    if (const auto action = std::exchange(action_, nullptr))
                        action();
                });
            return false;
        }

    private:
        std::function<void()> &action_;
    };
    std::function<void()> action_;
    std::unique_ptr<Filter> this_filter_ = std::make_unique<Filter>(action_);
};

TEST_F(Importing, StoresLastFirstAndNeverTheLast)
{
    import_text("a@x.org\r\nb@x.org\r\nc@x.org\r\n");
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(stored(), (QStringList{"b@x.org", "a@x.org"}));
    EXPECT_EQ(open_windows(), neither);
    EXPECT_EQ(told, (QStringList{"Address 1 of 2", "Address 2 of 2", "clear"}));
}

TEST_F(Importing, ShowsTheRowsInTheList)
{
    insert_master({"first@x.org"});
    import_text("a@x.org,b@x.org,c@x.org");
    EXPECT_EQ(walk(Data2, "email"), (QStringList{"first@x.org", "b@x.org", "a@x.org"}));
}

TEST_F(Importing, ReadsTheListAgainAfterEveryRow)
{
    int refreshed = 0;
    QObject::connect(&Data2, &DataConnection::rows_changed, [&refreshed] { ++refreshed; });
    import_text("a@x.org,b@x.org,c@x.org,d@x.org");
    EXPECT_EQ(refreshed, 3);
}

TEST_F(Importing, StoresTheWordsAroundAnAddressToo)
{
    import_text("Ann Hill a@x.org\r\nb@x.org\r\n");
    EXPECT_EQ(stored(), (QStringList{"a@x.org", "Hill", "Ann"}));
}

TEST_F(Importing, PassesOverTheLastItemAlsoWhenItIsAWord)
{
    import_text("a@x.org Ann Hill");
    EXPECT_EQ(stored(), (QStringList{"Ann", "a@x.org"}));
}

TEST_F(Importing, OfASingleAddressStoresNothingAndSaysNothing)
{
    import_text("a@x.org\r\n");
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(stored(), QStringList());
    EXPECT_EQ(open_windows(), neither);
}

TEST_F(Importing, StoresAddressesJoinedBySemicolonsAsOne)
{
    import_text("a@x.org;b@x.org\r\nc@x.org\r\n");
    EXPECT_EQ(stored(), QStringList{"a@x.org;b@x.org"});
}

TEST_F(Importing, StoresItemsAsTheyStand)
{
    insert_master({"Ann@X.org"});
    import_text("\tAnn@X.org\r\n'o'brien@x.org\r\nAnn@X.org,,,\r\n\"Ann@X.org\"\r\nend@x.org");
    EXPECT_EQ(stored(), (QStringList{"Ann@X.org", "\"Ann@X.org\"", "Ann@X.org", "'o'brien@x.org",
                                     "\tAnn@X.org"}));
}

TEST_F(Importing, StoresEmptyItemsBetweenTwoBlanks)
{
    import_text("a@x.org  b@x.org");
    EXPECT_EQ(stored(), (QStringList{"", "a@x.org"}));
}

TEST_F(Importing, CancelledChangesNothing)
{
    import_file({});
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(stored(), QStringList());
    EXPECT_EQ(open_windows(), neither);
    EXPECT_EQ(told, QStringList());
}

TEST_F(Importing, GoesToTheTableThatTheRecordSetShows)
{
    show(Data2, "select * from email");
    import_text("a@x.org,b@x.org");
    EXPECT_EQ(stored("email"), QStringList{"a@x.org"});
    EXPECT_EQ(stored(), QStringList());
    EXPECT_EQ(Data2.record_source().text(), "select * from email");
}

TEST_F(Importing, OfAFileWithoutAnAddressFailsWithItsWindowsOpen)
{
    for (const QByteArray text : {"", "Ann\r\nBob, Carl\r\n", ",,"}) {
        import_text(text);
        EXPECT_EQ(journal, failed) << text.toStdString();
        EXPECT_EQ(open_windows(), both);
        EXPECT_EQ(box().text(), "");
        journal.clear();
    }
    EXPECT_EQ(stored(), QStringList());
    EXPECT_EQ(told.last(), "clear");
}

TEST_F(Importing, OfAFileThatCannotBeReadFails)
{
    QDir().mkpath(home.file("folder"));
    ASSERT_EQ(mkfifo(home.file("pipe").toUtf8().constData(), 0600), 0);
    for (const QString &path :
         {home.file("gone.csv"), home.file("folder"), home.file("pipe"), QString("/dev/zero"),
          QString("/proc/self/mem"), QString("d:\\list.csv")}) {
        import_file(path);
        EXPECT_EQ(journal, failed) << path.toStdString();
        EXPECT_EQ(open_windows(), neither);
        journal.clear();
    }
    EXPECT_EQ(stored(), QStringList());
}

TEST_F(Importing, OfAFileThatIsTooLargeFails)
{
    QFile large(file);
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize((qint64(1) << 30) + 1)); // takes no room on the disk
    import_file(file);
    EXPECT_EQ(journal, failed);
}

TEST_F(Importing, ReadsAFileInDriveNotation)
{
    write_file(home.file("data/Ostrix/list.csv"), "a@x.org,b@x.org");
    import_file("C:\\ostrix\\LIST.csv");
    EXPECT_EQ(stored(), QStringList{"a@x.org"});
}

// The first regime: until the first value is set, every failure ends the import.
TEST_F(Importing, WithoutARecordSetThatTakesRowsFails)
{
    show(Data2, "select distinct email from master");
    import_text("a@x.org,b@x.org");
    EXPECT_EQ(journal, failed);
    EXPECT_EQ(open_windows(), both);
    EXPECT_EQ(box().text(), "a@x.org,b@x.orga@x.org\r\n");
    EXPECT_EQ(stored(), QStringList());
}

TEST_F(Importing, WithoutAColumnForAddressesFails)
{
    show(Data2, "select name from master");
    import_text("a@x.org,b@x.org");
    EXPECT_EQ(journal, failed);
    EXPECT_EQ(stored(), QStringList());
}

TEST_F(Importing, WithoutADatabaseFails)
{
    DataConnection none(engine);
    write_file(file, "a@x.org,b@x.org");
    prompts.will_answer(file);
    import_addresses({none, prompts, please_wait, window, *this});
    EXPECT_EQ(journal, failed);
}

// The second regime: from the first value on, every failure is passed over.
TEST_F(Importing, PassesOverRowsThatTheDatabaseRefuses)
{
    run_sql(path(), "create unique index once on master(email)");
    show(Data2, "master");
    import_text("a@x.org,b@x.org,A@x.org,c@x.org,end@x.org");
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(stored(), (QStringList{"c@x.org", "A@x.org", "b@x.org"}));
    EXPECT_EQ(open_windows(), neither);
}

TEST_F(Importing, PassesOverTheFirstRowRefusedToo)
{
    run_sql(path(), "create unique index once on master(email)");
    insert_master({"b@x.org"});
    show(Data2, "master");
    import_text("a@x.org,b@x.org,end@x.org");
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(stored(), (QStringList{"b@x.org", "a@x.org"}));
}

TEST_F(Importing, PassesOverARefreshThatFails)
{
    Data2.set_record_source("select * from nothing");
    import_text("a@x.org,b@x.org,end@x.org");
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(stored(), (QStringList{"b@x.org", "a@x.org"}));
}

TEST_F(Importing, PassesOverAColumnThatGoesAfterTheFirstRow)
{
    Data2.set_record_source("select name from master"); // in force from the first re-read on
    import_text("a@x.org,b@x.org,c@x.org,end@x.org");
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(stored(), (QStringList{"c@x.org", "", ""}));
}

TEST_F(Importing, AfterAFailureUsesTheOpenWindows)
{
    import_text("Ann");
    EXPECT_EQ(open_windows(), both);
    journal.clear();
    import_text("a@x.org,b@x.org");
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(open_windows(), neither);
    EXPECT_EQ(parent.findChildren<QWidget *>("frmIMport").size(), 0);
}

TEST_F(Importing, GivesATurnBeforeAndAfterPleaseWaitAndThenStores)
{
    const TurnJournal turns(journal, {"frmIMport", "PleaseWait"});
    QObject::connect(&Data2, &DataConnection::rows_changed, [this] { journal.append("row"); });
    import_text("a@x.org,b@x.org,c@x.org");
    EXPECT_EQ(journal,
              all_well + QStringList({"frmIMport", "turn", "PleaseWait", "turn", "row", "row"}));
}

// Memory that runs out is an error, too.
TEST_F(Importing, WithoutMemoryForItFails)
{
    prompts.after_each_box([this] {
        if (journal == all_well)
            throw std::bad_alloc();
    });
    import_addresses({Data2, prompts, please_wait, window, *this});
    EXPECT_EQ(journal, failed);
    EXPECT_EQ(stored(), QStringList());
}

TEST_F(Importing, PassesOverMemoryThatRunsOutLater)
{
    QObject::connect(&Data2, &DataConnection::rows_changed, [] { throw std::bad_alloc(); });
    import_text("a@x.org,b@x.org,end@x.org");
    EXPECT_EQ(journal, all_well);
    EXPECT_EQ(stored(), (QStringList{"b@x.org", "a@x.org"}));
    EXPECT_EQ(open_windows(), neither);
}

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

TEST_F(Importing, GoesOnWhenItsWindowIsClosed)
{
    when_window_shows([&] { import_window()->close(); });
    import_text("a@x.org,b@x.org,end@x.org");
    EXPECT_EQ(stored(), (QStringList{"b@x.org", "a@x.org"}));
    EXPECT_EQ(open_windows(), neither);
}

TEST_F(Importing, GoesOnAfterAnotherImportMeanwhile)
{
    const QString other = home.file("other.csv");
    write_file(other, "c@x.org,d@x.org");
    when_window_shows([&] { import_file(other); });
    import_text("a@x.org,b@x.org,end@x.org");
    EXPECT_EQ(stored(), (QStringList{"c@x.org", "b@x.org", "a@x.org"}));
    EXPECT_EQ(open_windows(), neither);
}

// A text box of old held 32,767 characters and less than 64 K.
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

TEST_F(Importing, GoesOnAfterAnotherImportMeanwhileThatFailed)
{
    const QString other = home.file("other.csv");
    write_file(other, "nobody");
    when_window_shows([&] { import_file(other); });
    import_text("a@x.org,b@x.org,end@x.org");
    EXPECT_EQ(stored(), (QStringList{"b@x.org", "a@x.org"}));
    EXPECT_EQ(journal.last(), failure);
    EXPECT_EQ(open_windows(), neither);
}

TEST_F(Importing, OfALineOfFiftyMegabytesTakesNoTimeToShow)
{
    QByteArray line(50'000'000, 'x');
    line += ",a@x.org,b@x.org";
    import_text(line);
    EXPECT_EQ(stored(), QStringList{"a@x.org"});
    show(Data2, "select distinct email from master");
    line.replace(',', '@');
    import_text(line); // one item of fifty megabytes: never stored, as it is the last
    EXPECT_EQ(stored(), QStringList{"a@x.org"});
}
} // namespace
