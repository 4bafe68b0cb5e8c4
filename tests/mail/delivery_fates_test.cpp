#include "mail/delivery_fates.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
TEST(Undelivered, IsNothingWhenAllGotIt)
{
    EXPECT_EQ(undelivered({{"a@x.example", Fate::Accepted, {}}}), "");
}

TEST(Undelivered, NamesEverybodyWhoDidNotGetIt)
{
    EXPECT_EQ(undelivered({{"a@x.example", Fate::Accepted, {}},
                           {"b@x.example", Fate::Refused, "550 5.1.1 no such user"},
                           {"c@x.example", Fate::Refused, "550 5.1.1 no such user"},
                           {"d@x.example", Fate::NotNow, "450 4.2.1 try later"},
                           {"e@x.example", Fate::Refused, "552 full"},
                           {"f@x.example", Fate::Unknown, "the server closed the line"},
                           {"g@x.example", Fate::NotTried, "the server closed the line"},
                           {"h@x.example", Fate::NotTried, "the server closed the line"}}),
              "The message was taken for 1 of 8 recipients.\n"
              "\nRefused:"
              "\nb@x.example, c@x.example: 550 5.1.1 no such user"
              "\ne@x.example: 552 full\n"
              "\nRefused for the moment:"
              "\nd@x.example: 450 4.2.1 try later\n"
              "\nNot sent to:"
              "\ng@x.example, h@x.example: the server closed the line\n"
              "\nUnknown whether they get it (the answer never came):"
              "\nf@x.example: the server closed the line");
}

TEST(Undelivered, NamesThousands)
{
    std::vector<RecipientFate> fates;
    for (int i = 0; i < 2'000; ++i)
        fates.push_back(
            {QString("n%1@x.example").arg(i), Fate::Refused, QString("550 no %1").arg(i)});
    const QString text = undelivered(fates);
    EXPECT_TRUE(text.startsWith("The message was taken for 0 of 2,000 recipients."));
    for (int i = 0; i < 2'000; ++i)
        ASSERT_TRUE(text.contains(QString("\nn%1@x.example: 550 no %1").arg(i)));
}

TEST(Undelivered, ShowsTheServersWordsHarmless)
{
    EXPECT_EQ(undelivered({{"a@x.example", Fate::Refused, "550 a\r\nb\x1b[2J"}}),
              "The message was taken for 0 of 1 recipients.\n\nRefused:\na@x.example: 550 "
              "a\\r\\nb\\u001B[2J");
}
} // namespace
