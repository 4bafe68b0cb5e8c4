#include "mail/imap_fetch.h"
#include "mail/server_connection.h"
#include "tests/mail/servers/stub_server.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
using namespace std::chrono_literals;

// The first response in what a server says.
ImapResponse response_of(const QByteArray &said)
{
    const StubServer stub([said](StubLine &line) { line.say(said); });
    MailServer server;
    server.host = "127.0.0.1";
    server.port = stub.port();
    server.security = LineSecurity::Plain;
    ServerConnection connection(server, {3s, [] {}, {}});
    connection.open();
    connection.begin("reading");
    return read_imap_response(connection);
}

ImapFetch fetch_of(const QByteArray &said)
{
    return read_fetch(response_of(said + "\r\n"));
}

TEST(ImapResponses, AreKnownByTheirFirstWords)
{
    const ImapResponse exists = response_of("* 23 EXISTS\r\n");
    EXPECT_TRUE(exists.is_untagged());
    EXPECT_EQ(exists.keyword(), "EXISTS");
    EXPECT_EQ(exists.number(), 23U);
    EXPECT_EQ(exists.rest(), "");
    const ImapResponse ok = response_of("o7 ok [READ-ONLY] all {5}\r\n"); // no literal
    EXPECT_EQ(ok.tag, "o7");
    EXPECT_EQ(ok.keyword(), "OK");
    EXPECT_EQ(ok.number(), std::nullopt);
    EXPECT_EQ(ok.rest(), "[READ-ONLY] all {5}");
    EXPECT_EQ(response_of("* NO words {5}\r\n").rest(), "words {5}");
    EXPECT_TRUE(response_of("+ \r\n").is_continuation());
    EXPECT_TRUE(response_of("+\r\n").is_continuation());
    EXPECT_EQ(response_of("\r\n").tag, "");
    EXPECT_EQ(response_of("*\r\n").keyword(), "");
}

TEST(ImapResponses, HoldLiteralsAnywhere)
{
    const ImapResponse response =
        response_of("* 1 FETCH (BODY[] {9}\r\no1 OK a\r\n UID 7 X ~{2+}\r\n{} Y {0}\r\n)\r\n");
    EXPECT_EQ(response.literals, (QList<QByteArray>{"o1 OK a\r\n", "{}", ""}));
    EXPECT_EQ(response.pieces, (QList<QByteArray>{"1 FETCH (BODY[] ", " UID 7 X ", " Y ", ")"}));
}

TEST(ImapResponses, BeyondAllMeasureAreRefused)
{
    for (const char *size : {"{100663297}", "{9223372036854775807}", "{99999999999999999999}"}) {
        try {
            response_of(QByteArray("* 1 FETCH (BODY[] ") + size + "\r\n");
            FAIL() << "waited for " << size;
        } catch (const RuntimeError &error) {
            EXPECT_TRUE(error.description().contains("the server announced")) << error.what();
        }
    }
    try {
        response_of("o1 OK " + QByteArray(8 * 1024 * 1024, 'x'));
        FAIL() << "took a line without end";
    } catch (const RuntimeError &error) {
        EXPECT_TRUE(error.description().contains("a line of more than 8388608 bytes"))
            << error.what();
    }
}

// Of two responses, of which the first is beyond what is kept: what the second one says.
QByteArray said_behind(const QByteArray &first)
{
    const StubServer stub([first](StubLine &line) { line.say(first + "\r\n* 9 EXISTS\r\n"); });
    MailServer server;
    server.host = "127.0.0.1";
    server.port = stub.port();
    server.security = LineSecurity::Plain;
    ServerConnection connection(server, {3s, [] {}, {}});
    connection.open();
    connection.begin("reading");
    const ImapResponse passed_over = read_imap_response(connection);
    EXPECT_TRUE(passed_over.is_untagged());
    EXPECT_TRUE(passed_over.is_cut);
    EXPECT_EQ(passed_over.pieces.last(), "");
    EXPECT_EQ(passed_over.pieces.size(), passed_over.literals.size() + 1);
    return read_imap_response(connection).pieces.join();
}

