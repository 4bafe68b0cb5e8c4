#include "mail/imap_outline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{
ImapValue structure_of(const QByteArray &text)
{
    ImapResponse response;
    response.tag = "*";
    response.pieces = {"1 FETCH (BODYSTRUCTURE " + text + ')'};
    return read_fetch(response).structure.value_or(ImapValue());
}

QByteArray leaf(const QByteArray &type, int size, const QByteArray &disposition = "NIL")
{
    const QByteArray lines = type.startsWith("\"text") ? " 9" : "";
    return '(' + type + " (\"charset\" \"utf-8\") NIL NIL \"7bit\" " + QByteArray::number(size) +
           lines + " NIL " + disposition + " NIL NIL)";
}

const QByteArray plain = leaf("\"text\" \"plain\"", 10);
const QByteArray html = leaf("\"TEXT\" \"HTML\"", 10);
const QByteArray zip =
    leaf("\"application\" \"zip\"", 1'000'000, "(\"attachment\" (\"filename\" \"a\"))");
const QByteArray attached_text = leaf("\"text\" \"plain\"", 50, "(\"ATTACHMENT\" NIL)");
const QByteArray status = leaf("\"message\" \"delivery-status\"", 30);

QByteArray multipart(const QByteArray &parts, const QByteArray &subtype,
                     const QByteArray &parameters = "NIL")
{
    return '(' + parts + " \"" + subtype + "\" " + parameters + " NIL NIL NIL)";
}

QByteArray enclosed(const QByteArray &content)
{
    return R"(("message" "rfc822" NIL NIL NIL "7bit" 5000 ("d" "s" NIL NIL NIL NIL NIL NIL NIL NIL) )" +
           content + " 99 NIL NIL NIL NIL)";
}

QByteArray report(const QByteArray &parts)
{
    return multipart(parts, "report", R"(("REPORT-TYPE" "Delivery-Status" "boundary" "x"))");
}

struct Choice
{
    QByteArray structure;
    QByteArrayList sections;
};

void PrintTo(const Choice &choice, std::ostream *out)
{
    *out << choice.structure.toStdString();
}

class OutlineChooses : public testing::TestWithParam<Choice>
{
};

TEST_P(OutlineChooses, TheSections)
{
    const auto outline =
        ImapOutline::read(structure_of(GetParam().structure), "Subject: x\r\n\r\n");
    ASSERT_TRUE(outline);
    EXPECT_EQ(outline->sections(), GetParam().sections);
}

INSTANTIATE_TEST_SUITE_P(
    Structures, OutlineChooses,
    testing::Values(
        Choice{plain, {"1"}}, Choice{multipart(plain + zip, "mixed"), {"1.MIME", "1"}},
        Choice{multipart(zip + plain, "mixed"), {"2.MIME", "2"}},
        Choice{multipart(html + plain, "alternative"), {"2.MIME", "2"}},
        Choice{multipart(attached_text + html, "mixed"), {"2.MIME", "2"}},
        Choice{multipart(zip + attached_text, "mixed"), {}},
        Choice{
            multipart(zip + multipart(multipart(html, "related") + plain, "alternative"), "mixed"),
            {"2.2.MIME", "2.2"}},
        Choice{multipart(enclosed(plain) + zip, "mixed"), {}},
        Choice{report(plain + status + enclosed(plain)), {"1.MIME", "1", "2.MIME", "2"}},
        Choice{report(plain + status + status), {"1.MIME", "1", "2.MIME", "2", "3.MIME", "3"}},
        Choice{report(zip + enclosed(report(plain + status))),
               {"2.1.MIME", "2.1", "2.2.MIME", "2.2"}},
        Choice{enclosed(plain), {}}));

TEST(Outlines, AreNotMadeOfNonsense)
{
    for (const char *text : {"NIL", "()", "\"text\"", "(() \"mixed\")", "((NIL) \"mixed\" NIL)"})
        EXPECT_FALSE(ImapOutline::read(structure_of(text), {})) << text;
    // The server found nothing but a header.
    EXPECT_FALSE(ImapOutline::read(structure_of(leaf("\"text\" \"plain\"", 0)), {}));
    // The server found no part in it.
    EXPECT_FALSE(
        ImapOutline::read(structure_of(multipart(leaf("\"text\" \"plain\"", 0), "mixed")), {}));
}

