#include "bench/inputs/mailboxes.h"

#include "bench/inputs/message.h"
#include "bench/inputs/output_file.h"

#include <array>
#include <string>
#include <string_view>

namespace
{
std::string file_name(const Message &message, std::size_t number, bool seen)
{
    return std::to_string(message.date) + ".M" + std::to_string(number) + "P1.mx.example.org" +
           (seen ? ":2,S" : "");
}

std::string from_line(const Message &message)
{
    std::tm utc{};
    gmtime_r(&message.date, &utc);
    std::array<char, 64> date{};
    std::strftime(date.data(), date.size(), "%a %b %e %H:%M:%S %Y", &utc);
    return "From " + message.sender + ' ' + date.data() + '\n';
}

bool needs_escape(std::string_view line)
{
    const std::size_t start = line.find_first_not_of('>');
    return start != std::string_view::npos && line.substr(start).starts_with("From ");
}

std::string escaped(std::string_view text)
{
    std::string result;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find('\n', from), text.size() - 1) + 1;
        const std::string_view line = text.substr(from, end - from);
        result += needs_escape(line) ? ">" : "";
        result += line;
        from = end;
    }
    return result;
}
} // namespace

void write_maildir(const std::filesystem::path &folder, std::size_t count)
{
    for (const char *name : {"tmp", "new", "cur"})
        std::filesystem::create_directories(folder / name);
    for (std::size_t number = 0; number < count; ++number) {
        const Message message = make_message(number);
        const bool seen = number < count - count / 10;
        OutputFile file(folder / (seen ? "cur" : "new") / file_name(message, number, seen));
        file << message.text;
        file.close();
    }
}

void write_mbox(const std::filesystem::path &file, std::size_t count)
{
    OutputFile mbox(file);
    for (std::size_t number = 0; number < count; ++number) {
        const Message message = make_message(number);
        mbox << from_line(message) << escaped(message.text) << '\n';
    }
    mbox.close();
}
