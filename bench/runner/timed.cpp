// Runs one command and reports what it cost as a whole process. Small and in C++, because a process
// started by a bigger one shows no less peak memory than its starter had.
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
double seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

[[noreturn]] void become(char **command)
{
    execvp(command[0], command);
    std::cerr << command[0] << ": " << std::strerror(errno) << '\n';
    _exit(127);
}

int exit_code(int status)
{
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Writes {"seconds", "cpu", "rss_kb", "exit"}; the command's children count as it waits for them.
bool run(char **command, const char *report)
{
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0)
        become(command);
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child)
        return false;
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    std::ofstream file(report);
    file << "{\"seconds\": " << wall.count()
         << ", \"cpu\": " << seconds(usage.ru_utime) + seconds(usage.ru_stime)
         << ", \"rss_kb\": " << usage.ru_maxrss << ", \"exit\": " << exit_code(status) << "}\n";
    file.close();
    return file.good();
}
} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::cerr << "usage: bench_timed REPORT COMMAND [ARGUMENT]...\n";
        return 2;
    }
    if (!run(argv + 2, argv[1])) {
        std::cerr << "bench_timed: " << std::strerror(errno) << '\n';
        return 1;
    }
    return 0;
}
