#include "mail/known_providers.h"
#include "mail/service_lookup.h"
#include "mail/service_records.h"
#include "tests/support/print_qt.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTest>
#include <QUdpSocket>
#include <QtEndian>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
TEST(KnownProviders, ProposeTheirServers)
{
    const auto found = known_servers(" Ann.Smith@GMX.de ");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->imap.host, "imap.gmx.net");
    EXPECT_EQ(found->imap.port, 993);
    EXPECT_EQ(found->imap.security, LineSecurity::Tls);
    EXPECT_EQ(found->imap.user, "Ann.Smith@GMX.de");
    EXPECT_EQ(found->pop3.port, 995);
    EXPECT_EQ(found->smtp.host, "mail.gmx.net");
}

TEST(KnownProviders, KnowWhoHasNoPop3WhoWantsATokenAndWhoWantsStartTls)
{
    EXPECT_TRUE(known_servers("ann@icloud.com")->pop3.host.isEmpty());
    EXPECT_EQ(known_servers("ann@icloud.com")->smtp.security, LineSecurity::StartTls);
    EXPECT_EQ(known_servers("ann@outlook.com")->imap.sign_in, SignInKind::Token);
    EXPECT_EQ(known_servers("ann@outlook.com")->smtp.sign_in, SignInKind::Token);
    EXPECT_TRUE(known_servers("ann@outlook.com")->note.contains("token"));
    EXPECT_EQ(known_servers("ann@mailbox.org")->note, "");
}

TEST(KnownProviders, SayNothingOfOthers)
{
    for (const char *address :
         {"ann@example.org", "gmail.com", "@gmail.com", "", "ann@mail.com.gmail.co",
          "ann@gmail.com.example.org", "ann@notgmail.com"})
        EXPECT_FALSE(known_servers(address)) << address;
}

TEST(KnownProviders, GuessTheUsualNames)
{
    const ServerProposal guess = guessed_servers("ann@Example.org");
    EXPECT_EQ(guess.imap.host, "imap.example.org");
    EXPECT_EQ(guess.pop3.host, "pop.example.org");
    EXPECT_EQ(guess.smtp.host, "smtp.example.org");
    EXPECT_EQ(guess.smtp.port, 465);
    EXPECT_TRUE(guessed_servers("ann").is_empty());
    EXPECT_TRUE(guessed_servers("ann@a b/c").is_empty());
}

const QString address = "ann@Example.org";

TEST(ServiceRecords, AreAskedForUnderSixNames)
{
    EXPECT_EQ(service_names("example.org"),
              (QStringList{"_imaps._tcp.example.org", "_imap._tcp.example.org",
                           "_pop3s._tcp.example.org", "_pop3._tcp.example.org",
                           "_submissions._tcp.example.org", "_submission._tcp.example.org"}));
}

TEST(ServiceRecords, NameServersTheEncryptedLineFirst)
{
    const ServerProposal found =
        servers_from({{"_imap._tcp.example.org", "plain.example.org", 143},
                      {"_IMAPS._tcp.example.org", "Mail.example.org.", 993},
                      {"_imaps._tcp.example.org", "second.example.org", 993},
                      {"_submission._tcp.example.org", "out.example.org", 587}},
                     address);
    EXPECT_EQ(found.imap.host, "mail.example.org");
    EXPECT_EQ(found.imap.port, 993);
    EXPECT_EQ(found.imap.security, LineSecurity::Tls);
    EXPECT_EQ(found.imap.user, address);
    EXPECT_EQ(found.smtp.security, LineSecurity::StartTls);
    EXPECT_TRUE(found.pop3.host.isEmpty());
    EXPECT_EQ(foreign_hosts(found, address), QStringList());
}

TEST(ServiceRecords, ThatAreNoServersArePassedOver)
{
    const ServerProposal found =
        servers_from({{"_imaps._tcp.example.org", ".", 993},
                      {"_imap._tcp.example.org", "", 143},
                      {"_pop3s._tcp.example.org", "a b'\n", 995},
                      {"_submissions._tcp.example.org", "out.example.org", 0},
                      {"_imaps._tcp.example.com", "x.example.org", 993}},
                     address);
    EXPECT_TRUE(found.is_empty());
}

