#include "db/schema.h"
#include "tests/db/test_database.h"

#include <QDir>
#include <QFileInfo>

namespace
{
class Schema : public DatabaseTest
{
protected:
    QStringList columns(const QString &table)
    {
        show(Data1, table);
        return Data1.record_set().columns();
    }
};

TEST_F(Schema, HasTheFiveTables)
{
    EXPECT_EQ(columns("system"), (QStringList{"email", "subject", "date", "name", "text"}));
    EXPECT_EQ(columns("master"), (QStringList{"email", "name"}));
    EXPECT_EQ(columns("email"),
              (QStringList{"email", "subject", "name", "date", "text", "groups", "groups2"}));
    EXPECT_EQ(columns("email2"), (QStringList{"email", "groups"}));
    EXPECT_EQ(columns("import"), QStringList{"email"});
}

TEST_F(Schema, IsOneFileOfItsOwner)
{
    const QFileInfo file(path());
    EXPECT_EQ(file.dir().entryList(QDir::Files | QDir::Hidden), QStringList{"Ostrix.mdb"});
    EXPECT_FALSE(file.permissions() & (QFile::ReadOther | QFile::ReadGroup));
}

TEST_F(Schema, NeverReplacesAFileAndLeavesNothingWhenItFails)
{
    insert_master({"a"});
    EXPECT_EQ(number_of([&] { create_database(path()); }), error_number::path_file_access);
    EXPECT_EQ(number_of([] { create_database("C:\\none\\x.mdb"); }), error_number::path_not_found);
    EXPECT_EQ(QFileInfo(path()).dir().entryList({".new*"}, QDir::Files | QDir::Hidden),
              QStringList());
    show(Data1, "master");
    EXPECT_EQ(Data1.record_set().record_count(), 1);
}
} // namespace
