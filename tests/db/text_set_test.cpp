#include "db/text_set.h"

#include <gtest/gtest.h>

namespace
{
bool insert(TextSet &set, std::initializer_list<std::string_view> fields)
{
    for (const std::string_view field : fields)
        set.add_field(field, false);
    return set.insert();
}

TEST(TextSet, TakesEachRowOnce)
{
    TextSet set;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 5000; ++i)
            EXPECT_EQ(insert(set, {(round == 0 ? "row" : "ROW") + std::to_string(i)}), round == 0);
    }
}

TEST(TextSet, KeepsFieldsApartAndNullsFromEmptyTexts)
{
    TextSet set;
    EXPECT_TRUE(insert(set, {"ab", "c"}));
    EXPECT_TRUE(insert(set, {"a", "bc"}));
    EXPECT_FALSE(insert(set, {"AB", "C"}));
    EXPECT_TRUE(insert(set, {""}));
    set.add_field("", true);
    EXPECT_TRUE(set.insert());
    set.add_field("", true);
    EXPECT_FALSE(set.insert());
    EXPECT_TRUE(insert(set, {"\xC3\xA4"}));
    EXPECT_FALSE(insert(set, {"\xC3\x84"}));
}
} // namespace
