// The plain way to store an inbox: GMime parses each message, five fields are decoded and inserted
// with a commit of their own. What the retrieval run is held against; shares no code with it.
#include <gmime/gmime.h>

#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using Owned = std::unique_ptr<T, Unref>;

struct FreeText
{
    void operator()(gpointer text) const { g_free(text); }
};

class WorkTable
{
public:
    explicit WorkTable(const std::string &file) : database_(file, SQLite::OPEN_READWRITE)
    {
        database_.exec("pragma journal_mode=wal");
        database_.exec("pragma synchronous=normal");
        insert_ = std::make_unique<SQLite::Statement>(
            database_, "insert into system(email,subject,date,name,text) values(?,?,?,?,?)");
    }

    void add(const std::array<std::string, 5> &fields)
    {
        for (std::size_t i = 0; i < fields.size(); ++i)
            insert_->bindNoCopy(static_cast<int>(i + 1), fields[i]);
        insert_->exec();
        insert_->reset();
    }

private:
    SQLite::Database database_;
    std::unique_ptr<SQLite::Statement> insert_;
};

std::string text_of(const char *text)
{
    return text == nullptr ? std::string() : text;
}

std::string local_date(GMimeMessage *message)
{
    GDateTime *date = g_mime_message_get_date(message);
    if (date == nullptr)
        return {};
    const std::time_t moment = g_date_time_to_unix(date);
    std::tm local{};
    localtime_r(&moment, &local);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local)};
}

InternetAddressMailbox *first_mailbox(GMimeMessage *message)
{
    InternetAddressList *from = g_mime_message_get_from(message);
    if (from == nullptr || internet_address_list_length(from) == 0)
        return nullptr;
    InternetAddress *first = internet_address_list_get_address(from, 0);
    return INTERNET_ADDRESS_IS_MAILBOX(first) ? INTERNET_ADDRESS_MAILBOX(first) : nullptr;
}

/// The first text part, in the order of the parts.
GMimeTextPart *first_text(GMimeObject *part)
{
    if (GMIME_IS_TEXT_PART(part))
        return GMIME_TEXT_PART(part);
    if (!GMIME_IS_MULTIPART(part))
        return nullptr;
    GMimeMultipart *parts = GMIME_MULTIPART(part);
    for (int i = 0; i < g_mime_multipart_get_count(parts); ++i) {
        if (GMimeTextPart *text = first_text(g_mime_multipart_get_part(parts, i)))
            return text;
    }
    return nullptr;
}

std::string body_text(GMimeMessage *message)
{
    GMimeObject *top = g_mime_message_get_mime_part(message);
    GMimeTextPart *part = top == nullptr ? nullptr : first_text(top);
    if (part == nullptr)
        return {};
    const std::unique_ptr<char, FreeText> text(g_mime_text_part_get_text(part));
    return text_of(text.get());
}

void store(GMimeMessage *message, WorkTable &table)
{
    InternetAddressMailbox *from = first_mailbox(message);
    std::array<std::string, 5> fields;
    if (from != nullptr) {
        fields[0] = text_of(internet_address_mailbox_get_addr(from));
        fields[3] = text_of(internet_address_get_name(INTERNET_ADDRESS(from)));
    }
    fields[1] = text_of(g_mime_message_get_subject(message));
    fields[2] = local_date(message);
    fields[4] = body_text(message);
    table.add(fields);
}

Owned<GMimeParser> parser_of(const fs::path &file, GMimeFormat format)
{
    const Owned<GMimeStream> stream(
        g_mime_stream_fs_open(file.c_str(), O_RDONLY | O_CLOEXEC, 0, nullptr));
    if (!stream)
        throw std::runtime_error("Cannot read " + file.string());
    Owned<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    g_mime_parser_set_format(parser.get(), format);
    return parser;
}

void store_maildir(const fs::path &folder, WorkTable &table)
{
    std::vector<fs::path> files;
    for (const char *name : {"cur", "new"}) {
        for (const fs::directory_entry &entry : fs::directory_iterator(folder / name))
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end(), [](const fs::path &a, const fs::path &b) {
        return a.filename().native() < b.filename().native();
    });
    for (const fs::path &file : files) {
        const Owned<GMimeParser> parser = parser_of(file, GMIME_FORMAT_MESSAGE);
        if (const Owned<GMimeMessage> message{
                g_mime_parser_construct_message(parser.get(), nullptr)})
            store(message.get(), table);
    }
}

void store_mbox(const fs::path &file, WorkTable &table)
{
    const Owned<GMimeParser> parser = parser_of(file, GMIME_FORMAT_MBOX);
    while (!g_mime_parser_eos(parser.get())) {
        if (const Owned<GMimeMessage> message{
                g_mime_parser_construct_message(parser.get(), nullptr)})
            store(message.get(), table);
    }
}
} // namespace

int main(int argc, char **argv)
try {
    if (argc != 3) {
        std::cerr << "usage: bench_gmime_loop DATABASE MAILDIR|MBOX\n";
        return 2;
    }
    g_mime_init();
    WorkTable table(argv[1]);
    if (fs::is_directory(argv[2]))
        store_maildir(argv[2], table);
    else
        store_mbox(argv[2], table);
    return 0;
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
