#include "platform/runtime_error.h"
#include "platform/text_file.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace
{
void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray bytes_of(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

template <typename Action>
int number_of(Action action)
{
    try {
        action();
    } catch (const RuntimeError &error) {
        return error.number();
    }
    return 0;
}

struct Decoded
{
    QByteArray bytes;
    QString text;
};
class DecodeText : public testing::TestWithParam<Decoded>
{
};

TEST_P(DecodeText, NamesTheEncodingByMarkThenByValidity)
{
    EXPECT_EQ(decode_text(GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Encodings, DecodeText,
    testing::Values(Decoded{"", ""}, Decoded{"plain", "plain"}, Decoded{"\xC3\xA4", u"ä"_qs},
                    Decoded{"\xEF\xBB\xBF\xC3\xA4", u"ä"_qs},            // UTF-8 with its mark
                    Decoded{QByteArray("\xFF\xFE\xE4\x00", 4), u"ä"_qs}, // UTF-16, small end first
                    Decoded{QByteArray("\xFE\xFF\x00\xE4", 4), u"ä"_qs}, // UTF-16, big end first
                    Decoded{"\xE4 \x80 \x93", u"ä € “"_qs},              // Windows-1252
                    Decoded{"Caf\xE9", u"Café"_qs}, // a UTF-8 letter would begin there
                    Decoded{"\xC3\xA4\xC3", u"Ã¤Ã"_qs},
                    Decoded{QByteArray("\xFF\xFE\xE4\x00\x41", 5), u"ä\uFFFD"_qs},
                    Decoded{"\x81", QString(QChar(0x81))}, // a byte without a character
                    Decoded{QByteArray("a\0b", 3), QString::fromLatin1("a\0b", 3)}));

TEST(SplitLines, EndsLinesAtCrLfLfAndCr)
{
    EXPECT_EQ(split_lines("a\r\nb\nc\rd"), (QStringList{"a", "b", "c", "d"}));
    EXPECT_EQ(split_lines("a\r\n\r\nb\r\n"), (QStringList{"a", "", "b"}));
    EXPECT_EQ(split_lines(""), QStringList());
    EXPECT_EQ(split_lines("\n"), QStringList{""});
}

TEST(ReadTextFile, SaysWhatIsWrongWithThePath)
{
    const PrivateHome home;
    EXPECT_EQ(number_of([&] { read_text_file(""); }), error_number::bad_file_name_or_number);
    EXPECT_EQ(number_of([&] { read_text_file(home.file("none")); }), error_number::file_not_found);
    EXPECT_EQ(number_of([&] { read_text_file(home.path()); }), error_number::path_file_access);
    ASSERT_EQ(mkfifo(home.file("pipe").toUtf8().constData(), 0600), 0);
    EXPECT_EQ(number_of([&] { read_text_file(home.file("pipe")); }),
              error_number::path_file_access);
}

TEST(OpenTextFile, IsReadAlsoWhenItsNameHasGone)
{
    const PrivateHome home;
    put(home.file("a"), "one\r\ntwo");
    OpenTextFile file(home.file("a"));
    ASSERT_TRUE(QFile::remove(home.file("a")));
    EXPECT_EQ(file.read(), "one\r\ntwo");
    EXPECT_EQ(number_of([&] { OpenTextFile(home.file("a")); }), error_number::file_not_found);
}

TEST(WriteTextFile, ReplacesTheWholeFile)
{
    const PrivateHome home;
    put(home.file("a"), "a much longer text than the new one");
    write_text_file(home.file("a"), u"ä\r\n"_qs);
    EXPECT_EQ(bytes_of(home.file("a")), "\xC3\xA4\r\n");
}

TEST(WriteTextFile, LeavesNothingBehindWhenItFails)
{
    const PrivateHome home;
    EXPECT_EQ(number_of([&] { write_text_file("", "x"); }), error_number::bad_file_name_or_number);
    EXPECT_EQ(number_of([&] { write_text_file(home.file("no/folder"), "x"); }),
              error_number::path_not_found);
    QDir(home.path()).mkdir("folder");
    EXPECT_EQ(number_of([&] { write_text_file(home.file("folder"), "x"); }),
              error_number::path_file_access);
    EXPECT_TRUE(QDir(home.file("folder")).isEmpty());
}

TEST(TextFileWriter, ShowsItsContentAtTheEndOnly)
{
    const PrivateHome home;
    put(home.file("a"), "old");
    {
        TextFileWriter given_up(home.file("a"));
        given_up.write("new");
    }
    EXPECT_EQ(bytes_of(home.file("a")), "old");
    TextFileWriter file(home.file("a"));
    file.write(u"ä"_qs);
    file.write("b\r\n");
    EXPECT_EQ(bytes_of(home.file("a")), "old");
    file.commit();
    EXPECT_EQ(bytes_of(home.file("a")), "\xC3\xA4"
                                        "b\r\n");
    EXPECT_EQ(QDir(home.path()).entryList(QDir::Files), QStringList{"a"});
}

TEST(AppendTextFile, AddsAtTheEndAndMakesTheFile)
{
    const PrivateHome home;
    append_text_file(home.file("log"), "one\r\n");
    append_text_file(home.file("log"), "two\r\n");
    EXPECT_EQ(bytes_of(home.file("log")), "one\r\ntwo\r\n");
    EXPECT_EQ(number_of([&] { append_text_file(home.file("no/folder"), "x"); }),
              error_number::path_not_found);
}

TEST(TextFile, OfMoreThanAGigabyteIsRefused)
{
    const PrivateHome home;
    QFile file(home.file("large.txt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize((1LL << 30) + 1)); // a hole: it takes no room
    try {
        read_text_file(file.fileName());
        ADD_FAILURE() << "it was read";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), error_number::path_file_access);
        EXPECT_TRUE(error.description().contains("larger than 1 GB"));
        EXPECT_TRUE(error.description().contains("large.txt"));
    }
}

TEST(TextFile, NeverTakesADatabasesPlace)
{
    const PrivateHome home;
    const QString database = home.file("list.mdb");
    for (const char *ending : {"", "-wal", "-shm"}) {
        QFile file(database + ending);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("SQLite format 3\0and more");
    }
    for (const char *ending : {"", "-wal", "-shm"}) {
        try {
            write_text_file(database + ending, "text");
            ADD_FAILURE() << "it was written over: " << ending;
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), error_number::permission_denied);
        }
        QFile file(database + ending);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(file.readAll().startsWith("SQLite format 3")) << ending;
    }
    write_text_file(home.file("mail-wal"), "text"); // a name alone makes no database
}
} // namespace
