#pragma once

#include "mail/server_connection.h"
#include "tests/mail/servers/certificates.h"
#include "tests/mail/servers/stub_server.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

/// Says the greeting, and one answer after the other to whatever the client says.
inline void greet_and_answer(StubLine &line, const QByteArray &greeting,
                             const QByteArrayList &answers)
{
    line.say(greeting);
    for (const QByteArray &answer : answers)
        line.answer(answer);
}

/// A place in a sign-on.
struct SignOnPlace
{
    LineSecurity security;
    QByteArrayList answers; // that are given before
    const char *step;
};

/// For tests of a server's inbox over a scripted server, as "ann" with the password "pencil".
template <typename Inbox>
class InboxOnStub : public testing::Test
{
protected:
    Inbox inbox(const StubServer &stub, LineSecurity security = LineSecurity::Plain,
                const Credentials &credentials = {SignInKind::Password, "ann", "pencil"},
                std::chrono::milliseconds patience = std::chrono::seconds(3))
    {
        MailServer server;
        server.host = "localhost";
        server.port = stub.port();
        server.security = security;
        NetworkConditions conditions;
        conditions.patience = patience;
        conditions.bounds = bounds;
        if (security != LineSecurity::Plain)
            conditions.authorities = certificates().authority();
        const auto ask = [credentials] { return credentials; };
        if constexpr (std::is_constructible_v<Inbox, MailServer, QString, decltype(ask),
                                              NetworkConditions>)
            return Inbox(server, QString(), ask, conditions);
        else
            return Inbox(server, ask, conditions);
    }

    /// The subjects that are read, and at the end how it failed, without the server's name.
    static QStringList outcome(Inbox &inbox)
    {
        QStringList found;
        try {
            inbox.fetch();
            for (int i = 0; i < inbox.count(); ++i)
                found += inbox.read(i).subject;
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), error_number::mail_failure);
            EXPECT_FALSE(error.description().contains("pencil")) << error.what();
            EXPECT_FALSE(error.description().contains("cGVuY2ls")) << error.what();
            // "The mail server 'localhost' (port 1143), logging in: …"
            found += error.description().section("), ", 1);
        }
        return found;
    }
    QStringList outcome(const StubServer &stub, LineSecurity security = LineSecurity::Plain)
    {
        Inbox reader = inbox(stub, security);
        return outcome(reader);
    }

    /// All that was said on the first line, which has ended or is about to.
    static QList<QByteArray> heard_by(const StubServer &stub)
    {
        while (stub.heard().isEmpty())
            std::this_thread::yield();
        return stub.heard();
    }

    /// Cuts the line at each of the places, once the server has heard what comes next, and falls
    /// silent there.
    void expect_told(const QByteArray &greeting, const std::vector<SignOnPlace> &places)
    {
        for (const SignOnPlace &place : places) {
            SCOPED_TRACE(place.answers.join().toStdString());
            const StubServer cutting([&](StubLine &line) {
                greet_and_answer(line, greeting, place.answers);
                line.hear();
            });
            EXPECT_EQ(outcome(cutting, place.security),
                      QStringList{QString(place.step) + ": the server closed the line"});
            const StubServer stalling([&](StubLine &line) {
                greet_and_answer(line, greeting, place.answers);
                line.stall();
            });
            Inbox reader = inbox(stalling, place.security, {SignInKind::Password, "ann", "pencil"},
                                 std::chrono::milliseconds(150));
            EXPECT_EQ(outcome(reader),
                      QStringList{QString(place.step) +
                                  ": the server did not answer within 0.15 seconds"});
            EXPECT_EQ(stalling.lines(), 1);
        }
    }

    /// Reads all from a server that answers so far and then hangs up, or says nothing any more.
    /// @return how long the longest leave took, in milliseconds.
    qint64 longest_leave(const QByteArray &greeting, const QByteArrayList &answers,
                         const QStringList &all, std::chrono::milliseconds patience)
    {
        qint64 longest = 0;
        for (const bool stalls : {false, true}) {
            const StubServer stub([&](StubLine &line) {
                greet_and_answer(line, greeting, answers);
                if (stalls)
                    line.stall();
            });
            QElapsedTimer clock;
            {
                Inbox reader = inbox(stub, LineSecurity::Plain,
                                     {SignInKind::Password, "ann", "pencil"}, patience);
                EXPECT_EQ(outcome(reader), all);
                clock.start();
            }
            longest = std::max(longest, clock.elapsed());
        }
        return longest;
    }

    bool encrypt(StubLine &line)
    {
        return line.encrypt(certificates().certificate_file("good"),
                            certificates().key_file("good"));
    }

    AnswerBounds bounds;

private:
    // Made when they are needed, which takes time.
    const Certificates &certificates()
    {
        if (!certificates_)
            certificates_ = std::make_unique<Certificates>();
        return *certificates_;
    }

    std::unique_ptr<Certificates> certificates_;
};
