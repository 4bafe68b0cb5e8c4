// Makes everything that the benchmarks read: the same bytes on every machine.
#include "bench/inputs/databases.h"
#include "bench/inputs/mailboxes.h"
#include "bench/inputs/output_file.h"
#include "bench/inputs/people.h"
#include "platform/runtime_error.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

namespace
{
namespace fs = std::filesystem;

std::size_t scaled(double scale, std::size_t number)
{
    return std::max<std::size_t>(10, static_cast<std::size_t>(scale * static_cast<double>(number)));
}

void write_mail(const fs::path &folder, std::size_t count)
{
    write_maildir(folder / ("maildir-" + std::to_string(count)), count);
    write_mbox(folder / ("mbox-" + std::to_string(count)), count);
}

void write_replay(const fs::path &folder, const ReplaySize &size)
{
    write_replay_database(folder / "replay.mdb", size);
    write_log(folder / "system.log", size);
    write_statements(folder / "replay.sql", size);
}

/// What measure.py has to know of the inputs; written last, so that it marks a complete set.
void write_facts(const fs::path &file, double scale, std::size_t few, std::size_t many)
{
    OutputFile facts(file);
    const std::size_t weber = last_weber_below(scaled(scale, 500'000));
    facts << R"({"scale": )" << scale << R"(, "messages": [)" << few << ", " << many
          << R"(], "rows": )" << scaled(scale, 1'000'000) << R"(, "needle": "weber)" << weber
          << "\"}\n";
    facts.close();
}

void write_all(const fs::path &folder, double scale)
{
    const std::size_t few = scaled(scale, 10'000);
    const std::size_t many = scaled(scale, 50'000);
    if (!fs::create_directories(folder))
        throw std::runtime_error(folder.string() + " is there already");
    write_mail(folder, few);
    write_mail(folder, many);
    write_empty_database(folder / "empty.mdb");
    write_replay(folder, {scaled(scale, 100'000), scaled(scale, 20'000), scaled(scale, 1'000)});
    write_address_file(folder / "import.txt", scaled(scale, 100'000));
    write_list_database(folder / "lists.mdb", scaled(scale, 1'000'000));
    write_facts(folder / "facts.json", scale, few, many);
}
} // namespace

int main(int argc, char **argv)
try {
    const double scale = argc == 3 ? std::strtod(argv[2], nullptr) : 1.0;
    if (argc < 2 || argc > 3 || !(scale > 0.0 && scale <= 10.0)) {
        std::cerr << "usage: bench_make_inputs FOLDER [SCALE]   (0 < SCALE <= 10)\n"
                     "FOLDER must not be there yet.\n";
        return 2;
    }
    write_all(argv[1], scale);
    return 0;
} catch (const RuntimeError &error) {
    std::cerr << error.description().toStdString() << '\n';
    return 1;
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
