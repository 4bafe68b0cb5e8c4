#include "db/dialect.h"
#include "platform/runtime_error.h"

#include <gtest/gtest.h>

namespace
{
SelectStatement select(const char *text)
{
    return parse_record_source(Statement::typed(QString::fromUtf8(text)));
}

int number_of(const char *source)
{
    try {
        select(source);
    } catch (const RuntimeError &error) {
        return error.number();
    }
    return 0;
}

ActionStatement action(const char *text)
{
    return parse_action(Statement::typed(QString::fromUtf8(text)));
}

TEST(RecordSource, IsATableOrASelect)
{
    EXPECT_EQ(select("master").table, "master");
    EXPECT_EQ(select(" My Table ").table, "My Table");
    EXPECT_EQ(select("[My Table]").table, "My Table");
    EXPECT_EQ(select("selection").table, "selection");
    EXPECT_EQ(select(" select * from system").table, "system");
    EXPECT_EQ(select("select * from system ").table, "system");
    EXPECT_EQ(select("select * FROM [my table];").table, "my table");
}

TEST(RecordSource, IsTakenApart)
{
    const SelectStatement parts = select(
        " select distinct email, [name] from master where email not like    ''    order by name "
        "desc, master.email");
    EXPECT_TRUE(parts.distinct);
    EXPECT_EQ(parts.columns, (QStringList{"email", "name"}));
    EXPECT_EQ(parts.where.text, "email not like ?1");
    EXPECT_EQ(parts.where.literals, QStringList{""});
    ASSERT_EQ(parts.order.size(), 2);
    EXPECT_EQ(parts.order[0].column, "name");
    EXPECT_TRUE(parts.order[0].descending);
    EXPECT_EQ(parts.order[1].column, "email");
    EXPECT_FALSE(parts.order[1].descending);
}

TEST(RecordSource, ComparesTextWithoutRegardToLetterCase)
{
    EXPECT_EQ(select("select * from t where a = 'X' and 'Y' <> b").where.text,
              "a = ?1 collate letters and ?2 collate letters <> b");
}

TEST(RecordSource, ThatIsMoreThanASelectOverOneTableIsRefused)
{
    for (const char *source : {"select * from a, b",
                               "select * from a join b",
                               "select count(*) from a",
                               "select a from b group by a",
                               "select a from b union select a from c",
                               "select * from a where x in (select y from z)",
                               "select * from a; delete * from a",
                               "select * from a where 1) or (1",
                               "select * from a where (x = 1",
                               "select",
                               "select *",
                               "select * from",
                               "select * from a where",
                               "select * from a where order by b",
                               "select * from a order by",
                               "select * from a where x = 'open",
                               "select * from [open",
                               "select * from a where x = ?",
                               "select * from a where x = :y",
                               "select * from a limit 3",
                               "select top 3 * from a",
                               "select email as mail from a"})
        EXPECT_EQ(number_of(source), error_number::syntax_error) << source;
}

TEST(RecordSource, WithABadPatternIsRefused)
{
    EXPECT_EQ(number_of("select * from a where b like '*[*'"), error_number::invalid_pattern);
    EXPECT_EQ(number_of("select * from a where b like '[z-a]'"), error_number::invalid_pattern);
    EXPECT_EQ(number_of("select * from a where b = '['"), 0);
}

TEST(Action, LosesItsAsteriskAndItsLiterals)
{
    EXPECT_EQ(action("delete * from master").sql.text, "delete from \"master\" ");
    EXPECT_EQ(action("delete from master").sql.text, "delete from \"master\" ");
    const ActionStatement statement =
        action("delete * from system where email like '*it''s \"x\"*' ");
    EXPECT_EQ(statement.action, Action::Delete);
    EXPECT_EQ(statement.table, "system");
    EXPECT_EQ(statement.sql.text, "delete from \"system\" where email like ?1");
    EXPECT_EQ(statement.sql.literals, QStringList{"*it's \"x\"*"});
}

TEST(Action, KeepsTheBlanksOfItsValues)
{
    const ActionStatement statement =
        action("update email2 set groups =  ' team ' where email like '*a*' ");
    EXPECT_EQ(statement.action, Action::Update);
    EXPECT_EQ(statement.table, "email2");
    EXPECT_EQ(statement.sql.literals, (QStringList{" team ", "*a*"}));
}

TEST(Action, CopiesBetweenTables)
{
    const ActionStatement statement =
        action("insert into master(email,name) select email,name from system");
    EXPECT_EQ(statement.action, Action::Insert);
    EXPECT_EQ(statement.table, "master");
    EXPECT_EQ(statement.sql.text,
              "insert into \"master\" ( email , name ) select email , name from system");
}

TEST(Action, IsNothingButDeleteInsertOrUpdate)
{
    for (const char *text :
         {"select * from master", "drop table master", "pragma user_version = 1", "attach 'x' as y",
          "", " ", "delete master", "insert or replace into master",
          "delete * from a; delete * from b", "update", "vacuum", "with x as (y) delete from z"})
        EXPECT_THROW(action(text), RuntimeError) << text;
}

TEST(QuotedName, HoldsAnyCharacter)
{
    EXPECT_EQ(quoted_name("my table"), "\"my table\"");
    EXPECT_EQ(quoted_name("a\"b"), "\"a\"\"b\"");
}
} // namespace
