#include "bench/inputs/databases.h"

#include "bench/inputs/output_file.h"
#include "bench/inputs/people.h"
#include "bench/inputs/prose.h"
#include "db/schema.h"

#include <QString>
#include <SQLiteCpp/SQLiteCpp.h>

#include <cctype>
#include <functional>
#include <vector>

namespace
{
constexpr std::size_t text_size = 1'900;
constexpr std::size_t repeated = 8; // one row in so many repeats the one before it

// Lines of each kind in a thousand; what is left names nobody in the tables.
constexpr std::size_t master_lines = 798;
constexpr std::size_t work_lines = 144;
constexpr std::size_t subject_lines = 18;

// People of the master list have even numbers and people of the work table odd ones.
Person master_person(std::size_t row)
{
    return person(1'000'000 + 2 * row);
}
Person work_person(std::size_t row)
{
    return person(1'000'001 + 2 * row);
}

std::string row_subject(std::size_t row)
{
    return "Reference " + std::to_string(10'000'000 + row);
}

SQLite::Database create(const std::filesystem::path &file)
{
    create_database(QString::fromStdString(std::filesystem::absolute(file).string()));
    return {file.string(), SQLite::OPEN_READWRITE};
}

void fill(SQLite::Database &database, const char *insert, std::size_t rows,
          const std::function<void(SQLite::Statement &, std::size_t)> &bind)
{
    SQLite::Transaction all(database);
    SQLite::Statement statement(database, insert);
    for (std::size_t row = 0; row < rows; ++row) {
        bind(statement, row);
        statement.exec();
        statement.reset();
    }
    all.commit();
}

void bind_person(SQLite::Statement &statement, const Person &who)
{
    statement.bind(1, who.address);
    statement.bind(2, who.name);
}

void fill_work_table(SQLite::Database &database, std::size_t rows)
{
    Random random(7);
    fill(database, "insert into system(email,name,subject,date,text) values(?,?,?,?,?)", rows,
         [&random](SQLite::Statement &statement, std::size_t row) {
             bind_person(statement, work_person(row));
             statement.bind(3, row_subject(row));
             statement.bind(4, "2024-05-01 10:00:00");
             statement.bind(5, prose(random, text_size, true));
         });
}

/// The share `part` of `whole` of the log's lines that `thousandths` of them make.
std::size_t share(std::size_t lines, std::size_t thousandths)
{
    return lines * thousandths / 1'000;
}

/// `count` rows spread over a table of `rows`.
std::size_t spread(std::size_t index, std::size_t count, std::size_t rows)
{
    return index * rows / count;
}

std::vector<std::string> log_entries(const ReplaySize &size)
{
    std::vector<std::string> entries;
    const auto add = [&](std::size_t count, std::size_t rows, const auto &text) {
        for (std::size_t index = 0; index < count; ++index)
            entries.push_back(text(spread(index, count, rows)));
    };
    add(share(size.log_lines, master_lines), size.master_rows,
        [](std::size_t row) { return master_person(row).address; });
    add(share(size.log_lines, work_lines), size.work_rows,
        [](std::size_t row) { return work_person(row).address; });
    add(share(size.log_lines, subject_lines), size.work_rows,
        [](std::size_t row) { return row_subject(row + 1); });
    while (entries.size() + 1 < size.log_lines)
        entries.push_back(person(9'000'000 + entries.size()).address);
    return entries;
}

/// All lines, the time stamp first, the kinds mixed.
std::vector<std::string> log_lines(const ReplaySize &size)
{
    std::vector<std::string> lines = log_entries(size);
    Random random(11);
    for (std::size_t left = lines.size(); left > 1; --left)
        std::swap(lines[left - 1], lines[random.below(left)]);
    lines.insert(lines.begin(), "2024-05-02 09:30:00");
    return lines;
}

Person list_person(std::size_t row)
{
    if (row % repeated != repeated - 1)
        return person(row);
    Person same = person(row - 1);
    if (row / repeated % 2 == 0) {
        for (char &c : same.address)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return same;
}
} // namespace

void write_empty_database(const std::filesystem::path &file)
{
    create(file);
}

void write_replay_database(const std::filesystem::path &file, const ReplaySize &size)
{
    SQLite::Database database = create(file);
    fill(database, "insert into master(email,name) values(?,?)", size.master_rows,
         [](SQLite::Statement &statement, std::size_t row) {
             bind_person(statement, master_person(row));
         });
    fill_work_table(database, size.work_rows);
}

void write_log(const std::filesystem::path &file, const ReplaySize &size)
{
    OutputFile log(file);
    for (const std::string &line : log_lines(size))
        log << line << "\r\n";
    log.close();
}

void write_statements(const std::filesystem::path &file, const ReplaySize &size)
{
    OutputFile statements(file);
    for (const std::string &line : log_lines(size)) {
        for (const char *cell :
             {"system where email", "master where email", "system where subject"})
            statements << "delete from " << cell << " like '%" << line << "%';\n";
    }
    statements.close();
}

void write_address_file(const std::filesystem::path &file, std::size_t count)
{
    OutputFile list(file);
    for (std::size_t line = 0; line <= count; ++line)
        list << person(line).address << "\r\n";
    list.close();
}

void write_list_database(const std::filesystem::path &file, std::size_t rows)
{
    SQLite::Database database = create(file);
    fill(database, "insert into master(email,name) values(?,?)", rows,
         [](SQLite::Statement &statement, std::size_t row) {
             bind_person(statement, list_person(row));
         });
}