TEST(ImapResponses, BeyondWhatAMessageNeedsArePassedOver)
{
    const QByteArray long_text(5'000'000, 'x');
    EXPECT_EQ(said_behind("* 1 FETCH (" + long_text + long_text + ')'), "9 EXISTS");
    EXPECT_EQ(said_behind("* 1 FETCH (" + long_text + " {12}\r\n* 8 EXISTS\r\n" + long_text +
                          long_text + ')'),
              "9 EXISTS");
    EXPECT_EQ(said_behind("* 1 FETCH (" + long_text + long_text +
                          " {12}\r\n* 8 EXISTS\r\n {2+}\r\n" + "xx)"),
              "9 EXISTS");
    EXPECT_EQ(said_behind("* 1 FETCH (" + QByteArray("{0}\r\n").repeated(20'000) + ')'),
              "9 EXISTS");
}

TEST(ImapFetches, TellWhatIsKnownOfAMessage)
{
    const ImapFetch fetch = fetch_of(
        R"(* 12 FETCH (FLAGS (\Seen \deleted) UID 42 X-NEW ((a) "b" NIL) RFC822.SIZE 4711 )"
        R"(INTERNALDATE "17-Jul-2020 02:44:25 -0700" BODY[1.mime]<0> "q\"\\" BODY[2] NIL )"
        "BODY[HEADER.FIELDS (FROM \"Date\")] {4}\r\na\r\nb)");
    EXPECT_EQ(fetch.uid, 42U);
    EXPECT_TRUE(fetch.is_deleted);
    EXPECT_EQ(fetch.size, 4711);
    EXPECT_EQ(fetch.arrived, QDateTime(QDate(2020, 7, 17), QTime(9, 44, 25), Qt::UTC));
    ASSERT_EQ(fetch.sections.size(), 2U);
    EXPECT_EQ(fetch.sections[0], std::pair(QByteArray("1.MIME"), QByteArray("q\"\\")));
    EXPECT_EQ(fetch.sections[1],
              std::pair(QByteArray("HEADER.FIELDS (FROM \"DATE\")"), QByteArray("a\r\nb")));
}

TEST(ImapFetches, HoldLists)
{
    const ImapFetch fetch =
        fetch_of("* 1 FETCH (BODYSTRUCTURE ((\"a\" {1}\r\nb NIL)(\"c\" \"d\")\"mixed\") UID 3)");
    ASSERT_TRUE(fetch.structure);
    ASSERT_EQ(fetch.structure->items.size(), 3U);
    EXPECT_EQ(fetch.structure->items[0].text_at(1), "b");
    EXPECT_EQ(fetch.structure->items[1].text_at(0), "c");
    EXPECT_EQ(fetch.structure->text_at(2), "mixed");
    EXPECT_EQ(fetch.structure->text_at(9), "");
    EXPECT_EQ(fetch.uid, 3U);
}

