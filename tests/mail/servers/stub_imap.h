#pragma once

#include "mail/imap_inbox.h"
#include "tests/mail/servers/inbox_on_stub.h"

/// What a good IMAP server says of three messages.
struct GoodImap
{
    static inline const QByteArray capabilities =
        "* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\nTAG OK done\r\n";
    static inline const QByteArray signed_on = "TAG OK signed on\r\n";

    static QByteArray opened(int validity = 7)
    {
        return "* FLAGS ()\r\n* 3 EXISTS\r\n* 0 RECENT\r\n* OK [UIDVALIDITY " +
               QByteArray::number(validity) + "] valid\r\nTAG OK [READ-ONLY] opened\r\n";
    }

    static QByteArray listed(int size = 60)
    {
        QByteArray list;
        for (const char *uid : {"5", "6", "9"})
            list += QByteArray("* 1 FETCH (UID ") + uid + " FLAGS () RFC822.SIZE " +
                    QByteArray::number(size) + " INTERNALDATE \"17-Jul-2020 02:44:25 +0000\")\r\n";
        return list + "TAG OK listed\r\n";
    }

    static QByteArray message(const char *uid)
    {
        const QByteArray text = QByteArray("Subject: message ") + uid + "\r\n\r\no9 OK text\r\n";
        return QByteArray("* 1 FETCH (UID ") + uid + " BODY[]<0> {" +
               QByteArray::number(text.size()) + "}\r\n" + text + ")\r\n";
    }

    static QByteArray messages()
    {
        return message("5") + message("6") + message("9") + "TAG OK fetched\r\n";
    }
};

/// An IMAP server that answers by a list, and the inbox that reads from it.
class StubImap : public InboxOnStub<ImapInbox>, protected GoodImap
{
protected:
    static inline const QByteArrayList good = {
        capabilities, signed_on, opened(), listed(), messages(), "* BYE bye\r\nTAG OK bye\r\n"};

    static void speak(StubLine &line, const QByteArrayList &answers,
                      const QByteArray &greeting = "* OK hello\r\n")
    {
        greet_and_answer(line, greeting, answers);
    }

    QStringList outcome_of(const QByteArrayList &answers)
    {
        return outcome(StubServer([answers](StubLine &line) { speak(line, answers); }));
    }

    const QStringList all = {"message 5", "message 6", "message 9"};
};
