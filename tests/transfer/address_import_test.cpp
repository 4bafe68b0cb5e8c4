// What an import stores, and what ends it.
#include "tests/transfer/import_room.h"

namespace
{
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