TEST(Outlines, AreNotMadeOfMorePartsThanAreLookedAt)
{
    EXPECT_TRUE(ImapOutline::read(structure_of(multipart(plain + zip.repeated(998), "mixed")), {}));
    EXPECT_FALSE(
        ImapOutline::read(structure_of(multipart(plain + zip.repeated(999), "mixed")), {}));
    EXPECT_FALSE(ImapOutline::read(structure_of(multipart(zip.repeated(30'000), "mixed")), {}));
    const QByteArray half = multipart(plain.repeated(499), "mixed");
    EXPECT_TRUE(ImapOutline::read(structure_of(multipart(half + zip.repeated(499), "mixed")), {}));
    EXPECT_FALSE(ImapOutline::read(structure_of(multipart(half + half, "mixed")), {}));
    EXPECT_FALSE(ImapOutline::read(
        structure_of(multipart(plain + enclosed(multipart(zip.repeated(1'000), "mixed")), "mixed")),
        {}));
}

TEST(Outlines, PutAMessageTogether)
{
    const auto outline =
        ImapOutline::read(structure_of(multipart(zip + plain, "mixed")),
                          "From: a@example.org\r\nContent-Type: multipart/mixed;\r\n"
                          " boundary=other\r\nSubject: x\r\n\r\n");
    ASSERT_TRUE(outline);
    EXPECT_EQ(outline->size_of("2"), 10);
    EXPECT_EQ(outline->size_of("2.MIME"), 0);
    const QByteArray message = outline->message([](const QByteArray &section) {
        return section == "2" ? QByteArray("the text")
                              : QByteArray("Content-Type: text/plain\r\n\r\n");
    });
    EXPECT_TRUE(message.startsWith("From: a@example.org\r\nSubject: x\r\n"
                                   "Content-Type: multipart/mixed; boundary=\""))
        << message.toStdString();
    EXPECT_TRUE(message.contains("\r\nContent-Type: text/plain\r\n\r\nthe text\r\n--"));
    EXPECT_TRUE(message.contains("\r\nContent-Type: application/zip\r\n"
                                 "Content-Disposition: attachment\r\n\r\n\r\n--"));
    EXPECT_FALSE(message.contains("other"));
}

TEST(Outlines, KeepTheHeaderOfAnOnlyPart)
{
    const QByteArray header =
        "Subject: x\r\nContent-Type: text\r\nContent-Transfer-Encoding: base64\r\n";
    const auto outline = ImapOutline::read(structure_of(plain), header + "\r\n");
    ASSERT_TRUE(outline);
    EXPECT_EQ(outline->message([](const QByteArray &) { return QByteArray("QUJD"); }),
              header + "\r\nQUJD");
}

TEST(Outlines, LetNoServerWriteHeaderLines)
{
    const auto outline = ImapOutline::read(
        structure_of(multipart(leaf(R"("te\r\nxt" "pl:ain")", 5) + leaf(R"("a b" "c\"d")", 5),
                               R"(mi\"xed; boundary=\"x)")),
        {});
    ASSERT_TRUE(outline);
    const QByteArray message = outline->message([](const QByteArray &) { return QByteArray(); });
    EXPECT_TRUE(message.startsWith("Content-Type: multipart/mixed; boundary=\""))
        << message.toStdString();
    EXPECT_EQ(message.count("Content-Type: application/octet-stream\r\n"), 2);
}

TEST(Outlines, KeepNoNameOfATypeThatIsTooLong)
{
    const auto outline = ImapOutline::read(
        structure_of(multipart(leaf('"' + QByteArray(100'000, 'x') + "\" \"y\"", 5) + plain,
                               QByteArray(100'000, 'z'))),
        {});
    ASSERT_TRUE(outline);
    const QByteArray message = outline->message([](const QByteArray &) { return QByteArray(); });
    EXPECT_TRUE(message.startsWith("Content-Type: multipart/mixed; boundary=\""));
    EXPECT_LT(message.size(), 1'000);
}

TEST(MutatedStructures, NeverBreakTheOutline)
{
    const QByteArray seed =
        multipart(zip + report(plain + status + enclosed(multipart(html + plain, "mixed"))) +
                      multipart(attached_text + html, "alternative"),
                  "mixed");
    std::mt19937 random(20060102);
    const auto below = [&random](qsizetype limit) {
        return static_cast<qsizetype>(random() % static_cast<unsigned>(limit));
    };
    const QByteArray favourites("()()()\" \\{}NIL0987[]\0\x80:;=/.", 27);
    int outlines = 0;
    for (int round = 0; round < 4'000; ++round) {
        QByteArray text = seed;
        for (qsizetype edits = 1 + below(6); edits > 0; --edits) {
            const qsizetype at = below(text.size());
            if (below(3) == 0)
                text.remove(at, below(12));
            else if (below(2) == 0)
                text.insert(at, text.mid(below(text.size()), below(60)));
            else
                text[at] = favourites[below(favourites.size())];
        }
        const auto outline = ImapOutline::read(structure_of(text), "Subject: x\r\n\r\n");
        if (!outline)
            continue;
        ++outlines;
        for (const QByteArray &section : outline->sections())
            ASSERT_TRUE(std::ranges::all_of(section, [](char c) {
                return QByteArrayView("0123456789.MIE").contains(c);
            })) << text.constData();
        const QByteArray message =
            outline->message([](const QByteArray &) { return QByteArray("x"); });
        ASSERT_FALSE(message.contains('\0')) << text.constData();
    }
    EXPECT_GT(outlines, 1'000);
}
} // namespace
