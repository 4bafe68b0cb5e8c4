#include "platform/runtime_error.h"
#include "platform/text_file.h"
#include "tests/support/print_qt.h"
#include "tests/support/private_home.h"
#include "transfer/import_items.h"

#include <QFile>
#include <QStringList>
#include <gtest/gtest.h>

#include <random>
#include <sys/resource.h>

namespace
{
QStringList all(const ImportItems &items)
{
    QStringList found;
    for (qsizetype i = 0; i <= items.highest(); ++i)
        found.append(items.at(i));
    return found;
}

struct File
{
    const char *what;
    QByteArray bytes;
    QStringList items;
};

void PrintTo(const File &file, std::ostream *out)
{
    *out << file.what;
}

class ImportItemsOf : public testing::TestWithParam<File>
{
};

TEST_P(ImportItemsOf, TheFile)
{
    EXPECT_EQ(all(import_items(decode_text(GetParam().bytes))), GetParam().items);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ImportItemsOf,
    testing::Values(
        File{"CR LF", "a@x\r\nb@x\r\nc@x\r\n", {"a@x", "b@x", "c@x"}},
        File{"LF", "a@x\nb@x\nc@x\n", {"a@x", "b@x", "c@x"}},
        File{"CR", "a@x\rb@x\rc@x\r", {"a@x", "b@x", "c@x"}},
        File{"mixed ends", "a@x\nb@x\r\nc@x\rd@x\n\re@x", {"a@x", "b@x", "c@x", "d@x", "e@x"}},
        File{"an open last line", "a@x\r\nb@x", {"a@x", "b@x"}},
        File{"one line without an end", "a@x", {"a@x"}},
        File{"empty lines", "\r\n\r\na@x\r\n\n\n\rb@x\r\n\r\n", {"a@x", "b@x"}},
        File{"line separators of other kinds are no line ends",
             "a@x\xE2\x80\xA8"
             "b@x\x0B"
             "c@x",
             {QStringLiteral("a@x\u2028b@x\u000Bc@x")}}));

INSTANTIATE_TEST_SUITE_P(
    Pieces, ImportItemsOf,
    testing::Values(
        File{"commas", "a@x,b@x,c@x", {"a@x", "b@x", "c@x"}},
        File{"commas at every end", ",,a@x,,b@x,,\r\n,", {"a@x", "b@x"}},
        File{"pieces without the sign go", "Name,eMail\r\nAnn,a@x\r\nBob,b@x\r\n", {"a@x", "b@x"}},
        File{"words around an address stay", "Ann Hill a@x\r\nb@x", {"Ann", "Hill", "a@x", "b@x"}},
        File{"words of a piece without an address go", "Ann Hill\r\nb@x c d", {"b@x", "c", "d"}},
        File{"blanks make empty items", " a@x  b@x ", {"", "a@x", "", "b@x", ""}},
        File{"semicolons part nothing", "a@x;b@x\r\nc@x", {"a@x;b@x", "c@x"}},
        File{"a sign alone", "@\r\nx\r\n@@", {"@", "@@"}},
        File{"letter case stays", "Ann@X.ORG\r\nann@x.org", {"Ann@X.ORG", "ann@x.org"}},
        File{"tabs part nothing", "Ann\ta@x\r\nb@x\t", {"Ann\ta@x", "b@x\t"}},
        File{"quotes stay", "\"Hill, Ann\",\"a@x\",'b@x'", {"\"a@x\"", "'b@x'"}},
        File{"a quoted comma parts all the same", "\"a@x,b@x\"", {"\"a@x", "b@x\""}},
        File{"the full-width sign is another one", "a\xEF\xBC\xA0x", {}}));

INSTANTIATE_TEST_SUITE_P(Nothing, ImportItemsOf,
                         testing::Values(File{"empty", "", {}}, File{"line ends", "\r\n\n\r", {}},
                                         File{"commas and blanks", ", , ,", {}},
                                         File{"no sign at all", "Ann\r\nBob, Carl\r\n", {}}));

const QByteArray nul("a@x\0y\r\nb@x\0\r\n\0", 13);
INSTANTIATE_TEST_SUITE_P(
    Encodings, ImportItemsOf,
    testing::Values(File{"UTF-8 with a mark",
                         "\xEF\xBB\xBF"
                         "a@x\nb@x",
                         {"a@x", "b@x"}},
                    File{"UTF-8", "j\xC3\xBCrgen@x\nb@x", {QStringLiteral("j\u00FCrgen@x"), "b@x"}},
                    File{"UTF-16, little end first",
                         QByteArray("\xFF\xFE"
                                    "a\0@\0x\0\r\0\n\0b\0@\0\xFC\0",
                                    18),
                         {"a@x", QStringLiteral("b@\u00FC")}},
                    File{"UTF-16, big end first",
                         QByteArray("\xFE\xFF\0a\0@\0x\0\n\0b\0@\0\xFC", 16),
                         {"a@x", QStringLiteral("b@\u00FC")}},
                    File{"Windows-1252",
                         "j\xFCrgen@x\r\n\x80@x",
                         {QStringLiteral("j\u00FCrgen@x"), QStringLiteral("\u20AC@x")}},
                    File{"NUL bytes stay",
                         nul,
                         {QString::fromLatin1("a@x\0y", 5), QString::fromLatin1("b@x\0", 4)}}));

TEST(ImportItemsStages, AreSeenInTheirOrder)
{
    QStringList seen;
    import_items("Ann Hill a@x\nBob\nb@x", [&seen](const QString &text) { seen.append(text); });
    EXPECT_EQ(seen, (QStringList{"Ann Hill a@x\nBob\nb@x\n", "Ann Hill a@x,Bob,b@x,",
                                 "Ann Hill a@x b@x", "Ann,Hill,a@x,b@x"}));
}

TEST(ImportItemsStages, LeaveWhoKeepsATextTheirOwn)
{
    const QString given = "a@x y\nb@x";
    QString first;
    import_items(given, [&first](const QString &text) { first = first.isEmpty() ? text : first; });
    EXPECT_EQ(given, "a@x y\nb@x");
    EXPECT_EQ(first, "a@x y\nb@x\n");
}

// The changes are made in place; plain functions on plain copies must come to the same.
QStringList stages_of_plain_functions(const QString &text)
{
    QString lines;
    const QStringList split = split_lines(text);
    for (const QString &line : split)
        lines += line + "\n";
    const QString commas = QString(lines).replace("\n", ",");
    const QString addresses = commas.split(',').filter("@").join(' ');
    return {lines, commas, addresses, QString(addresses).replace(' ', ',')};
}

TEST(ImportItemsStages, OfRandomTextsAreThoseOfPlainFunctions)
{
    const QString alphabet = "a@, \r\n";
    std::mt19937 random(1);
    for (int i = 0; i < 20'000; ++i) {
        QString text;
        for (auto left = random() % 12; left > 0; --left)
            text += alphabet[static_cast<qsizetype>(random() % 6)];
        QStringList seen;
        const ImportItems items =
            import_items(text, [&seen](const QString &stage) { seen.append(stage); });
        ASSERT_EQ(seen, stages_of_plain_functions(text));
        ASSERT_EQ(all(items), seen.last().isEmpty() ? QStringList() : seen.last().split(','));
    }
}

TEST(ImportItemNumbers, BeginAtZeroAndEndAtTheHighest)
{
    const auto number_of_failure = [](const ImportItems &items, qsizetype i) {
        try {
            items.at(i);
        } catch (const RuntimeError &error) {
            return error.number();
        }
        return 0;
    };
    const ImportItems two("a,b");
    EXPECT_EQ(two.highest(), 1);
    EXPECT_EQ(two.at(1), "b");
    EXPECT_EQ(number_of_failure(two, 2), error_number::subscript_out_of_range);
    EXPECT_EQ(number_of_failure(two, -1), error_number::subscript_out_of_range);
    const ImportItems none("");
    EXPECT_EQ(none.highest(), -1);
    EXPECT_EQ(number_of_failure(none, -2), error_number::subscript_out_of_range);
}

qint64 peak_memory()
{
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return used.ru_maxrss * 1024;
}

TEST(ImportItemsOfLargeFiles, TwoHundredMegabytesTakeFiveTimesThatAtMost)
{
    constexpr qint64 size = 200'000'000;
    const PrivateHome home;
    QFile file(home.file("large.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.write("first@x\n");
    file.resize(size); // NUL bytes in between: no piece is longer
    file.seek(size);
    file.write("\nlast@x\n");
    file.close();
    const qint64 before = peak_memory();
    QString shown;
    const ImportItems items =
        import_items(read_text_file(home.file("large.txt")),
                     [&shown](const QString &text) { shown = text; }); // as the window keeps it
    EXPECT_EQ(all(items), (QStringList{"first@x", "last@x"}));
    EXPECT_LE(peak_memory() - before, 5 * size);
}

TEST(ImportItemsOfLargeFiles, NothingButSeparatorsTakesNoMore)
{
    constexpr qsizetype size = 20'000'000;
    const QString text = "@" + QString(size, ' ');
    const qint64 before = peak_memory();
    const ImportItems items = import_items(text);
    EXPECT_EQ(items.highest(), size);
    EXPECT_EQ(items.at(size), "");
    EXPECT_EQ(items.at(size - 1), "");
    EXPECT_EQ(items.at(0), "@");
#ifndef __SANITIZE_ADDRESS__ // which keeps for a while what has been freed
    EXPECT_LE(peak_memory() - before, 5 * size);
#else
    EXPECT_GT(before, 0);
#endif
}

TEST(ImportItemsOfLargeFiles, NothingButLineEndsTakesNoMoreEither)
{
    constexpr qsizetype size = 20'000'000; // bytes
    const qint64 before = peak_memory();
    QString shown;
    QString text = decode_text(QByteArray(size, '\n'));
    import_items(std::move(text), [&shown](const QString &stage) { shown = stage; });
    EXPECT_EQ(shown, "");
#ifndef __SANITIZE_ADDRESS__ // which keeps for a while what has been freed
    EXPECT_LE(peak_memory() - before, 5 * size);
#else
    EXPECT_GT(before, 0);
#endif
}

TEST(ImportItemNumbers, HaveTheirPlacesInTheText)
{
    const ImportItems items("a,,bc,d");
    const QList<qsizetype> places = {0, 2, 3, 6};
    for (const qsizetype number : {3, 0, 2, 1})
        EXPECT_EQ(items.place(number), places[number]) << number;
    EXPECT_THROW(items.place(4), RuntimeError);
    EXPECT_THROW(items.place(-1), RuntimeError);
}

TEST(ImportItemNumbers, AreFoundInEitherDirection)
{
    const ImportItems items(",a,,b,");
    const QStringList expected = {"", "a", "", "b", ""};
    std::mt19937 random(1);
    for (int i = 0; i < 200; ++i) {
        const auto number = static_cast<qsizetype>(random() % 5);
        ASSERT_EQ(items.at(number), expected[number]) << number;
    }
}

TEST(ImportItemsOfLargeFiles, ALineOfFiftyMegabytes)
{
    constexpr qsizetype count = 2'000'000;
    QString line;
    line.reserve(count * 26);
    for (qsizetype i = 0; i < count; ++i)
        line += QStringLiteral("reader%1@example.org,").arg(1'000'000 + i);
    ASSERT_GE(line.size(), 50'000'000);
    const ImportItems items = import_items(std::move(line));
    EXPECT_EQ(items.highest(), count - 1);
    EXPECT_EQ(items.at(0), "reader1000000@example.org");
    EXPECT_EQ(items.at(count - 1), "reader2999999@example.org");
}
} // namespace
