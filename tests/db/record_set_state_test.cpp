#include "db/open_query.h"
#include "tests/db/test_database.h"

#include <QFileInfo>

// What a record set shows is the state at its refresh, whoever writes.
namespace
{
class RecordSetState : public DatabaseTest
{
protected:
    RecordSetState() { insert_master({"a", "b", "c"}); }

    void add_row(DataConnection &connection, const QString &email)
    {
        connection.record_set().add_new();
        connection.record_set().set_field("email", email);
        connection.record_set().update();
    }
};

const QStringList at_refresh = {"a", "b", "c"};

TEST_F(RecordSetState, StaysWhenRowsAreAdded)
{
    show(Data1, "master");
    show(Data2, "select * from master");
    add_row(Data1, "d");
    Data2.execute("insert into master(email) select email from master");
    for (DataConnection *connection : {&Data1, &Data2}) {
        EXPECT_EQ(connection->record_set().record_count(), 3);
        EXPECT_EQ(walk(*connection, "email"), at_refresh);
        connection->refresh();
        EXPECT_EQ(connection->record_set().record_count(), 8);
        EXPECT_EQ(walk(*connection, "email").size(), 8);
    }
}

TEST_F(RecordSetState, StaysWhenRowsAreDeleted)
{
    show(Data1, "master");
    show(Data2, "select * from master where email like '*'");
    Data1.execute("delete * from master where email like 'b'");
    Data1.execute("delete * from master");
    for (DataConnection *connection : {&Data1, &Data2}) {
        EXPECT_EQ(connection->record_set().record_count(), 3);
        EXPECT_EQ(walk(*connection, "email"), at_refresh);
        connection->refresh();
        EXPECT_EQ(connection->record_set().record_count(), 0);
    }
}

TEST_F(RecordSetState, StaysWhenRowsAreChanged)
{
    show(Data1, "master");
    show(Data2, "select distinct email from master");
    Data2.execute("update master set email =  ' x ' where email like '*b*' ");
    EXPECT_EQ(walk(Data1, "email"), at_refresh);
    EXPECT_EQ(walk(Data2, "email"), at_refresh);
    Data1.record_set().move_first();
    Data1.record_set().edit();
    Data1.record_set().set_field("email", "y");
    Data1.record_set().update();
    EXPECT_EQ(walk(Data1, "email"), at_refresh);
    EXPECT_EQ(walk(Data2, "email"), at_refresh);
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "email"), (QStringList{"y", " x ", "c"}));
}

TEST_F(RecordSetState, StaysWhenTheLastRowGoesAndItsNumberIsTakenAgain)
{
    show(Data1, "master");
    Data2.set_record_source("master");
    Data2.refresh();
    Data2.execute("delete * from master where email like 'c'");
    Data2.refresh();
    add_row(Data2, "new");
    EXPECT_EQ(walk(Data1, "email"), at_refresh);
    EXPECT_EQ(walk(Data2, "email"), (QStringList{"a", "b"}));
    Data2.refresh();
    EXPECT_EQ(walk(Data2, "email"), (QStringList{"a", "b", "new"}));
}

TEST_F(RecordSetState, StaysInTheMiddleOfAWalk)
{
    show(Data1, "master");
    RecordSet &set = Data1.record_set();
    EXPECT_EQ(set.field("email"), "a");
    show(Data2, "master");
    add_row(Data2, "d");
    set.move_next();
    EXPECT_EQ(set.field("email"), "b");
    Data2.execute("delete * from master where email like 'c'");
    set.move_next();
    EXPECT_EQ(set.field("email"), "c");
    set.move_next();
    EXPECT_TRUE(set.eof());
}

TEST_F(RecordSetState, StaysWhenWrittenByAFailingStatement)
{
    run_sql(path(), "create table one(email text unique); insert into one values ('a')");
    show(Data1, "one");
    EXPECT_NE(number_of([&] { Data1.execute("insert into one(email) select email from master"); }),
              0);
    EXPECT_EQ(walk(Data1, "email"), QStringList{"a"});
    Data1.refresh();
    EXPECT_EQ(Data1.record_set().record_count(), 1);
}

TEST_F(RecordSetState, StaysWhenRowsChooseTheirOwnNumbers)
{
    run_sql(path(), "create table keyed(id integer primary key, email text); "
                    "insert into keyed values (10, 'ten')");
    show(Data1, "keyed");
    Data1.record_set().add_new();
    Data1.record_set().set_field("id", "5");
    Data1.record_set().set_field("email", "five");
    Data1.record_set().update();
    EXPECT_EQ(walk(Data1, "email"), QStringList{"ten"});
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "email"), (QStringList{"five", "ten"}));
}

TEST_F(RecordSetState, FollowsAnotherProgramAtTheRefresh)
{
    show(Data1, "master");
    EXPECT_EQ(Data1.record_set().record_count(), 3);
    run_sql(path(), "insert into master(email) values ('d')");
    EXPECT_EQ(walk(Data1, "email"), at_refresh);
    Data1.refresh();
    EXPECT_EQ(Data1.record_set().record_count(), 4);
}

// The rows are 1,000 when the run begins; none of them is looked at, however many are added.
TEST_F(RecordSetState, CostsNoReadingPerRowAdded)
{
    run_sql(path(), "with recursive n(i) as (select 1 union all select i + 1 from n where i < 997) "
                    "insert into master(email) select 'row' || i from n");
    show(Data1, "master");
    for (int i = 0; i < 200; ++i) {
        add_row(Data1, QString::number(i));
        Data1.refresh();
        EXPECT_EQ(Data1.record_set().query()->rows_read(), 0);
    }
    EXPECT_EQ(Data1.record_set().record_count(), 1200);
}

TEST_F(RecordSetState, DoesNotKeepTheLogFromBeingEmptiedDuringLongRuns)
{
    show(Data1, "system");
    show(Data2, "master");
    EXPECT_EQ(Data2.record_set().field("email"), "a"); // reading has begun
    for (int i = 0; i < 3000; ++i) {
        add_row(Data1, QString(2000, 'x'));
        Data1.refresh();
        if (i % 100 == 0)
            Data2.record_set().field("email");
    }
    EXPECT_LT(QFileInfo(path() + "-wal").size(), 6 << 20); // 12 MB were written
}
} // namespace
