#include "tests/db/test_database.h"

#include <random>

namespace
{
const std::vector<TableColumn> targets = {
    {"system", "email"}, {"master", "email"}, {"system", "subject"}};

class DeleteContaining : public DatabaseTest
{
protected:
    DeleteContaining()
    {
        show(Data1, "system");
        show(Data2, "master");
    }

    void add(DataConnection &connection, const QString &email, const QString &subject = {})
    {
        RecordSet &set = connection.record_set();
        set.add_new();
        set.set_field("email", email);
        if (!subject.isNull())
            set.set_field("subject", subject);
        set.update();
    }

    QStringList rows(DataConnection &connection)
    {
        connection.refresh();
        return walk(connection, "email");
    }
};

TEST_F(DeleteContaining, LooksAtEveryColumnOfEveryTable)
{
    add(Data1, "ann@example.org", "hello");
    add(Data1, "bob@example.org", QString::fromUtf8("RÜCKLÄUFER: 12"));
    add(Data1, "cid@example.org", "ANN@EXAMPLE.ORG failed");
    add(Data1, "dan@example.org");
    add(Data2, "joann@example.org");
    add(Data2, QString::fromUtf8("rückläufer@example.org"));
    add(Data2, "eve@example.org");
    Data1.delete_containing(targets, {"ann@example.org", QString::fromUtf8("rückläufer:")});
    EXPECT_EQ(rows(Data1), QStringList{"dan@example.org"});
    EXPECT_EQ(rows(Data2),
              (QStringList{QString::fromUtf8("rückläufer@example.org"), "eve@example.org"}));
}

TEST_F(DeleteContaining, LeavesNullsAloneWhenAValueIsEmpty)
{
    add(Data1, "");
    run_sql(path(), "insert into master(name) values ('no address')");
    add(Data2, "ann@example.org");
    Data1.delete_containing(targets, {""});
    EXPECT_EQ(rows(Data1), QStringList());
    EXPECT_EQ(rows(Data2), QStringList{""});
}

TEST_F(DeleteContaining, KeepsWhatARecordSetShows)
{
    add(Data2, "ann@example.org");
    Data2.refresh();
    Data1.delete_containing(targets, {"ann"});
    EXPECT_EQ(walk(Data2, "email"), QStringList{"ann@example.org"});
    EXPECT_EQ(Data2.record_set().record_count(), 1);
    EXPECT_EQ(rows(Data2), QStringList());
}

TEST_F(DeleteContaining, ThrowsBeforeItDeletesAnything)
{
    add(Data2, "ann@example.org");
    const std::vector<TableColumn> no_table = {{"master", "email"}, {"nowhere", "email"}};
    const std::vector<TableColumn> no_column = {{"master", "email"}, {"system", "absent"}};
    EXPECT_EQ(number_of([&] { Data1.delete_containing(no_table, {"ann"}); }),
              error_number::table_not_found);
    EXPECT_EQ(number_of([&] { Data1.delete_containing(no_column, {"ann"}); }),
              error_number::too_few_parameters);
    EXPECT_EQ(number_of([&] {
                  Data1.delete_containing(targets, {"ann", "o'brien"});
              }),
              error_number::syntax_error);
    for (const char *wildcard : {"a*", "a?", "a#", "[a"})
        EXPECT_EQ(number_of([&] {
                      Data1.delete_containing(targets, {"ann", QString::fromUtf8(wildcard)});
                  }),
                  error_number::invalid_call);
    EXPECT_EQ(rows(Data2), QStringList{"ann@example.org"});
}

class Random
{
public:
    QString text(std::size_t most)
    {
        static const QStringList letters = {"a",
                                            "B",
                                            "b",
                                            "@",
                                            ".",
                                            QString::fromUtf8("ä"),
                                            QString::fromUtf8("Ä"),
                                            QString::fromUtf8("😀")};
        QString made;
        for (std::size_t length = 1 + engine_() % most; length > 0; --length)
            made += letters[static_cast<qsizetype>(engine_()) % letters.size()];
        return made;
    }

private:
    std::mt19937 engine_{11}; // always the same texts
};

TEST_F(DeleteContaining, DoesWhatTheSingleStatementsDo)
{
    Random random;
    for (int round = 0; round < 10; ++round) {
        QStringList emails;
        QStringList subjects;
        QStringList values;
        for (int i = 0; i < 30; ++i) {
            emails.append(random.text(7));
            subjects.append(random.text(7));
        }
        for (int i = 0; i < 4; ++i)
            values.append(random.text(3));
        const auto fill = [&] {
            Data1.execute("delete * from system");
            Data1.execute("delete * from master");
            for (int i = 0; i < emails.size(); ++i) {
                add(Data1, emails[i], subjects[i]);
                add(Data2, subjects[i]);
            }
        };
        fill();
        for (const QString &value : values) {
            Data1.execute({"delete * from system where email like '*", value, "*' "});
            Data1.execute({"delete * from master where email like '*", value, "*' "});
            Data1.execute({"delete * from system where subject like '*", value, "*' "});
        }
        const QStringList system = rows(Data1);
        const QStringList master = rows(Data2);
        fill();
        Data1.delete_containing(targets, values);
        EXPECT_EQ(rows(Data1), system);
        EXPECT_EQ(rows(Data2), master);
    }
}
} // namespace
