// Lines that leave this machine unencrypted, on a network of the test's own.
#include "mail/imap_inbox.h"
#include "mail/pop3_inbox.h"
#include "mail/smtp_way_out.h"
#include "tests/mail/servers/stub_server.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using namespace std::chrono_literals;

bool leave_the_network()
{
    return unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0 || unshare(CLONE_NEWNET) == 0;
}

// Whether the system lets a process have a network of its own; containers may not.
bool may_leave_the_network()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(leave_the_network() ? 0 : 1);
    int status = 1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

void set_address(int descriptor, unsigned long what, const char *address)
{
    ifreq request = {};
    std::strcpy(request.ifr_name, "lo");
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    inet_pton(AF_INET, address, &place.sin_addr);
    std::memcpy(&request.ifr_addr, &place, sizeof place);
    ioctl(descriptor, what, &request);
}

// On this network the process is 192.0.2.1, and whoever else it speaks to there is another machine
// as far as addresses tell.
void join_a_network_of_its_own()
{
    if (!leave_the_network())
        std::_Exit(2);
    const int descriptor = socket(AF_INET, SOCK_DGRAM, 0);
    set_address(descriptor, SIOCSIFADDR, "192.0.2.1");
    set_address(descriptor, SIOCSIFNETMASK, "255.255.255.0");
    ifreq loopback = {};
    std::strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP;
    ioctl(descriptor, SIOCSIFFLAGS, &loopback);
    close(descriptor);
}

Credentials credentials()
{
    return {SignInKind::Password, "ann", "pencil"};
}

MailServer plain_server(const StubServer &stub)
{
    MailServer server;
    server.host = "192.0.2.2";
    server.port = stub.port();
    server.security = LineSecurity::Plain;
    server.user = "ann";
    return server;
}

// A server that offers to take a password, says yes to everything, and tells what it heard.
template <typename SignOn>
void sign_on_to(const QByteArray &greeting, const QByteArray &answer, SignOn &&sign_on)
{
    const StubServer stub(
        [&](StubLine &line) {
            line.say(greeting);
            while (!line.answer(answer).isEmpty()) {
            }
        },
        QHostAddress("192.0.2.2"));
    NetworkConditions conditions;
    conditions.patience = 3s;
    try {
        sign_on(plain_server(stub), conditions);
        std::cerr << "signed on";
    } catch (const RuntimeError &error) {
        std::cerr << error.description().section(", ", 1).toStdString();
    }
    while (stub.heard().isEmpty())
        std::this_thread::yield();
    std::cerr << " | " << stub.heard().join(' ').toStdString() << '\n';
}

[[noreturn]] void sign_on_over_plain_lines()
{
    join_a_network_of_its_own();
    sign_on_to("* OK hello\r\n", "* CAPABILITY IMAP4rev1 AUTH=PLAIN\r\nTAG OK\r\n",
               [](const MailServer &server, const NetworkConditions &conditions) {
                   ImapInbox(server, {}, &credentials, conditions).fetch();
               });
    sign_on_to("+OK hello\r\n", "+OK\r\n",
               [](const MailServer &server, const NetworkConditions &conditions) {
                   Pop3Inbox(server, &credentials, conditions).fetch();
               });
    sign_on_to("220 hello\r\n", "250-stub\r\n250 AUTH PLAIN\r\n",
               [](const MailServer &server, const NetworkConditions &conditions) {
                   SmtpWayOut(server, &credentials, conditions)
                       .hand_over("ann@example.org", {"bob@example.org"}, "Subject: x\r\n\r\n");
               });
    std::_Exit(0);
}

TEST(PlainLine, CarriesNoPasswordToAnotherMachine)
{
    if (!may_leave_the_network())
        GTEST_SKIP() << "this system gives no process a network of its own";
    testing::GTEST_FLAG(death_test_style) = "threadsafe"; // only one with one thread may leave it
    EXPECT_EXIT(sign_on_over_plain_lines(), testing::ExitedWithCode(0),
                "logging in: the line is not encrypted, so no password is sent \\| "
                "\\[clear\\] o1 LOGOUT\n"
                "logging in: the line is not encrypted, so no password is sent \\| "
                "\\[clear\\] QUIT\n"
                "signing on: the line is not encrypted: everybody on the way could read the "
                "password \\| \\[clear\\] EHLO \\[127.0.0.1\\]\n");
}
} // namespace
