// IMAP against messages, and servers, whose structure is beyond all measure.
#include "mail/imap_inbox.h"
#include "tests/mail/servers/stub_server.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sys/resource.h>

namespace
{
using namespace std::chrono_literals;

const QByteArray header = "From: ann@example.org\r\nSubject: its subject\r\n\r\n";
const QByteArray whole = header + "its text\r\n";

QByteArray literal(const QByteArray &bytes)
{
    return '{' + QByteArray::number(bytes.size()) + "}\r\n" + bytes;
}

QByteArray leaf(const QByteArray &type, int size = 10)
{
    return '(' + type + " NIL NIL NIL \"7bit\" " + QByteArray::number(size) + " 1)";
}

// The messages' structure, and what a server says to a command that asks for something of one.
struct Script
{
    int count = 3;
    qint64 size = 50'000;
    std::function<QByteArray(int uid)> structure;
    QByteArray text; // of a part; empty for one that tells its number
    QByteArray beginning = literal(whole);
    std::function<QByteArray(int uid, const QByteArray &request)> refusal = [](int, QByteArray) {
        return QByteArray();
    };
};

auto always(const QByteArray &structure)
{
    return [structure](int) { return structure; };
}

QList<int> numbers_of(const QByteArray &set)
{
    QList<int> numbers;
    for (const QByteArray &range : set.split(',')) {
        const QByteArrayList ends = range.split(':');
        for (int number = ends.first().toInt(); number <= ends.last().toInt(); ++number)
            numbers += number;
    }
    return numbers;
}

QByteArray data_of(const Script &script, int uid, const QByteArray &request)
{
    if (request.contains("BODYSTRUCTURE"))
        return " BODYSTRUCTURE " + script.structure(uid) + " BODY[HEADER.FIELDS (FROM)]<0> " +
               literal(header);
    QByteArray data;
    for (const QByteArray &word : request.split(' ')) {
        const QByteArray section = word.sliced(10, word.indexOf(']') - 10);
        data += " BODY[" + section + "] ";
        data += section.isEmpty()
                    ? script.beginning
                    : literal(section.endsWith(".MIME") ? "Content-Type: text/plain\r\n\r\n"
                              : !script.text.isEmpty()  ? script.text
                                                        : "text of " + section + "\r\n");
    }
    return data;
}

// "o5 UID FETCH 1:3 (UID BODY.PEEK[])"
void answer_fetch(StubLine &line, const Script &script, const QByteArray &command)
{
    const QByteArrayList words = command.split(' ');
    const QByteArray request = words.mid(5).join(' ').chopped(1);
    QByteArray end = " OK fetched\r\n";
    for (const int number : numbers_of(words[3])) {
        if (const QByteArray refusal = script.refusal(number, request); !refusal.isEmpty()) {
            end = refusal;
            continue;
        }
        line.say("* 1 FETCH (UID " + QByteArray::number(number) + data_of(script, number, request) +
                 ")\r\n");
    }
    line.say(words[0] + end);
}

void speak(StubLine &line, const Script &script)
{
    line.say("* PREAUTH you are in\r\n");
    for (QByteArray command = line.hear(); !command.isEmpty(); command = line.hear()) {
        const QByteArray tag = command.split(' ').first();
        if (command.contains("RFC822.SIZE")) {
            for (int uid = 1; uid <= script.count; ++uid)
                line.say("* 1 FETCH (UID " + QByteArray::number(uid) + " RFC822.SIZE " +
                         QByteArray::number(script.size) + ")\r\n");
            line.say(tag + " OK listed\r\n");
        } else if (command.contains("UID FETCH")) {
            answer_fetch(line, script, command);
        } else {
            line.say("* " + QByteArray::number(script.count) + " EXISTS\r\n" + tag + " OK x\r\n");
        }
    }
}

class HostileStructure : public testing::Test
{
protected:
    // The texts, or how their reading failed; what was said stands in `heard` then.
    QStringList texts(const Script &script)
    {
        const StubServer stub([&](StubLine &line) { speak(line, script); });
        MailServer server;
        server.host = "127.0.0.1";
        server.port = stub.port();
        server.security = LineSecurity::Plain;
        QStringList found;
        {
            ImapInbox inbox(server, {}, [] { return Credentials(); }, {5s, [] {}, {}, bounds});
            inbox.fetch();
            for (int i = 0; i < inbox.count(); ++i)
                found += text_of(inbox, i);
        }
        while (stub.heard().isEmpty())
            std::this_thread::yield();
        heard = stub.heard();
        return found;
    }

