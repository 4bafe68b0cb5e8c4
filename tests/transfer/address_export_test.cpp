#include "tests/transfer/pdf_text.h"
#include "tests/transfer/transfer_room.h"
#include "transfer/address_export.h"
#include "transfer/address_print.h"
#include "transfer/grid_export.h"

#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <sys/resource.h>

namespace
{
class Exporting : public TransferRoom
{
protected:
    const QString file = home.file("list.csv");

    void export_to(const QString &path)
    {
        prompts.will_answer(path);
        export_addresses({Data2, prompts, *this}, "All Files (*.*)|*.*", "select * from master");
    }
    void save_grid_to(const QString &path)
    {
        prompts.will_answer(path);
        save_grid({Data2, prompts, *this});
    }
};

TEST_F(Exporting, WritesOneAddressALine)
{
    insert_master({"b@x.org", "", "a@x.org", QStringLiteral("j\u00FCrgen@x.org")});
    export_to(file);
    EXPECT_EQ(content(file), "b@x.org\r\n\r\na@x.org\r\nj\xC3\xBCrgen@x.org\r\n");
    EXPECT_EQ(journal,
              (QStringList{"save file: All Files (*.*)|*.* in c:\\Ostrix\\", "notice: Finished!"}));
    EXPECT_EQ(told.first(), "Address 1 of 4");
    EXPECT_EQ(told.last(), "clear");
}

TEST_F(Exporting, LeavesTheRecordSourceOnTheWholeList)
{
    insert_master({"a@x.org", "b@x.org"});
    show(Data2, "select * from master where email like 'a*'");
    export_to(file);
    EXPECT_EQ(content(file), "a@x.org\r\nb@x.org\r\n");
    EXPECT_EQ(Data2.record_source().text(), "select * from master");
    EXPECT_EQ(walk(Data2, "email"), (QStringList{"a@x.org", "b@x.org"}));
}

TEST_F(Exporting, WritesTheSameBytesWhateverTheExtension)
{
    insert_master({"a@x.org", "with, comma \"and\" quotes@x.org"});
    export_to(home.file("list.csv"));
    export_to(home.file("list.txt"));
    EXPECT_EQ(content(home.file("list.csv")), content(home.file("list.txt")));
    EXPECT_EQ(content(home.file("list.csv")), "a@x.org\r\nwith, comma \"and\" quotes@x.org\r\n");
}

TEST_F(Exporting, OfAnEmptyTableWritesAnEmptyFile)
{
    export_to(file);
    EXPECT_EQ(content(file), "");
    EXPECT_EQ(journal.last(), "notice: Finished!");
}

TEST_F(Exporting, OverwritesAFile)
{
    insert_master({"a@x.org"});
    write_file(file, QByteArray(1000, 'x'));
    export_to(file);
    EXPECT_EQ(content(file), "a@x.org\r\n");
}

TEST_F(Exporting, WithoutAFileFailsAtTheFirstRow)
{
    insert_master({"a@x.org"});
    EXPECT_EQ(number_of([&] { export_to({}); }), error_number::bad_file_name_or_number);
    EXPECT_EQ(journal.size(), 1); // no "Finished!"
    EXPECT_EQ(Data2.record_source().text(), "select * from master");
}

TEST_F(Exporting, WithoutAFileAndWithoutRowsIsFinished)
{
    export_to({});
    EXPECT_EQ(journal.last(), "notice: Finished!");
}

TEST_F(Exporting, OpensItsFileBeforeItTurnsToTheWholeList)
{
    show(Data2, "select * from master where email like 'a*'");
    EXPECT_EQ(number_of([&] { export_to(home.file("none/list.csv")); }),
              error_number::path_not_found);
    EXPECT_EQ(Data2.record_source().text(), "select * from master where email like 'a*'");
}

TEST_F(Exporting, WithoutADatabaseFailsAndLeavesWhatWasThere)
{
    DataConnection none(engine);
    write_file(file, "what was there");
    prompts.will_answer(file);
    EXPECT_NE(
        number_of([&] {
            export_addresses({none, prompts, *this}, "All Files (*.*)|*.*", "select * from master");
        }),
        0);
    EXPECT_EQ(content(file), "what was there");
}

qint64 peak_memory()
{
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return used.ru_maxrss * 1024;
}

class NobodyIsTold : public ProgressReport
{
    void tell(const QString &, qint64, qint64) override {}
    void clear() override {}
    void note(const QString &) override {}
};

TEST_F(Exporting, TakesNoMoreMemoryForALongList)
{
    [[maybe_unused]] constexpr qint64 cache = 16
                                              << 20; // bytes that the database may keep of its file
    run_sql(path(), "with recursive n(i) as (select 1 union all select i + 1 from n where i < "
                    "100000) insert into master(email) select i || '@' || hex(zeroblob(250)) "
                    "from n");
    NobodyIsTold nobody;
    prompts.will_answer(file);
    prompts.will_answer(home.file("grid.csv"));
    const qint64 before = peak_memory();
    export_addresses({Data2, prompts, nobody}, "All Files (*.*)|*.*", "select * from master");
    save_grid({Data2, prompts, nobody});
    EXPECT_GT(QFileInfo(file).size(), 50'000'000);
#ifndef __SANITIZE_ADDRESS__ // which keeps for a while what has been freed
    EXPECT_LT(peak_memory() - before, cache + 4'000'000);
#else
    EXPECT_GT(before, 0);
#endif
}

TEST_F(Exporting, ToAPlaceThatCannotBeWrittenFails)
{
    EXPECT_EQ(number_of([&] { export_to(home.file("none/list.csv")); }),
              error_number::path_not_found);
    EXPECT_EQ(number_of([&] { export_to(home.path()); }), error_number::path_file_access);
}

TEST_F(Exporting, ThatFailsHalfWayLeavesWhatWasThere)
{
    insert_master(QStringList(5000, "reader@example.org"));
    write_file(file, "what was there");
    const rlimit small{20'000, RLIM_INFINITY}; // bytes that a file may have
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const int number = number_of([&] { export_to(file); });
    const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &unlimited);
    EXPECT_EQ(number, error_number::disk_full);
    EXPECT_EQ(content(file), "what was there");
    EXPECT_EQ(QDir(home.path()).entryList(QDir::Files), QStringList{"list.csv"});
    EXPECT_EQ(journal.size(), 1); // no "Finished!"
}

TEST_F(Exporting, DoesNotReplaceTheDatabase)
{
    insert_master({"a@x.org"});
    const QString alias = home.file("alias.csv");
    ASSERT_TRUE(QFile::link(path(), alias));
    for (const QString &own : {path(), alias, QString("c:\\ostrix\\OSTRIX.mdb")}) {
        EXPECT_EQ(number_of([&] { export_to(own); }), error_number::permission_denied);
        EXPECT_EQ(number_of([&] { save_grid_to(own); }), error_number::permission_denied);
    }
    Data2.refresh();
    EXPECT_EQ(walk(Data2, "email"), QStringList{"a@x.org"});
}

class Printing : public TransferRoom
{
protected:
    const QString file = home.file("out.pdf");

