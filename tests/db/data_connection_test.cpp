#include "tests/db/test_database.h"

#include <QFile>
#include <QSignalSpy>

namespace
{
class Connection : public DatabaseTest
{
};

TEST_F(Connection, HasNoRecordSetBeforeItsFirstRefresh)
{
    EXPECT_FALSE(Data1.has_record_set());
    EXPECT_EQ(number_of([&] { Data1.record_set(); }), error_number::object_not_set);
    EXPECT_EQ(number_of([&] { Data1.execute("delete * from master"); }),
              error_number::object_not_set);
    show(Data1, "master");
    EXPECT_TRUE(Data1.has_record_set());
    EXPECT_EQ(Data1.record_set().columns(), (QStringList{"email", "name"}));
}

TEST_F(Connection, ShowsAnotherSourceOnlyAfterARefresh)
{
    insert_master({"ann@example.org"});
    show(Data1, "master");
    Data1.set_record_source("select * from system");
    EXPECT_EQ(Data1.record_set().record_count(), 1);
    Data1.refresh();
    EXPECT_EQ(Data1.record_set().record_count(), 0);
}

TEST_F(Connection, SaysWhichNameIsWrongAndKeepsItsRecordSet)
{
    insert_master({"ann@example.org"});
    show(Data1, "master");
    const auto refused = [&](const char *source) {
        return description_of([&] { show(Data1, QString::fromUtf8(source)); });
    };
    EXPECT_TRUE(refused("nowhere").contains("'nowhere'"));
    EXPECT_TRUE(refused("select * from nowhere").contains("'nowhere'"));
    EXPECT_TRUE(refused("select absent from master").startsWith("Too few parameters. Expected 1."));
    EXPECT_TRUE(refused("select * from master where absent like 'x'").contains("'absent'"));
    EXPECT_TRUE(refused("select * from master order by absent").contains("'absent'"));
    EXPECT_TRUE(refused("select * from master where email like").contains("email like"));
    EXPECT_EQ(walk(Data1, "email"), QStringList{"ann@example.org"});
}

TEST_F(Connection, NumbersItsRefusals)
{
    EXPECT_EQ(number_of([&] { show(Data1, "nowhere"); }), error_number::table_not_found);
    EXPECT_EQ(number_of([&] { show(Data1, "select x from master"); }),
              error_number::too_few_parameters);
    EXPECT_EQ(number_of([&] { show(Data1, "select * from master where x = 1"); }),
              error_number::too_few_parameters);
    EXPECT_EQ(number_of([&] { show(Data1, "select * from master where email like"); }),
              error_number::syntax_error);
    EXPECT_EQ(number_of([&] { show(Data1, "select * from master where email like '['"); }),
              error_number::invalid_pattern);
    EXPECT_EQ(number_of([&] { show(Data1, "sqlite_schema"); }), error_number::table_not_found);
}

TEST_F(Connection, NumbersTheRefusalsOfActions)
{
    show(Data1, "master");
    EXPECT_EQ(number_of([&] { Data1.execute("delete * from nowhere"); }),
              error_number::table_not_found);
    EXPECT_EQ(number_of([&] { Data1.execute("delete * from master where x = 1"); }),
              error_number::too_few_parameters);
    EXPECT_EQ(number_of([&] { Data1.execute("insert into master(x) select email from system"); }),
              error_number::too_few_parameters);
    EXPECT_EQ(number_of([&] { Data1.execute("insert into master(email) select email from none"); }),
              error_number::table_not_found);
    EXPECT_EQ(number_of([&] { Data1.execute("update master set"); }), error_number::syntax_error);
}

TEST_F(Connection, RefusesAValueWithAQuoteAndLeavesTheRows)
{
    insert_master({"o'brien@example.org", "ann@example.org"});
    show(Data1, "master");
    const QString value = QStringLiteral("x*' or email like '*");
    EXPECT_EQ(number_of([&] {
                  Data1.execute({"delete * from master where email like '*", value, "*' "});
              }),
              error_number::syntax_error);
    Data2.set_record_source({"select * from master where email like '*", value, "*' "});
    EXPECT_EQ(number_of([&] { Data2.refresh(); }), error_number::syntax_error);
    Data1.refresh();
    EXPECT_EQ(Data1.record_set().record_count(), 2);
}

TEST_F(Connection, CopiesTheWorkTableWithItsDuplicates)
{
    run_sql(path(), "insert into system(email, name) values ('a@b', 'A'), ('a@b', 'A')");
    show(Data2, "master");
    Data2.execute("insert into master(email,name) select email,name from system");
    Data2.execute("insert into master(email,name) select email,name from system");
    Data2.refresh();
    EXPECT_EQ(walk(Data2, "name"), (QStringList{"A", "A", "A", "A"}));
}

TEST_F(Connection, UpdatesWithTheBlanksOfTheStatement)
{
    insert_master({"Old@example.org", "other@example.org"});
    show(Data1, "master");
    Data1.execute({"update master set email =  ' ", QStringLiteral("new@example.org"),
                   " ' where email like '*", QStringLiteral("OLD@"), "*' "});
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "email"), (QStringList{" new@example.org ", "other@example.org"}));
}

