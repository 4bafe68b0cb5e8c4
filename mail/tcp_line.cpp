#include "mail/tcp_line.h"

#include <QHostAddress>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds slice{40};

struct Address
{
    sockaddr_storage place = {};
    socklen_t size = 0;
    int family = 0;
};

// Shared with the thread that asks the system, which may outlive the wait: nothing can end it.
struct Lookup
{
    std::mutex mutex;
    std::condition_variable has_ended;
    bool is_done = false;
    int error = 0;
    std::vector<Address> addresses;
};

struct FreeAddresses
{
    void operator()(addrinfo *list) const { freeaddrinfo(list); }
};

void look_up(const std::shared_ptr<Lookup> &lookup, const QByteArray &host, quint16 port)
{
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo *list = nullptr;
    // This machine needs no name service to find itself (RFC 6761, section 6.3).
    const bool is_this_machine = host.compare("localhost", Qt::CaseInsensitive) == 0;
    const char *asked = is_this_machine ? nullptr : host.constData();
    const int error = getaddrinfo(asked, QByteArray::number(port).constData(), &hints, &list);
    const std::unique_ptr<addrinfo, FreeAddresses> owned(error == 0 ? list : nullptr);
    const std::lock_guard lock(lookup->mutex);
    lookup->error = error;
    for (const addrinfo *found = owned.get(); found != nullptr; found = found->ai_next) {
        Address address;
        std::memcpy(&address.place, found->ai_addr, found->ai_addrlen);
        address.size = found->ai_addrlen;
        address.family = found->ai_family;
        lookup->addresses.push_back(address);
    }
    lookup->is_done = true;
    lookup->has_ended.notify_all();
}

// The name as the domain name system knows it; empty when it cannot be one.
QByteArray name_for_lookup(QString host)
{
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.sliced(1, host.size() - 2);
    const bool is_ascii =
        std::ranges::all_of(host, [](QChar c) { return c > u' ' && c.unicode() < 127; });
    return is_ascii ? host.toLatin1() : QUrl::toAce(host);
}

class Descriptor
{
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor()
    {
        if (number_ >= 0)
            close(number_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const { return number_; }
    int release() { return std::exchange(number_, -1); }

private:
    int number_;
};

class Attempt
{
public:
    Attempt(milliseconds patience, const std::function<void()> &turn)
        : patience_(patience),
          end_(Clock::now() + patience),
          turn_(turn)
    {
    }

    TcpLine run(const QByteArray &host, quint16 port)
    {
        std::vector<Address> addresses;
        if (const QString trouble = look_up_in_time(host, port, addresses); !trouble.isEmpty())
            return {-1, trouble};
        end_ = Clock::now() + patience_;
        TcpLine line;
        for (std::size_t i = 0; i < addresses.size() && line.descriptor < 0; ++i)
            line = try_address(addresses[i], addresses.size() - i);
        return line;
    }

private:
    bool is_over() const { return Clock::now() >= end_; }

    QString silence() const
    {
        return QStringLiteral("it did not answer for %1 seconds")
            .arg(static_cast<double>(patience_.count()) / 1000);
    }

    QString look_up_in_time(const QByteArray &host, quint16 port, std::vector<Address> &addresses)
    {
        const auto lookup = std::make_shared<Lookup>();
        std::thread([lookup, host, port] { look_up(lookup, host, port); }).detach();
        std::unique_lock lock(lookup->mutex);
        while (!lookup->has_ended.wait_for(lock, slice, [&] { return lookup->is_done; })) {
            if (is_over())
                return QStringLiteral("the name of the host could not be looked up in time");
            lock.unlock();
            turn_();
            lock.lock();
        }
        if (lookup->error == 0 && lookup->addresses.empty())
            return QStringLiteral("the host has no address");
        if (lookup->error != 0)
            return QString::fromLocal8Bit(gai_strerror(lookup->error));
        addresses = lookup->addresses;
        return {};
    }

    // A silent address leaves the others their share of the time.
    TcpLine try_address(const Address &address, std::size_t left)
    {
        const auto share = (end_ - Clock::now()) / static_cast<Clock::rep>(left);
        const Clock::time_point end = Clock::now() + share;
        Descriptor line(
            socket(address.family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
        if (line.number() < 0)
            return {-1, words_for(errno)};
        const auto *place = reinterpret_cast<const sockaddr *>(&address.place);
        if (connect(line.number(), place, address.size) != 0 && errno != EINPROGRESS)
            return {-1, words_for(errno)};
        while (!is_settled(line.number())) {
            if (Clock::now() >= end)
                return {-1, silence()};
            turn_();
        }
        int error = 0;
        socklen_t size = sizeof error;
        getsockopt(line.number(), SOL_SOCKET, SO_ERROR, &error, &size);
        return error == 0 ? TcpLine{line.release(), {}} : TcpLine{-1, words_for(error)};
    }

    static bool is_settled(int line)
    {
        pollfd wait = {line, POLLOUT, 0};
        return poll(&wait, 1, static_cast<int>(slice.count())) == 1;
    }

    static QString words_for(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

    milliseconds patience_;
    Clock::time_point end_;
    const std::function<void()> &turn_;
};
} // namespace

TcpLine open_tcp_line(const QString &host, quint16 port, milliseconds patience,
                      const std::function<void()> &turn)
{
    const QByteArray name = name_for_lookup(host);
    if (name.isEmpty())
        return {-1, QStringLiteral("this is no name of a host")};
    return Attempt(patience, turn).run(name, port);
}
