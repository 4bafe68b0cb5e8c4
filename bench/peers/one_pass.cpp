// The least work that replays a log: one automaton of all its lines, one pass over each table, and
// the rows that match deleted by their number in one transaction. Shares no code with the product.
#include "bench/peers/aho_corasick.h"
#include "bench/peers/lines.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace
{
bool row_matches(SQLite::Statement &row, const AhoCorasick &words)
{
    for (int column = 1; column < row.getColumnCount(); ++column) {
        const SQLite::Column cell = row.getColumn(column);
        const char *text = cell.getText();
        if (words.matches({text, static_cast<std::size_t>(cell.getBytes())}))
            return true;
    }
    return false;
}

std::vector<std::int64_t> matching_rows(SQLite::Database &database, const char *select,
                                        const AhoCorasick &words)
{
    std::vector<std::int64_t> rows;
    SQLite::Statement row(database, select);
    while (row.executeStep()) {
        if (row_matches(row, words))
            rows.push_back(row.getColumn(0).getInt64());
    }
    return rows;
}

void delete_rows(SQLite::Database &database, const char *sql, const std::vector<std::int64_t> &rows)
{
    SQLite::Statement statement(database, sql);
    for (const std::int64_t row : rows) {
        statement.bind(1, row);
        statement.exec();
        statement.reset();
    }
}

void replay(SQLite::Database &database, const AhoCorasick &words)
{
    SQLite::Transaction all(database);
    const auto work = matching_rows(database, "select rowid,email,subject from system", words);
    const auto master = matching_rows(database, "select rowid,email from master", words);
    delete_rows(database, "delete from system where rowid=?", work);
    delete_rows(database, "delete from master where rowid=?", master);
    all.commit();
}
} // namespace

int main(int argc, char **argv)
try {
    if (argc != 3) {
        std::cerr << "usage: bench_one_pass DATABASE LOG\n";
        return 2;
    }
    const AhoCorasick words(read_lines(argv[2]));
    SQLite::Database database(argv[1], SQLite::OPEN_READWRITE);
    database.exec("pragma journal_mode=wal");
    database.exec("pragma synchronous=normal");
    replay(database, words);
    return 0;
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
