#include "db/letter_case.h"
#include "db/multi_matcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{
bool contains_any(const QStringList &values, const std::string &text)
{
    std::string folded;
    fold_text(text, folded);
    return std::any_of(values.begin(), values.end(), [&folded](const QString &value) {
        std::string wanted;
        fold_text(value.toStdString(), wanted);
        return folded.find(wanted) != std::string::npos;
    });
}

bool found_in_batches(const QStringList &values, const std::string &text)
{
    bool found = false;
    for (qsizetype next = 0; next < values.size();) {
        const MultiMatcher matcher(values, next);
        EXPECT_GT(matcher.end(), next);
        next = matcher.end();
        found = matcher.matches(text) || found;
    }
    return found;
}

TEST(MultiMatcher, FindsValuesThatOverlapAndHoldEachOther)
{
    const MultiMatcher matcher({"he", "she", "hers", "bobby", "obc"}, 0);
    EXPECT_EQ(matcher.end(), 5);
    for (const char *text : {"he", "ushers", "SHE", "xhex", "bobc", "bobobc"})
        EXPECT_TRUE(matcher.matches(text)) << text;
    for (const char *text : {"", "h", "sh", "bobb", "hxe", "obbc"})
        EXPECT_FALSE(matcher.matches(text)) << text;
}

TEST(MultiMatcher, IgnoresLetterCaseAsLikeDoes)
{
    const MultiMatcher matcher({QString::fromUtf8("ÄRGER"), "kelvin"}, 0);
    EXPECT_TRUE(matcher.matches("x \xC3\xA4rger"));
    EXPECT_TRUE(matcher.matches("\xE2\x84\xAA"
                                "ELVIN"));
    EXPECT_FALSE(matcher.matches("arger"));
}

TEST(MultiMatcher, TakesTheEmptyValueForContainedInAll)
{
    EXPECT_TRUE(MultiMatcher({"x", ""}, 0).matches(""));
    EXPECT_TRUE(MultiMatcher({""}, 0).matches("abc"));
}

TEST(MultiMatcher, TakesTooManyAndTooLongValuesInBatches)
{
    QStringList values;
    for (int i = 0; i < 40000; ++i)
        values.append(QStringLiteral("user%1@host%2.example.org").arg(i).arg(i * 7));
    values.insert(20000, QString(6 << 20, 'L'));
    EXPECT_TRUE(found_in_batches(values, "to USER39999@host279993.example.org."));
    EXPECT_TRUE(found_in_batches(values, std::string(7 << 20, 'l')));
    EXPECT_FALSE(found_in_batches(values, "user39999@host279992.example.org"));
}

TEST(MultiMatcher, AgreesWithSearchingEachValue)
{
    std::mt19937 random(7); // always the same texts
    const std::vector<std::string> letters = {"a", "B", "b", "@", ".", "\xC3\xA4", "\xC3\x84", "k"};
    const auto text = [&](std::size_t most) {
        std::string made;
        for (std::size_t length = random() % (most + 1); length > 0; --length)
            made += letters[random() % letters.size()];
        return made;
    };
    for (int round = 0; round < 300; ++round) {
        QStringList values;
        for (int i = 0; i < 5; ++i)
            values.append(QString::fromStdString(text(6)) + 'a');
        const MultiMatcher matcher(values, 0);
        for (int i = 0; i < 20; ++i) {
            const std::string searched = text(12);
            EXPECT_EQ(matcher.matches(searched), contains_any(values, searched)) << searched;
        }
    }
}
} // namespace