TEST_F(Connection, ReadsColumnsThatAreCalledLikeWordsOfTheLanguage)
{
    run_sql(path(), "insert into email values ('e', 's', 'n', 'd', 't', 'g', 'h')");
    for (const char *column : {"email", "subject", "name", "date", "text", "groups", "groups2"}) {
        const QString name = QString::fromUtf8(column);
        show(Data1,
             "select distinct email from email where " + name + " like '*" + name[0] + "*' ");
        EXPECT_EQ(Data1.record_set().record_count(), name == "groups2" ? 0 : 1) << column;
    }
    Data1.execute("update email set groups2 =  ' x ' where groups like '*g*' ");
    show(Data1, "select groups2, text from email");
    EXPECT_EQ(walk(Data1, "groups2"), QStringList{" x "});
}

TEST_F(Connection, ListsTheAddressesThatAreNotEmpty)
{
    insert_master({"b@x", "", "B@X", "a@x"});
    run_sql(path(), "insert into master(name) values ('no address')");
    show(Data2, " select distinct email from master where email not like    ''    ");
    EXPECT_EQ(walk(Data2, "email"), (QStringList{"b@x", "a@x"}));
}

TEST_F(Connection, ComparesTextWithoutRegardToLetterCase)
{
    insert_master({QString::fromUtf8("ÄRGER@x"), "b@x"});
    show(Data1, QString::fromUtf8("select * from master where email = 'ärger@X'"));
    EXPECT_EQ(Data1.record_set().record_count(), 1);
    show(Data1, QString::fromUtf8("select * from master where 'ärger@X' <> email"));
    EXPECT_EQ(walk(Data1, "email"), QStringList{"b@x"});
}

TEST_F(Connection, OrdersItsRows)
{
    insert_master({"b", "C", "a"});
    show(Data1, "select * from master order by email");
    EXPECT_EQ(walk(Data1, "email"), (QStringList{"a", "b", "C"}));
    show(Data1, "select * from master order by email desc");
    EXPECT_EQ(walk(Data1, "email"), (QStringList{"C", "b", "a"}));
}

TEST_F(Connection, TellsThatItsRowsChanged)
{
    show(Data1, "master");
    QSignalSpy changes(&Data1, &DataConnection::rows_changed);
    Data1.refresh();
    EXPECT_EQ(changes.count(), 1);
    Data1.record_set().sort(0, Qt::AscendingOrder);
    EXPECT_EQ(changes.count(), 2);
    EXPECT_NE(number_of([&] { show(Data1, "nowhere"); }), 0);
    EXPECT_EQ(changes.count(), 2);
}
} // namespace