    static QString text_of(ImapInbox &inbox, int index)
    {
        try {
            const MessageFields fields = inbox.read(index);
            EXPECT_EQ(fields.subject, "its subject");
            EXPECT_EQ(fields.address, "ann@example.org");
            return fields.text;
        } catch (const RuntimeError &error) {
            return error.description().section("), ", 1);
        }
    }

    bool asked_for(const QByteArray &what) const
    {
        return std::ranges::any_of(
            heard, [&](const QByteArray &command) { return command.contains(what); });
    }

    const QStringList from_the_beginning{"its text\r\n", "its text\r\n", "its text\r\n"};
    QList<QByteArray> heard;
    AnswerBounds bounds;
};

qint64 peak_memory()
{
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return qint64(used.ru_maxrss) * 1024;
}

// That much in one go would be the harm of each of these.
void expect_no_more_than(qint64 mebibytes, qint64 before)
{
    EXPECT_GT(before, 0);
#ifndef __SANITIZE_ADDRESS__ // which keeps for a while what has been freed
    EXPECT_LE((peak_memory() - before) / 1024 / 1024, mebibytes);
#else
    EXPECT_GT(mebibytes, 0);
#endif
}

TEST_F(HostileStructure, OfALongTextTellsWhatIsLeftOut)
{
    Script script;
    script.count = 1;
    script.size = 40'001'000;
    script.structure = always(leaf("\"text\" \"plain\"", 40'000'000));
    script.text = QByteArray("fourteen chars\r\n").repeated(32 * 65'536);
    const QStringList found = texts(script);
    EXPECT_TRUE(asked_for("BODY.PEEK[1]<0.33554432>"));
    EXPECT_TRUE(found.value(0).contains(" characters and 6,445,568 bytes of this message are not"))
        << found.value(0).right(200).toStdString();
}

TEST_F(HostileStructure, OfLongTextsIsNotHeapedUp)
{
    Script script;
    script.count = 8;
    script.structure = always("(\"text\" \"plain\" NIL " + literal(QByteArray(20'000'000, 'x')) +
                              " NIL \"7bit\" 9 1)");
    const qint64 before = peak_memory();
    EXPECT_EQ(texts(script).count("its text\r\n"), 8);
    expect_no_more_than(140, before);
}

TEST_F(HostileStructure, OfManyValuesIsNotHeapedUp)
{
    Script script;
    script.count = 4;
    script.structure = always("(\"text\" \"plain\" NIL NIL NIL \"7bit\" 9 1 NIL (" +
                              QByteArray("a ").repeated(1'000'000) + "))");
    const qint64 before = peak_memory();
    EXPECT_EQ(texts(script).count("text of 1\r\n"), 4);
    expect_no_more_than(150, before);
}

TEST_F(HostileStructure, IsFetchedAgainWhereAllWouldBeTooMuchAtOnce)
{
    bounds.most_held = 100'000;
    Script script;
    script.count = 8;
    for (const QByteArray &text :
         {literal(QByteArray(20'000, 'x')), '(' + QByteArray("a ").repeated(300) + ')'}) {
        script.structure = always("(\"text\" \"plain\" NIL " + text + " NIL \"7bit\" 9 1)");
        EXPECT_EQ(texts(script).count("text of 1\r\n"), 8);
        EXPECT_TRUE(asked_for("UID FETCH 1:8 (UID BODYSTRUCTURE"));
        EXPECT_FALSE(asked_for("UID FETCH 2 (UID BODYSTRUCTURE"));
        EXPECT_TRUE(asked_for("UID FETCH 8 (UID BODYSTRUCTURE"));
    }
}

TEST_F(HostileStructure, OfMoreThanALineHoldsIsPassedOver)
{
    Script script;
    script.structure =
        always("(\"text\" \"plain\" NIL " + literal("id") + " \"" + QByteArray(9'000'000, 'x') +
               "\" NIL " + literal("\r\no5 OK fetched\r\n") + " 9 1)");
    EXPECT_EQ(texts(script), from_the_beginning);
}

TEST_F(HostileStructure, OfManyPartsIsNotBuilt)
{
    Script script;
    script.structure = always('(' + leaf("\"text\" \"plain\"").repeated(1'001) + "\"mixed\")");
    EXPECT_EQ(texts(script), from_the_beginning);
    EXPECT_TRUE(asked_for("UID FETCH 1:3 (UID BODY.PEEK[]<0.1048576>)"));
}

TEST_F(HostileStructure, ThatIsTooDeepIsReadFromTheBeginningOfTheMessage)
{
    Script script;
    script.structure = always(QByteArray(120, '(') + leaf("\"text\" \"plain\"").sliced(1) +
                              QByteArray(" \"mixed\")").repeated(119));
    EXPECT_EQ(texts(script), from_the_beginning);
}

TEST_F(HostileStructure, ThatEndsNowhereIsReadFromTheBeginningOfTheMessage)
{
    Script script;
    script.structure = always("(\"text\" \"plain\" \"never ended NIL)");
    EXPECT_EQ(texts(script), from_the_beginning);
}

QByteArray report_of(int statuses, int levels)
{
    return QByteArray(levels, '(') + '(' + leaf("\"text\" \"plain\"") +
           leaf("\"message\" \"delivery-status\"").repeated(statuses) +
           "\"report\" (\"report-type\" \"delivery-status\"))" +
           QByteArray(" \"mixed\")").repeated(levels);
}

TEST_F(HostileStructure, OfManySectionsIsAskedForInCommandsThatServersTake)
{
    Script script;
    script.structure = always(report_of(990, 0));
    const QStringList found = texts(script);
    ASSERT_EQ(found.size(), 3);
    for (const QString &text : found)
        EXPECT_EQ(text, "text of 1\r\n");
    EXPECT_TRUE(asked_for("BODY.PEEK[991.MIME] BODY.PEEK[991]"));
    for (const QByteArray &command : std::as_const(heard))
        EXPECT_LE(command.size(), 8'000);
}

TEST_F(HostileStructure, OfSectionsBeyondAllMeasureIsReadFromTheBeginningOfTheMessage)
{
    Script script;
    script.structure = always(report_of(900, 45));
    EXPECT_EQ(texts(script), from_the_beginning);
    for (const QByteArray &command : std::as_const(heard))
        EXPECT_LE(command.size(), 8'000);
}

TEST_F(HostileStructure, OfEachMessageItsOwnIsReadInCommandsThatServersTake)
{
    Script script;
    script.count = 60;
    script.structure = [](int uid) { return report_of(uid, 20); };
    for (const QString &text : texts(script))
        EXPECT_EQ(text, "text of " + QString("1.").repeated(20) + "1\r\n");
    for (const QByteArray &command : std::as_const(heard))
        EXPECT_LE(command.size(), 8'000);
}

TEST_F(HostileStructure, OfPartsBeyondAllMeasureIsReadFromTheBeginningOfTheMessage)
{
    Script script;
    script.structure = always('(' + leaf("\"text\" \"plain\"") +
                              leaf("\"message\" \"delivery-status\"", 30'000'000).repeated(3) +
                              "\"report\" (\"report-type\" \"delivery-status\"))");
    EXPECT_EQ(texts(script), from_the_beginning);
}

// What the server says to a command of one message alone, or of several.
QByteArray no_to(int number, const QByteArray &words, int uid, bool is_bad_request)
{
    return uid == number && is_bad_request ? words : QByteArray();
}

TEST_F(HostileStructure, ThatTheServerCannotTellIsReadFromTheBeginningOfTheMessage)
{
    for (const char *words : {" NO [SERVERBUG] cannot\r\n", " BAD too large\r\n"}) {
        Script script;
        script.structure = always(leaf("\"text\" \"plain\""));
        script.refusal = [&](int uid, const QByteArray &request) {
            return no_to(2, words, uid, request.contains("BODYSTRUCTURE"));
        };
        EXPECT_EQ(texts(script), (QStringList{"text of 1\r\n", "its text\r\n", "text of 1\r\n"}));
        script.refusal = [&](int uid, const QByteArray &request) {
            return no_to(2, words, uid, request.contains("[1]"));
        };
        EXPECT_EQ(texts(script), (QStringList{"text of 1\r\n", "its text\r\n", "text of 1\r\n"}));
    }
}

TEST_F(HostileStructure, CostsItsOwnMessageAloneWhereTheServerTakesNoCommandForIt)
{
    Script script;
    script.structure = always(leaf("\"text\" \"plain\""));
    script.refusal = [](int uid, const QByteArray &) {
        return no_to(2, " BAD Error in IMAP command\r\n", uid, true);
    };
    EXPECT_EQ(texts(script),
              (QStringList{"text of 1\r\n", "reading message 2: Error in IMAP command",
                           "text of 1\r\n"}));
    script.size = 60;
    EXPECT_EQ(
        texts(script),
        (QStringList{"its text\r\n", "reading message 2: Error in IMAP command", "its text\r\n"}));
}
TEST_F(HostileStructure, IsNoReasonToTakeAMessageForGone)
{
    Script script;
    script.structure = always("(\"never ended)");
    script.beginning = "\"never ended";
    QStringList expected;
    for (const char *number : {"1", "2", "3"})
        expected +=
            QStringLiteral("reading message %1: the server's answer cannot be read").arg(number);
    EXPECT_EQ(texts(script), expected);
    script.size = 60;
    EXPECT_EQ(texts(script), expected);
}
} // namespace
