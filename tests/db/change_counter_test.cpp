#include "db/change_counter.h"
#include "tests/db/test_database.h"

#include <SQLiteCpp/Database.h>

namespace
{
class TransactionsCounted : public DatabaseTest
{
protected:
    TransactionsCounted() { show(Data1, "master"); } // opens the write-ahead log

    std::uint32_t count() { return transactions_counted(looker.getHandle()); }

    SQLite::Database looker{path().toStdString(), SQLite::OPEN_READWRITE, 2000};
};

TEST_F(TransactionsCounted, GrowWithEveryTransactionOfAnyProgram)
{
    looker.exec("select count(*) from master");
    const auto start = count();
    run_sql(path(), "insert into master(email) values ('a')");
    EXPECT_EQ(count(), start + 1);
    run_sql(path(), "begin; insert into master(email) values ('b'), ('c'); "
                    "delete from master where email = 'a'; commit");
    EXPECT_EQ(count(), start + 2);
    looker.exec("update master set email = 'd'");
    EXPECT_EQ(count(), start + 3);
    run_sql(path(), "select * from master; delete from master where email = 'none'");
    EXPECT_EQ(count(), start + 3);
}

TEST_F(TransactionsCounted, AreNoneWithoutAWriteAheadLog)
{
    SQLite::Database memory(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    memory.exec("create table t(a)");
    EXPECT_EQ(transactions_counted(memory.getHandle()), 0U);
}

// Between two refreshes both the program and another one may write, in any order.
TEST_F(TransactionsCounted, ARefreshSeesWhatAnotherProgramWroteBetweenOwnWrites)
{
    const auto own_insert = [this] { insert_master({"own"}); };
    const auto own_delete = [this] {
        Data1.execute("delete * from master where email like 'own'");
    };
    const auto own_no_change = [this] { Data1.execute("update master set email = 'other'"); };
    const auto other = [this] { run_sql(path(), "insert into master(email) values ('other')"); };
    const std::vector<std::function<void()>> steps = {own_insert, own_delete, own_no_change, other};
    qint64 others = 0;
    for (std::size_t order = 0; order < 256; ++order) {
        qint64 owns = 0;
        for (const std::size_t step : {order % 4, order / 4 % 4, order / 16 % 4, order / 64}) {
            Data1.record_set().record_count(); // the count is known from now on
            steps[step]();
            owns = step == 0 ? owns + 1 : step == 1 ? 0 : owns;
            others += step == 3 ? 1 : 0;
            if (step == 2) {
                others += owns;
                owns = 0;
            }
        }
        Data1.refresh();
        ASSERT_EQ(Data1.record_set().record_count(), owns + others) << order;
        Data1.execute("delete * from master");
        others = 0;
        Data1.refresh();
    }
}
} // namespace
