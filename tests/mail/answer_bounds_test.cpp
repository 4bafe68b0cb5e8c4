// Inboxes on servers that send on and on.
#include "mail/imap_inbox.h"
#include "mail/pop3_inbox.h"
#include "tests/mail/servers/inbox_on_stub.h"
#include "tests/support/print_qt.h"

namespace
{
constexpr qint64 mebibyte = qint64(1024) * 1024;
// What may be received beyond a bound before it is noticed: what waits at the line and in the
// reading.
constexpr qint64 slack = 4 * mebibyte;

TEST(AnswerBounds, AreFarAboveWhatMailNeeds)
{
    const AnswerBounds bounds = NetworkConditions().bounds;
    EXPECT_EQ(bounds.most_held, 256 * mebibyte);
    EXPECT_EQ(bounds.most_passed_over, 64 * mebibyte);
    EXPECT_EQ(bounds.most_lines, 10'000'000);
    EXPECT_EQ(bounds.most_named_lines, 1'000'000);
}

class EndlessImap : public InboxOnStub<ImapInbox>
{
protected:
    // Signs on, lists the messages 1 to 3, and says the rest to the command that fetches them.
    static void serve(StubLine &line, const std::function<void()> &rest)
    {
        greet_and_answer(line, "* OK hello\r\n",
                         {"* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\nTAG OK done\r\n",
                          "TAG OK signed on\r\n", "* 3 EXISTS\r\nTAG OK opened\r\n",
                          "* 1 FETCH (UID 1 RFC822.SIZE 60)\r\n* 2 FETCH (UID 2 RFC822.SIZE 60)\r\n"
                          "* 3 FETCH (UID 3 RFC822.SIZE 60)\r\nTAG OK listed\r\n"});
        line.hear();
        rest();
    }
    static QByteArray message(int uid, int size)
    {
        const QByteArray head = "Subject: message " + QByteArray::number(uid) + "\r\n\r\n";
        return "* 1 FETCH (UID " + QByteArray::number(uid) + " BODY[]<0> {" +
               QByteArray::number(head.size() + size) + "}\r\n" + head + QByteArray(size, 'x') +
               ")\r\n";
    }
};

TEST_F(EndlessImap, HoldsNoMoreOfMessagesThanItsBound)
{
    bounds.most_held = 200'000;
    const StubServer stub([](StubLine &line) {
        serve(line, [&line] {
            while (line.is_open()) // the second one, again and again
                line.say(message(2, 30'000));
        });
    });
    ImapInbox reader = inbox(stub);
    EXPECT_EQ(outcome(reader),
              QStringList{"reading the messages: the server sends more than it was asked for"});
    EXPECT_LT(reader.received(), bounds.most_held + slack);
}

TEST_F(EndlessImap, CountsWhatOneMessageHoldsUntilItIsRead)
{
    const StubServer stub([](StubLine &line) {
        serve(line, [&line] {
            line.say(message(1, 30'000) + message(2, 30'000) + message(3, 30'000) +
                     "o5 OK fetched\r\n");
            line.answer(message(1, 30'000) + "TAG OK fetched\r\n");
            line.hear();
        });
    });
    bounds.most_held = 100'000;
    ImapInbox reader = inbox(stub);
    EXPECT_EQ(outcome(reader), (QStringList{"message 1", "message 2", "message 3"}));
    EXPECT_EQ(reader.read(0).subject, "message 1"); // what was read before counts no more
}

TEST_F(EndlessImap, TakesAListOfNoMoreLinesThanItsBound)
{
    bounds.most_lines = 1'000;
    const StubServer stub([](StubLine &line) {
        serve(line, [&line] {
            while (line.is_open())
                line.say(QByteArray("* 1 EXISTS\r\n").repeated(1'000));
        });
    });
    ImapInbox reader = inbox(stub);
    EXPECT_EQ(outcome(reader),
              QStringList{"reading the messages: the server never comes to an end"});
    EXPECT_LT(reader.received(), slack);
}

class EndlessPop3 : public InboxOnStub<Pop3Inbox>
{
protected:
    // Signs on and says the rest.
    static void serve(StubLine &line, const QByteArrayList &answers,
                      const std::function<void()> &rest)
    {
        const QByteArray capabilities = "+OK\r\nTOP\r\nSASL PLAIN\r\n.\r\n";
        greet_and_answer(line, "+OK hello\r\n",
                         QByteArrayList{capabilities, "+OK in\r\n", capabilities} + answers);
        line.hear();
        rest();
    }
    static QByteArrayList listed(const QByteArray &size)
    {
        return {"+OK\r\n1 " + size + "\r\n.\r\n", "-ERR no UIDL\r\n"};
    }
    // A message whose server tells `told` as its size and has `lines` of ten bytes in it.
    StubServer server_of(const QByteArray &told, int lines) const
    {
        return StubServer([told, lines](StubLine &line) {
            serve(line, listed(told), [&line, lines] {
                line.say("+OK\r\nSubject: long\r\n\r\n" +
                         QByteArray("12345678\r\n").repeated(lines) + ".\r\n");
                line.answer("+OK bye\r\n");
            });
        });
    }
};

TEST_F(EndlessPop3, KeepsTheBeginningOfAMessageThatIsLongerThanItsBound)
{
    bounds.most_held = 1'000;
    bounds.most_passed_over = 10'000;
    const StubServer stub = server_of("60", 1'000);
    Pop3Inbox reader = inbox(stub);
    reader.fetch();
    const MessageFields fields = reader.read(0);
    EXPECT_EQ(fields.subject, "long");
    EXPECT_TRUE(fields.text.startsWith("12345678\r\n12345678\r\n"));
    EXPECT_TRUE(fields.text.endsWith("\r\n[9,020 bytes of this message are not shown here.]"));
}

TEST_F(EndlessPop3, PassesOverNoMoreThanItsBound)
{
    bounds.most_held = 1'000;
    bounds.most_passed_over = 100'000;
    const StubServer stub([](StubLine &line) {
        serve(line, listed("60"), [&line] {
            line.say("+OK\r\nSubject: long\r\n\r\n");
            while (line.is_open())
                line.say(QByteArray("12345678\r\n").repeated(1'000));
        });
    });
    Pop3Inbox reader = inbox(stub);
    EXPECT_EQ(outcome(reader), QStringList{"reading the messages: the server's text does not end"});
    EXPECT_LT(reader.received(), bounds.most_held + bounds.most_passed_over + slack);
}

TEST_F(EndlessPop3, PassesOverMoreOfAMessageThatIsSaidToBeLong)
{
    bounds.most_held = 1'000;
    bounds.most_passed_over = 1'000;
    const StubServer honest = server_of("10000", 1'000);
    EXPECT_EQ(outcome(honest), QStringList{"long"});
    const StubServer lying = server_of("2000", 1'000); // four times that is let through
    EXPECT_EQ(outcome(lying), QStringList{"reading the messages: the server's text does not end"});
}

TEST_F(EndlessPop3, TakesAListOfNoMoreLinesThanItsBound)
{
    bounds.most_named_lines = 1'000;
    const StubServer stub([](StubLine &line) {
        serve(line, {}, [&line] {
            line.say("+OK\r\n");
            while (line.is_open())
                line.say(QByteArray("1 60\r\n").repeated(1'000));
        });
    });
    Pop3Inbox reader = inbox(stub);
    EXPECT_EQ(outcome(reader),
              QStringList{"listing the messages: the server never comes to an end"});
    EXPECT_LT(reader.received(), slack);
}
} // namespace
