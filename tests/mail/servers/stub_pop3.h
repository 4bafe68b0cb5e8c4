#pragma once

#include "mail/pop3_inbox.h"
#include "tests/mail/servers/inbox_on_stub.h"

/// A POP3 server that answers by a list, two messages as a good one has them, and the inbox that
/// reads from it.
class StubPop3 : public InboxOnStub<Pop3Inbox>
{
protected:
    static inline const QByteArray capabilities = "+OK here\r\nTOP\r\nUIDL\r\nSASL PLAIN\r\n.\r\n";
    static inline const QByteArray list = "+OK 2\r\n1 60\r\n2 60\r\n.\r\n";
    static inline const QByteArray identifiers = "+OK\r\n1 first\r\n2 second\r\n.\r\n";

    static QByteArray message(const char *number)
    {
        return QByteArray("+OK\r\nSubject: message ") + number +
               "\r\nReceived: from a by b;\r\n\tFri, 17 Jul 2020 02:44:25 "
               "+0000\r\n\r\n..\r\n..dots\r\n"
               "-ERR no answer\r\n.\r\n";
    }

    static inline const QByteArrayList good = {capabilities, "+OK in\r\n", capabilities,
                                               list,         identifiers,  message("1"),
                                               message("2"), "+OK bye\r\n"};

    static void speak(StubLine &line, const QByteArrayList &answers,
                      const QByteArray &greeting = "+OK hello\r\n")
    {
        greet_and_answer(line, greeting, answers);
    }

    QStringList outcome_of(const QByteArrayList &answers)
    {
        return outcome(StubServer([answers](StubLine &line) { speak(line, answers); }));
    }

    // What one client says to a server with these answers.
    QList<QByteArray> said_to(const QByteArrayList &answers,
                              const Credentials &credentials = {SignInKind::Password, "ann",
                                                                "pencil"})
    {
        const StubServer stub([&](StubLine &line) { speak(line, answers); });
        {
            Pop3Inbox reader = inbox(stub, LineSecurity::Plain, credentials);
            EXPECT_EQ(outcome(reader), all);
        }
        return heard_by(stub);
    }

    const QStringList all = {"message 1", "message 2"};
};
