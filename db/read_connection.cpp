#include "db/read_connection.h"

#include "db/database_file.h"
#include "db/sqlite_failure.h"

ReadConnection::ReadConnection(const DatabaseFile &file) : database_(file.open_reader()) {}

void ReadConnection::pin()
{
    if (pinned_)
        return;
    run("begin");
    pinned_ = true;
    run("select count(*) from sqlite_schema"); // the state is taken by the first read
}

void ReadConnection::unpin()
{
    if (!pinned_)
        return;
    pinned_ = false;
    run("commit");
}

void ReadConnection::run(const char *sql)
{
    if (database_->tryExec(sql) != SQLite::OK)
        throw sqlite_failure(handle(), QString::fromLatin1(sql));
}