// A message may be made so that the server has to describe it in such ways.
TEST(ImapFetches, PassOverListsBeyondAllMeasure)
{
    const auto fetch_with = [](const QByteArray &structure) {
        return fetch_of("* 1 FETCH (BODYSTRUCTURE " + structure + " UID 3 BODY[HEADER] \"x\")");
    };
    const QByteArray inner = "\"a)\" \"\\\"\" {2}\r\n)) (() NIL)";
    for (const QByteArray &structure :
         {QByteArray(150, '(') + inner + QByteArray(150, ')'),
          "(" + QByteArray("(a b) ").repeated(60'000) + inner + " b)"}) {
        const ImapFetch fetch = fetch_with(structure);
        EXPECT_FALSE(fetch.is_cut);
        EXPECT_EQ(fetch.uid, 3U);
        ASSERT_EQ(fetch.sections.size(), 1U);
        EXPECT_EQ(fetch.sections[0].second, "x");
    }
    EXPECT_FALSE(fetch_with("(" + QByteArray("a ").repeated(200'000) + ")").structure->is_list());
    EXPECT_TRUE(fetch_with("(" + QByteArray("a ").repeated(90'000) + ")").structure->is_list());
    EXPECT_TRUE(fetch_with(QByteArray(150, '(') + inner).is_cut); // which does not end
}

TEST(ImapFetches, TellWhatAStructureTakes)
{
    const ImapFetch fetch = fetch_of("* 1 FETCH (BODYSTRUCTURE (\"text\" {5000}\r\n" +
                                     QByteArray(5'000, 'x') + " NIL ((a b))))");
    EXPECT_GT(fetch.structure_size, 5'000);
    EXPECT_LT(fetch.structure_size, 6'000);
}

TEST(ImapFetches, AreCutBehindTooManyLiterals)
{
    const ImapResponse response =
        response_of("* 1 FETCH (UID 3 X (" + QByteArray("{3}\r\nabc ").repeated(20'000) + "))\r\n");
    EXPECT_EQ(response.literals.size(), 10'000);
    const ImapFetch fetch = read_fetch(response);
    EXPECT_TRUE(fetch.is_cut);
    EXPECT_EQ(fetch.uid, 3U);
    EXPECT_FALSE(
        fetch_of("* 1 FETCH (UID 3 X (" + QByteArray("{1}\r\n(").repeated(10'000) + "))").is_cut);
}

TEST(ImapFetches, EndWhereTheyMakeNoSense)
{
    EXPECT_EQ(fetch_of("* 1 FETCH (UID 3 BODY[ \"x").uid, 3U);
    EXPECT_EQ(fetch_of("* 1 FETCH (UID 3 X (((").uid, 3U);
    EXPECT_EQ(fetch_of("* 1 FETCH (UID 3 X \"never ended").uid, 3U);
    EXPECT_EQ(fetch_of("* 1 FETCH UID 3").uid, 0U);
    EXPECT_EQ(fetch_of("* 1 FETCH").uid, 0U);
    EXPECT_EQ(fetch_of("* 1 FETCH ()").uid, 0U);
    EXPECT_EQ(fetch_of("* 1 FETCH (UID)").uid, 0U);
    EXPECT_EQ(fetch_of("* 1 FETCH ) UID 3").uid, 0U);
    EXPECT_EQ(fetch_of("* 1 FETCH (UID -3 RFC822.SIZE none)").uid, 0U);
    const QByteArray deep(300'000, '(');
    EXPECT_EQ(fetch_of("* 1 FETCH (UID 3 BODYSTRUCTURE " + deep + ")").structure, std::nullopt);
}

TEST(ImapFetches, HoldNoStructureOfLongTexts)
{
    const QByteArray text(4'000'000, 'x');
    const QByteArray literal = " {4000000}\r\n" + text;
    const auto structure_of = [](const QByteArray &texts) {
        const ImapFetch fetch = fetch_of("* 1 FETCH (UID 3 BODYSTRUCTURE (" + texts + "))");
        EXPECT_EQ(fetch.uid, 3U);
        return fetch.structure.value_or(ImapValue());
    };
    EXPECT_FALSE(structure_of(literal.repeated(5)).is_list());
    EXPECT_FALSE(structure_of(literal.repeated(4) + " \"" + text + '"').is_list());
    EXPECT_TRUE(structure_of(literal).is_list());
}

TEST(ImapFetches, TellAnEmptyMessage)
{
    for (const char *nothing : {"\"\"", "{0}\r\n"}) {
        const ImapFetch fetch = fetch_of(QByteArray("* 1 FETCH (UID 3 BODY[]<0> ") + nothing + ")");
        ASSERT_EQ(fetch.sections.size(), 1U) << nothing;
        EXPECT_EQ(fetch.sections[0], std::pair(QByteArray(), QByteArray()));
    }
}

TEST(InternalDates, AreReadInTheirOneForm)
{
    const auto utc = [](const QByteArray &text) {
        return read_internal_date(text).toString(Qt::ISODate);
    };
    EXPECT_EQ(utc(" 1-Jan-2020 00:00:00 +0530"), "2019-12-31T18:30:00Z");
    EXPECT_EQ(utc(" 1-JUL-2020 00:00:00 +0000"), "2020-07-01T00:00:00Z");
    EXPECT_EQ(utc("31-dec-1999 23:59:59 -0030"), "2000-01-01T00:29:59Z");
    for (const char *bad :
         {"", "1-Jan-2020", "1-Foo-2020 00:00:00 +0000", "32-Jan-2020 00:00:00 +0000",
          "1-Jan-2020 25:00:00 +0000", "1-anF-2020 00:00:00 +0000"})
        EXPECT_FALSE(read_internal_date(bad).isValid()) << bad;
}

TEST(MailboxNames, AreSentInModifiedUtf7)
{
    EXPECT_EQ(imap_mailbox_name("INBOX"), "\"INBOX\"");
    EXPECT_EQ(imap_mailbox_name("a\"b\\c & d"), "\"a\\\"b\\\\c &- d\"");
    EXPECT_EQ(
        imap_mailbox_name(u"~peter/mail/\u53f0\u5317/\u65e5\u672c\u8a9e"_qs), // RFC 3501 5.1.3
        "\"~peter/mail/&U,BTFw-/&ZeVnLIqe-\"");
    EXPECT_EQ(imap_mailbox_name(u"K\u00f6ln"_qs), "\"K&APY-ln\"");
    EXPECT_EQ(imap_mailbox_name(u"\U0001F4EE"_qs), "\"&2D3c7g-\"");
    EXPECT_EQ(imap_mailbox_name("a\r\nb"), "\"a&AA0ACg-b\""); // no line end gets into a command
}

TEST(Sets, AreShort)
{
    EXPECT_EQ(imap_set({7}), "7");
    EXPECT_EQ(imap_set({1, 2, 3, 5, 7, 8}), "1:3,5,7:8");
    EXPECT_EQ(imap_set({4'294'967'295U}), "4294967295");
    EXPECT_EQ(imap_set({}), "");
}
} // namespace