    void print_to(const PrinterMaker &printer)
    {
        print_addresses({Data2, prompts, *this}, printer);
    }
};

TEST_F(Printing, TellsHowFarItIs)
{
    run_sql(path(), "insert into email(email) values ('b@x.org'), ('a@x.org')");
    print_to(pdf_printer(file));
    EXPECT_EQ(pdf_pages(file), (QList<QStringList>{{"b@x.org", "a@x.org"}}));
    EXPECT_EQ(told, (QStringList{"Address 1 of 2", "Address 2 of 2", "clear"}));
    EXPECT_EQ(journal, QStringList{"notice: Finished!"});
}

class SavingTheGrid : public Exporting
{
};

TEST_F(SavingTheGrid, WritesHeadingsAndRows)
{
    run_sql(path(), "insert into master(email, name) values ('b@x.org', 'Hill, Bob'), "
                    "('a@x.org', null)");
    show(Data2, "master");
    save_grid_to(file);
    EXPECT_EQ(content(file), "email,name\r\nb@x.org,\"Hill, Bob\"\r\na@x.org,\r\n");
    EXPECT_EQ(told, (QStringList{"Row 1 of 2", "Row 2 of 2", "clear"}));
    EXPECT_EQ(journal, QStringList{"save file: Comma Seperated Values files (*.CSV)|*.CSV in "});
}

TEST_F(SavingTheGrid, FollowsItsOrderAndItsSource)
{
    insert_master({"b@x.org", "c@x.org", "a@x.org", "none"});
    show(Data2, "select email from master where email like '*@*'");
    Data2.record_set().sort(0, Qt::DescendingOrder);
    save_grid_to(file);
    EXPECT_EQ(content(file), "email\r\nc@x.org\r\nb@x.org\r\na@x.org\r\n");
    EXPECT_EQ(Data2.record_set().field("email"), "c@x.org");
}

TEST_F(SavingTheGrid, WritesFieldsWhole)
{
    const QString address = QString("a").repeated(5000) + "@x.org";
    insert_master({address});
    show(Data2, "master");
    save_grid_to(file);
    EXPECT_EQ(content(file), ("email,name\r\n" + address + ",\r\n").toUtf8());
}

TEST_F(SavingTheGrid, OfAnEmptyTableWritesTheHeadings)
{
    save_grid_to(file);
    EXPECT_EQ(content(file), "email,name\r\n");
}

TEST_F(SavingTheGrid, WithoutADatabaseWritesAnEmptyLine)
{
    DataConnection none(engine);
    prompts.will_answer(file);
    save_grid({none, prompts, *this});
    EXPECT_EQ(content(file), "\r\n");
}

TEST_F(SavingTheGrid, CancelledDoesNothing)
{
    save_grid_to({});
    EXPECT_EQ(QDir(home.path()).entryList(QDir::Files), QStringList());
    EXPECT_EQ(told, QStringList());
}
} // namespace
