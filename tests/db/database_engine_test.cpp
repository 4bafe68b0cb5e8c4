#include "db/database_file.h"
#include "tests/db/test_database.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/fsuid.h>

namespace
{
class Engine : public DatabaseTest
{
protected:
    QString folder() const { return QFileInfo(path()).path(); }
    QStringList files() const { return QDir(folder()).entryList(QDir::Files | QDir::Hidden); }

    void put(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder() + '/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    int number_of_opening(const QString &name)
    {
        return number_of([&] { engine.open(folder() + '/' + name); });
    }
};

/// Takes the rights of a user who owns nothing, which the superuser's tests need as well.
class NobodysRights
{
public:
    NobodysRights() { setfsuid(65534); }
    ~NobodysRights() { setfsuid(0); }
    NobodysRights(const NobodysRights &) = delete;
    NobodysRights &operator=(const NobodysRights &) = delete;
};

TEST_F(Engine, NeverMakesAMissingFile)
{
    Data1.set_database_name("C:\\Ostrix\\none.mdb");
    const auto refresh = [&] { show(Data1, "master"); };
    EXPECT_EQ(number_of(refresh), error_number::could_not_find_file);
    EXPECT_EQ(description_of(refresh), "Could not find file 'C:\\Ostrix\\none.mdb'.");
    EXPECT_EQ(files(), QStringList{"Ostrix.mdb"});
    Data1.set_database_name("");
    EXPECT_EQ(number_of(refresh), error_number::could_not_find_file);
}

TEST_F(Engine, RefusesWhatIsNoDatabase)
{
    put("empty.mdb", "");
    put("text.mdb", "no database, but long enough to have a header of its own");
    put("broken.mdb", QByteArray("SQLite format 3\0", 16) + QByteArray(5000, 'x'));
    EXPECT_EQ(number_of_opening("empty.mdb"), error_number::unrecognised_database);
    EXPECT_EQ(number_of_opening("text.mdb"), error_number::unrecognised_database);
    EXPECT_EQ(number_of_opening("broken.mdb"), error_number::unrecognised_database);
    EXPECT_EQ(number_of_opening("."), error_number::path_file_access);
    EXPECT_EQ(QFileInfo(folder() + "/empty.mdb").size(), 0);
}

TEST_F(Engine, SharesAFileWhateverItIsCalled)
{
    QFile::link(path(), folder() + "/link.mdb");
    const auto file = engine.open(path());
    EXPECT_EQ(engine.open("c:\\ostrix\\OSTRIX.MDB"), file);
    EXPECT_EQ(engine.open(folder() + "/./link.mdb"), file);
}

TEST_F(Engine, LeavesOnlyTheDatabaseFileBehind)
{
    show(Data1, "master");
    show(Data2, "system");
    insert_master({"a"});
    EXPECT_GT(files().size(), 1);
    engine.close_all();
    EXPECT_EQ(files(), QStringList{"Ostrix.mdb"});
    EXPECT_FALSE(Data1.has_record_set());
    Data1.refresh();
    EXPECT_EQ(walk(Data1, "email"), QStringList{"a"});
}

TEST_F(Engine, ClosesAFileWithItsLastConnection)
{
    {
        DataConnection connection(engine);
        connection.set_database_name(path());
        show(connection, "master");
        connection.execute("delete * from master"); // pins what the connection shows
        EXPECT_GT(files().size(), 1);
    }
    EXPECT_EQ(files(), QStringList{"Ostrix.mdb"});
}

TEST_F(Engine, KeepsTheOldFileWhenTheNewOneCannotBeOpened)
{
    insert_master({"a"});
    show(Data1, "master");
    Data1.set_database_name("C:\\Ostrix\\none.mdb");
    EXPECT_NE(number_of([&] { Data1.refresh(); }), 0);
    EXPECT_EQ(walk(Data1, "email"), QStringList{"a"});
    QFile::copy(path(), folder() + "/other.mdb");
    Data1.set_database_name(folder() + "/other.mdb");
    run_sql(folder() + "/other.mdb", "delete from master");
    Data1.refresh();
    EXPECT_EQ(Data1.record_set().record_count(), 0);
}

TEST_F(Engine, ReadsAFileThatCannotBeWritten)
{
    insert_master({"a"});
    engine.close_all();
    const auto everybody = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    const auto enter = QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
    QFile::setPermissions(home.path(), everybody | enter | QFile::WriteOwner);
    QFile::setPermissions(folder(), everybody | enter);
    QFile::setPermissions(path(), everybody);
    const NobodysRights rights;
    show(Data1, "master");
    EXPECT_EQ(walk(Data1, "email"), QStringList{"a"});
    EXPECT_EQ(number_of([&] { Data1.execute("delete * from master"); }),
              error_number::cannot_update);
    EXPECT_EQ(number_of([&] { Data1.record_set().add_new(); }), error_number::cannot_update);
    EXPECT_EQ(files(), QStringList{"Ostrix.mdb"});
}

TEST_F(Engine, DoesNotRunWhatAStrangeFileHolds)
{
    run_sql(path(), "create trigger evil after insert on master begin delete from system; end; "
                    "create view seen as select * from master; insert into system(email) "
                    "values ('kept')");
    insert_master({"a"});
    show(Data1, "system");
    EXPECT_EQ(walk(Data1, "email"), QStringList{"kept"});
    EXPECT_EQ(number_of([&] { show(Data1, "seen"); }), error_number::table_not_found);
}
} // namespace