TEST(ServiceRecords, ThatPointToAnotherDomainAreTold)
{
    const ServerProposal found =
        servers_from({{"_imaps._tcp.example.org", "imap.provider.example", 993},
                      {"_pop3s._tcp.example.org", "notexample.org", 995},
                      {"_submissions._tcp.example.org", "imap.provider.example", 465}},
                     address);
    EXPECT_EQ(foreign_hosts(found, address),
              (QStringList{"imap.provider.example", "notexample.org"}));
}

/// A name service on a loopback address, which answers _imaps._tcp.example.org and says of every
/// other name that it does not exist.
class NameServer : public QUdpSocket
{
public:
    NameServer()
    {
        connect(this, &QUdpSocket::readyRead, this, [this] { answer(); });
    }

private:
    void answer()
    {
        while (hasPendingDatagrams()) {
            QByteArray question(512, '\0');
            QHostAddress asker;
            quint16 port = 0;
            question.truncate(readDatagram(question.data(), question.size(), &asker, &port));
            writeDatagram(reply(question), asker, port);
        }
    }

    // RFC 1035 section 4.1; SRV data as in RFC 2782.
    static QByteArray reply(const QByteArray &question)
    {
        const qsizetype end_of_name = question.indexOf('\0', 12) + 1;
        const bool is_known = question.contains("\x06_imaps");
        const QByteArray answers = is_known ? QByteArray("\x00\x01", 2) : QByteArray("\x00\x00", 2);
        QByteArray bytes = question.left(2) + QByteArray(is_known ? "\x81\x80" : "\x81\x83", 2) +
                           QByteArray("\x00\x01", 2) + answers + QByteArray(4, '\0') +
                           question.mid(12, end_of_name - 12 + 4);
        if (is_known) {
            const QByteArray target("\x04mail\x07"
                                    "example\x03org\x00",
                                    18);
            bytes += QByteArray("\xc0\x0c\x00\x21\x00\x01\x00\x00\x00\x3c\x00\x18", 12) +
                     QByteArray("\x00\x00\x00\x00\x03\xe1", 6) + target;
        }
        return bytes;
    }
};

/// Puts this process, which must have one thread, on a network of its own, a loopback alone: there
/// everybody may answer at port 53. Where that is not allowed the process stays where it is.
void enter_own_network()
{
    if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
        return;
    const int descriptor = socket(AF_INET, SOCK_DGRAM, 0);
    ifreq loopback = {};
    std::strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP;
    ioctl(descriptor, SIOCSIFFLAGS, &loopback);
    close(descriptor);
}

std::vector<ServiceRecord> answers(const ServiceResolver &resolve, const QStringList &names)
{
    std::vector<ServiceRecord> answered;
    QObject asker;
    QEventLoop loop;
    resolve(names, asker, [&](const std::vector<ServiceRecord> &records) {
        answered = records;
        loop.quit();
    });
    loop.exec();
    return answered;
}

/// Asks a name server of its own; tells on standard error what came, and ends the process.
[[noreturn]] void ask_own_name_server()
{
    enter_own_network();
    const QHostAddress place("127.0.0.153");
    NameServer server;
    if (!server.bind(place, 53)) {
        std::cerr << "nobody may answer at port 53: " << server.errorString().toStdString();
        std::_Exit(2);
    }
    const auto records =
        answers(name_service(std::chrono::seconds(5), place), service_names("example.org"));
    for (const ServiceRecord &record : records)
        std::cerr << record.name.toStdString() << ' ' << record.target.toStdString() << ' '
                  << record.port << ';';
    std::_Exit(0);
}

TEST(NameService, GivesTheRecordsThatItAnswers)
{
    EXPECT_EXIT(ask_own_name_server(), testing::ExitedWithCode(0),
                "^_imaps._tcp.example.org mail.example.org 993;$");
}

TEST(NameService, ThatIsNotThereHasNoRecords)
{
    QElapsedTimer clock;
    clock.start();
    const auto resolve = name_service(std::chrono::milliseconds(200), QHostAddress("127.0.0.154"));
    EXPECT_TRUE(answers(resolve, service_names("example.org")).empty());
    EXPECT_LT(clock.elapsed(), 4000);
    EXPECT_TRUE(answers(resolve, {}).empty());
}

TEST(NameService, TellsNobodyWhoIsGone)
{
    const auto resolve = name_service(std::chrono::milliseconds(50), QHostAddress("127.0.0.154"));
    bool is_told = false;
    {
        QObject asker;
        resolve(service_names("example.org"), asker, [&](const auto &) { is_told = true; });
    }
    QTest::qWait(150);
    EXPECT_FALSE(is_told);
}
} // namespace
