// Starts a program and measures, from outside, how long it takes until its window shows what it
// goes on showing. The window is watched for a while and the pictures are looked back at: the
// moment counts from which on the picture is the last one, so that an empty frame that fills later
// does not pass for a painted window. Some pixels may differ, else a blinking cursor would count.
#include "bench/runner/screen.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>
#include <fstream>
#include <iostream>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto until_window = 60s;
constexpr auto watched = 1500ms;
constexpr auto settled = 200ms;
constexpr auto between_looks = 500us;
constexpr auto to_end = 5s;
constexpr std::size_t still_same = 1000; // one pixel in so many may differ

struct Look
{
    Clock::time_point time;
    Picture picture;
};

/// The started program; killed when it has not ended by itself.
class Program
{
public:
    explicit Program(char **command) : process_(fork())
    {
        if (process_ < 0)
            throw std::runtime_error("Cannot start a process");
        if (process_ == 0)
            become(command);
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;
    ~Program()
    {
        if (!ended_) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
    }

    bool has_ended()
    {
        ended_ = ended_ || waitpid(process_, &status_, WNOHANG) == process_;
        return ended_;
    }

    /// @throws std::runtime_error when it does not end within a few seconds, or ends badly.
    void wait_for_end()
    {
        const Clock::time_point begin = Clock::now();
        while (!has_ended() && Clock::now() - begin < to_end)
            std::this_thread::sleep_for(1ms);
        if (!ended_ || !WIFEXITED(status_) || WEXITSTATUS(status_) != 0)
            throw std::runtime_error("The program has not ended well after its window was closed");
    }

private:
    [[noreturn]] static void become(char **command)
    {
        execvp(command[0], command);
        std::cerr << "Cannot run " << command[0] << '\n';
        _exit(127);
    }

    pid_t process_;
    bool ended_ = false;
    int status_ = 0;
};

WindowPlace wait_for_window(Screen &screen, Program &program)
{
    const Clock::time_point begin = Clock::now();
    while (!program.has_ended() && Clock::now() - begin < until_window) {
        if (const auto place = screen.appeared())
            return *place;
        pollfd ready{screen.descriptor(), POLLIN, 0};
        poll(&ready, 1, 1000);
    }
    throw std::runtime_error("No window has appeared");
}

/// The different pictures of the window, each with the time at which it was first seen.
std::vector<Look> watch(const Screen &screen, const WindowPlace &place)
{
    std::vector<Look> looks;
    const Clock::time_point end = Clock::now() + watched;
    while (Clock::now() < end) {
        Picture picture = screen.look_at(place);
        if (looks.empty() || looks.back().picture != picture)
            looks.push_back({Clock::now(), std::move(picture)});
        std::this_thread::sleep_for(between_looks);
    }
    return looks;
}

bool nearly_same(const Picture &a, const Picture &b)
{
    if (a.size() != b.size())
        return false;
    std::size_t different = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        different += a[i] != b[i] ? 1 : 0;
    return different <= a.size() / still_same;
}

bool is_blank(const Picture &picture)
{
    return std::all_of(picture.begin(), picture.end(),
                       [&](std::uint32_t pixel) { return pixel == picture.front(); });
}

/// When the picture became the one that it was at the end of the watch.
Clock::time_point painted(const std::vector<Look> &looks, Clock::time_point watch_end)
{
    const Picture &last = looks.back().picture;
    if (is_blank(last))
        throw std::runtime_error("The window has stayed blank");
    auto first = looks.size() - 1;
    while (first > 0 && nearly_same(looks[first - 1].picture, last))
        --first;
    if (watch_end - looks[first].time < settled)
        throw std::runtime_error("The window was still changing when the watch ended");
    return looks[first].time;
}

double measure(char **command)
{
    Screen screen;
    const Clock::time_point begin = Clock::now();
    Program program(command);
    const WindowPlace place = wait_for_window(screen, program);
    const std::vector<Look> looks = watch(screen, place);
    const std::chrono::duration<double> shown = painted(looks, Clock::now()) - begin;
    screen.close(place);
    program.wait_for_end();
    return shown.count();
}
} // namespace

int main(int argc, char **argv)
try {
    if (argc < 3) {
        std::cerr << "usage: bench_first_paint REPORT PROGRAM [ARGUMENT]...\n";
        return 2;
    }
    const double seconds = measure(argv + 2);
    std::ofstream report(argv[1]);
    report << "{\"seconds\": " << seconds << "}\n";
    report.close();
    return report.good() ? 0 : 1;
} catch (const std::exception &error) {
    std::cerr << "bench_first_paint: " << error.what() << '\n';
    return 1;
}
