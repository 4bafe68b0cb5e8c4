#include "tests/mail/servers/smtp_stub.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <thread>

namespace
{
using namespace std::chrono_literals;

QByteArray usual_answer(const QByteArray &command, const QByteArray &extensions)
{
    const QByteArray verb = command.split(' ').first();
    if (verb == "EHLO")
        return "250-stub\r\n" + extensions + "250 HELP\r\n";
    if (verb == "DATA")
        return "354 go on\r\n";
    return verb == "QUIT" ? "221 bye\r\n" : "250 ok\r\n";
}

bool say(StubLine &line, const QByteArray &answer)
{
    if (answer == "stall")
        line.stall();
    else if (answer != "close")
        line.say(answer);
    return answer != "stall" && answer != "close";
}

} // namespace

void serve(StubLine &line, const SmtpAnswer &answer, const QByteArray &extensions)
{
    const auto reply = [&](const QByteArray &command) {
        const QByteArray special = answer(command);
        return special.isNull() ? usual_answer(command, extensions) : special;
    };
    bool goes_on =
        say(line, reply("(greeting)") == "250 ok\r\n" ? "220 stub\r\n" : reply("(greeting)"));
    while (goes_on) {
        const QByteArray command = line.hear();
        if (command.isEmpty())
            return;
        const QByteArray said = reply(command);
        goes_on = say(line, said);
        if (said.startsWith("354")) {
            while (line.is_open() && line.hear() != ".") {
            }
            goes_on = say(line, reply("."));
        }
    }
}

void wait_for_end_of(const StubServer &server)
{
    const QDeadlineTimer end(5'000);
    const auto ended = [&server] {
        const QList<QByteArray> heard = server.heard();
        return std::ranges::count_if(
            heard, [](const QByteArray &line) { return line.contains(" EHLO "); });
    };
    while (ended() < server.lines() && !end.hasExpired())
        std::this_thread::sleep_for(1ms);
}

StubServer::Script by_the_book(SmtpAnswer answer, const QByteArray &extensions)
{
    return [answer = std::move(answer), extensions](StubLine &line) {
        serve(line, answer, extensions);
    };
}

QList<QByteArray> commands(const StubServer &server)
{
    wait_for_end_of(server);
    QList<QByteArray> verbs;
    for (const QByteArray &line : server.heard())
        verbs += line.split(' ').value(1);
    return verbs;
}

int count_of(const StubServer &server, const QByteArray &verb)
{
    return static_cast<int>(commands(server).count(verb));
}
