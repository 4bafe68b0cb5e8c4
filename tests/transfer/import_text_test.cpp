#include "platform/runtime_error.h"
#include "tests/support/print_qt.h"
#include "transfer/import_items.h"
#include "transfer/import_text.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <random>

namespace
{
QString whole(const ImportText &text)
{
    return text.stretch(0, text.size());
}

struct Stored
{
    const char *text;
    qsizetype last; // the item stored last
    QString shown;
};

void PrintTo(const Stored &stored, std::ostream *out)
{
    *out << stored.text << " to " << stored.last;
}

class ImportTextOf : public testing::TestWithParam<Stored>
{
};

TEST_P(ImportTextOf, TheStoredItems)
{
    const QString text = GetParam().text;
    const ImportItems items(text);
    ImportText shown(items.text());
    for (qsizetype number = items.highest() - 1; number >= GetParam().last; --number)
        shown.append_item(items, number);
    EXPECT_EQ(whole(shown), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Items, ImportTextOf,
    testing::Values(Stored{"a@x,b@x,c@x", 2, "a@x,b@x,c@x"}, // none yet
                    Stored{"a@x,b@x,c@x", 1, "a@x,b@x,c@xb@x\n"},
                    Stored{"a@x,b@x,c@x", 0, "a@x,b@x,c@xb@x\na@x\n"},
                    Stored{"a@x", 0, "a@x"}, // a single item is the last one
                    Stored{"a,", 0, "a,a\n"}, Stored{",a", 0, ",a\n"}, Stored{",", 0, ",\n"},
                    Stored{",,b,,c,", 0, ",,b,,c,c\n\nb\n\n\n"},
                    Stored{"long item,b,c", 0, "long item,b,cb\nlong item\n"}));

TEST(ImportTextStretch, IsThatOfThePlainTextWhereverItBeginsAndEnds)
{
    const QString alphabet = "ab,,";
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        QString text;
        for (auto left = random() % 12; left > 0; --left)
            text += alphabet[static_cast<qsizetype>(random() % 4)];
        const ImportItems items(text);
        ImportText shown(text);
        QString expected = text;
        for (qsizetype number = items.highest() - 1; number >= 0; --number) {
            shown.append_item(items, number);
            expected += items.at(number) + "\n";
        }
        ASSERT_EQ(shown.size(), expected.size()) << text.toStdString();
        for (qsizetype start = 0; start <= expected.size(); ++start) {
            for (qsizetype count = 0; start + count <= expected.size(); ++count)
                ASSERT_EQ(shown.stretch(start, count), expected.sliced(start, count));
        }
    }
}

TEST(ImportTextItems, OfAnotherTextAreNotItsOwn)
{
    ImportText shown("a,b,c");
    shown.append_item(ImportItems("d,e,f"), 1);
    EXPECT_EQ(whole(shown), "a,b,c");
}

TEST(ImportTextItems, ThatDoNotExistFail)
{
    const ImportItems items("a,b");
    ImportText shown(items.text());
    EXPECT_THROW(shown.append_item(items, 2), RuntimeError);
    EXPECT_EQ(whole(shown), "a,b");
}
} // namespace
