// The plain way to store a list of addresses: one prepared insert a row, each with a commit of its
// own. Like the product it stores the last line first and leaves the very last one out. Shares no
// code with it.
#include "bench/peers/lines.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace
{
void store(SQLite::Database &database, const std::vector<std::string> &lines)
{
    SQLite::Statement insert(database, "insert into master(email) values(?)");
    for (std::size_t line = lines.size() - 1; line > 0; --line) {
        insert.bindNoCopy(1, lines[line - 1]);
        insert.exec();
        insert.reset();
    }
}
} // namespace

int main(int argc, char **argv)
try {
    if (argc != 3) {
        std::cerr << "usage: bench_row_loop DATABASE FILE\n";
        return 2;
    }
    const std::vector<std::string> lines = read_lines(argv[2]);
    if (lines.empty())
        return 0;
    SQLite::Database database(argv[1], SQLite::OPEN_READWRITE);
    database.exec("pragma journal_mode=wal");
    database.exec("pragma synchronous=normal");
    store(database, lines);
    return 0;
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
