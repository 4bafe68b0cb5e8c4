#include "tests/db/test_database.h"

namespace
{
class Records : public DatabaseTest
{
protected:
    RecordSet &set() { return Data1.record_set(); }
};

TEST_F(Records, AreWalkedFromTheFirstToTheEnd)
{
    insert_master({"a", "b", "c"});
    show(Data1, "master");
    EXPECT_EQ(set().absolute_position(), 0);
    EXPECT_EQ(walk(Data1, "EMAIL"), (QStringList{"a", "b", "c"}));
    EXPECT_TRUE(set().eof());
    EXPECT_EQ(set().absolute_position(), -1);
    EXPECT_EQ(number_of([&] { set().move_next(); }), error_number::no_current_record);
    EXPECT_EQ(number_of([&] { set().field("email"); }), error_number::no_current_record);
    set().move_first();
    EXPECT_EQ(set().field("email"), "a");
}

TEST_F(Records, OfAnEmptySetHaveNoCurrentOne)
{
    show(Data1, "master");
    EXPECT_TRUE(set().eof());
    EXPECT_EQ(set().record_count(), 0);
    EXPECT_EQ(set().percent_position(), 0);
    EXPECT_EQ(number_of([&] { set().field("email"); }), error_number::no_current_record);
    EXPECT_EQ(number_of([&] { set().move_next(); }), error_number::no_current_record);
    EXPECT_EQ(number_of([&] { set().delete_current(); }), error_number::no_current_record);
}

TEST_F(Records, AreMovedToByPosition)
{
    insert_master({"a", "b", "c"});
    show(Data1, "master");
    set().move_to(2);
    EXPECT_EQ(set().field("email"), "c");
    EXPECT_EQ(number_of([&] { set().move_to(3); }), error_number::no_current_record);
    EXPECT_EQ(number_of([&] { set().move_to(-1); }), error_number::no_current_record);
    EXPECT_EQ(set().field("email"), "c");
}

TEST_F(Records, AreVisitedWithoutMovingTheCurrentOne)
{
    run_sql(path(), "insert into master(email, name) values ('b', 'Bob'), ('a', null), ('c', 'C')");
    show(Data1, "select * from master");
    set().move_next();
    QStringList visited;
    const auto visit = [&visited](const QStringList &fields) { visited.append(fields.join('|')); };
    set().walk({"NAME", "email"}, visit);
    EXPECT_EQ(visited, (QStringList{"Bob|b", "|a", "C|c"}));
    EXPECT_EQ(set().field("email"), "a");
    visited.clear();
    EXPECT_EQ(number_of([&] {
                  set().walk({"email", "subject"}, visit);
              }),
              error_number::item_not_found);
    EXPECT_EQ(visited, QStringList());
}

TEST_F(Records, AreVisitedInTheSetsOrder)
{
    insert_master({"b", "a", "x", "c"});
    QStringList visited;
    const auto visit = [&visited](const QStringList &fields) { visited += fields; };
    const auto visited_of = [&](const QString &source) {
        show(Data1, source);
        visited.clear();
        set().walk({"email"}, visit);
        return visited;
    };
    EXPECT_EQ(visited_of("master"), (QStringList{"b", "a", "x", "c"}));
    EXPECT_EQ(visited_of("select * from master order by email"), (QStringList{"a", "b", "c", "x"}));
    EXPECT_EQ(visited_of("select * from master where email like 'c'"), QStringList{"c"});
    EXPECT_EQ(visited_of("select distinct email from master"), (QStringList{"b", "a", "x", "c"}));
    EXPECT_EQ(visited_of("system"), QStringList());
    show(Data1, "master");
    set().sort(0, Qt::DescendingOrder);
    visited.clear();
    set().walk({"email"}, visit);
    EXPECT_EQ(visited, (QStringList{"x", "c", "b", "a"}));
}

TEST_F(Records, ThatChangeWhileTheyAreVisitedAreThoseOfTheRefresh)
{
    insert_master({"a", "b", "c"});
    show(Data1, "master");
    QStringList visited;
    set().walk({"email"}, [&](const QStringList &fields) {
        visited += fields;
        Data1.execute("insert into master(email, name) select email, name from master");
        Data1.execute("delete * from master where email like 'c'");
    });
    EXPECT_EQ(visited, (QStringList{"a", "b", "c"}));
}

TEST_F(Records, TellHowFarTheWalkIs)
{
    insert_master({"a", "b", "c", "d"});
    show(Data1, "master");
    QList<int> percents;
    for (; !set().eof(); set().move_next())
        percents.append(set().percent_position());
    percents.append(set().percent_position());
    EXPECT_EQ(percents, (QList<int>{0, 25, 50, 75, 100}));
}

TEST_F(Records, AreAddedWithTheirAssignedFieldsOnly)
{
    show(Data1, "select * from system");
    set().add_new();
    set().set_field("Email", "ann@example.org");
    set().set_field("text", QString::fromUtf8("Zeile\r\nß 😀"));
    set().update();
    EXPECT_EQ(set().record_count(), 0); // shown from the next refresh on
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "text"), QStringList{QString::fromUtf8("Zeile\r\nß 😀")});
    show(Data1, "select * from system where subject = '' or subject <> ''");
    EXPECT_EQ(set().record_count(), 0); // the subject is NULL
}

