#include "db/statement.h"
#include "platform/runtime_error.h"

#include <gtest/gtest.h>

namespace
{
TEST(Statement, JoinsItsPartsAsTheyAre)
{
    const QString value = QStringLiteral("a b");
    EXPECT_EQ(Statement("select * from system").text(), "select * from system");
    EXPECT_EQ(Statement("where email like '*", value, "*' ").text(), "where email like '*a b*' ");
    EXPECT_EQ(Statement("set email =  ' ", value, " ' where email like '*", value, "*' ").text(),
              "set email =  ' a b ' where email like '*a b*' ");
}

TEST(Statement, IsBrokenByAQuoteInAnyValue)
{
    const QString good = QStringLiteral("good");
    EXPECT_NO_THROW(Statement("like '*", good, "*'").check_values());
    EXPECT_NO_THROW(Statement("like '*x*'").check_values());
    for (const QString &bad : {QStringLiteral("o'brien"), QStringLiteral("two '' quotes"),
                               QStringLiteral("' or ''='")}) {
        EXPECT_THROW(Statement("like '*", bad, "*'").check_values(), RuntimeError);
        EXPECT_THROW(Statement("= '", good, "' and = '", bad, "'").check_values(), RuntimeError);
        EXPECT_THROW(Statement("= '", bad, "' and = '", good, "'").check_values(), RuntimeError);
    }
}

TEST(Statement, NamesItsTextInTheError)
{
    try {
        Statement("like '*", QStringLiteral("o'brien"), "*' ").check_values();
        FAIL();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), error_number::syntax_error);
        EXPECT_TRUE(error.description().contains("like '*o'brien*' "));
    }
}
} // namespace