TEST_F(Records, AreAddedWithoutAnyField)
{
    show(Data1, "master");
    set().add_new();
    set().update();
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "email"), QStringList{""});
}

TEST_F(Records, AreChanged)
{
    insert_master({"a", "b"});
    show(Data1, "master");
    set().move_next();
    set().edit();
    set().set_field("name", "B");
    set().update();
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "name"), (QStringList{"", "B"}));
    EXPECT_EQ(walk(Data1, "email"), (QStringList{"a", "b"}));
}

TEST_F(Records, AreDeletedInAWalk)
{
    insert_master({"a", "b", "c"});
    show(Data1, "master");
    set().delete_current();
    EXPECT_EQ(number_of([&] { set().field("email"); }), error_number::record_deleted);
    EXPECT_EQ(number_of([&] { set().delete_current(); }), error_number::record_deleted);
    set().move_next();
    EXPECT_EQ(set().field("email"), "b");
    set().move_next();
    set().delete_current();
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "email"), QStringList{"b"});
}

TEST_F(Records, DeletedByAnotherConnectionCannotBeChanged)
{
    insert_master({"a"});
    show(Data1, "master");
    show(Data2, "master");
    Data2.execute("delete * from master");
    EXPECT_EQ(set().field("email"), "a"); // as it was at the refresh
    set().edit();
    set().set_field("email", "b");
    EXPECT_EQ(number_of([&] { set().update(); }), error_number::record_deleted);
    EXPECT_EQ(number_of([&] { set().delete_current(); }), error_number::record_deleted);
}

TEST_F(Records, AreAssignedOnlyWhileAddedOrChanged)
{
    insert_master({"a"});
    show(Data1, "master");
    EXPECT_EQ(number_of([&] { set().set_field("email", "x"); }), error_number::update_without_edit);
    EXPECT_EQ(number_of([&] { set().update(); }), error_number::update_without_edit);
    set().add_new();
    EXPECT_EQ(number_of([&] { set().set_field("nothing", "x"); }), error_number::item_not_found);
    set().move_first(); // gives the new record up
    EXPECT_EQ(number_of([&] { set().update(); }), error_number::update_without_edit);
    EXPECT_EQ(number_of([&] { set().field("nothing"); }), error_number::item_not_found);
}

TEST_F(Records, OfADistinctSetCannotBeUpdated)
{
    insert_master({"a"});
    show(Data1, "select distinct email from master");
    EXPECT_EQ(number_of([&] { set().add_new(); }), error_number::cannot_update);
    EXPECT_EQ(number_of([&] { set().edit(); }), error_number::cannot_update);
    EXPECT_EQ(number_of([&] { set().delete_current(); }), error_number::cannot_update);
}

TEST_F(Records, ThatAreDistinctIgnoreLetterCaseAndKeepTheFirstSpelling)
{
    insert_master({QString::fromUtf8("Ähre"), "b", QString::fromUtf8("äHRE"), "", "B", ""});
    run_sql(path(), "insert into master(name) values ('x'), ('y')");
    show(Data1, "select distinct email from master");
    EXPECT_EQ(walk(Data1, "email"), (QStringList{QString::fromUtf8("Ähre"), "b", "", ""}));
    show(Data1, "select distinct email, name from master");
    EXPECT_EQ(set().record_count(), 5); // the two without an address have two names
}

TEST_F(Records, AreSortedNumbersFirstThenTextAndStable)
{
    run_sql(path(), "insert into master(email, name) values ('b', '1'), ('10', '2'), ('A', '3'), "
                    "('9', '4'), ('B', '5'), (' 9.5', '6'), ('', '7'), ('-1', '8'), ('a', '9'), "
                    "('1e400', '10'), ('inf', '11')");
    show(Data1, "master");
    set().move_next();
    set().sort(0, Qt::AscendingOrder);
    EXPECT_EQ(set().absolute_position(), 0);
    EXPECT_EQ(walk(Data1, "name").join(' '), "8 4 6 2 7 10 3 9 1 5 11");
    set().sort(0, Qt::DescendingOrder);
    EXPECT_EQ(walk(Data1, "name").join(' '), "11 1 5 3 9 10 7 2 6 4 8");
    EXPECT_EQ(number_of([&] { set().sort(2, Qt::AscendingOrder); }), error_number::item_not_found);
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "name").join(' '), "1 2 3 4 5 6 7 8 9 10 11");
}

TEST_F(Records, GiveCellsWithoutMoving)
{
    insert_master({"a", QString(5000, 'x'), QString(9, 'y') + QString::fromUtf8("😀")});
    show(Data1, "master");
    EXPECT_EQ(set().cell(1, 0, 300), QString(300, 'x'));
    EXPECT_EQ(set().cell(1, 0, 2000), QString(2000, 'x'));
    EXPECT_EQ(set().cell(2, 0, 10), QString(9, 'y')); // no half of a pair
    EXPECT_EQ(set().cell(3, 0, 10), QString());
    EXPECT_EQ(set().cell(0, 2, 10), QString());
    EXPECT_EQ(set().cell(-1, 0, 10), QString());
    EXPECT_EQ(set().field("email"), "a");
}
} // namespace
