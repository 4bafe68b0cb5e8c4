// The pure pieces by themselves, to see where a whole program's time goes and whether a change to
// one of them helps. Run build/bench/bench/bench_micro; not part of bench/run's tables.
#include "bench/inputs/message.h"
#include "bench/inputs/people.h"
#include "bench/inputs/prose.h"
#include "bench/inputs/random.h"
#include "db/like_pattern.h"
#include "db/multi_matcher.h"
#include "mail/message_reader.h"

#include <QString>
#include <QStringList>
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace
{
constexpr std::size_t texts = 10'000;

std::vector<std::string> addresses()
{
    std::vector<std::string> list;
    for (std::size_t i = 0; i < texts; ++i)
        list.push_back(person(2 * i).address);
    return list;
}

std::vector<std::string> letters()
{
    Random random(3);
    std::vector<std::string> list;
    for (std::size_t i = 0; i < texts / 10; ++i)
        list.push_back(prose(random, 2'000, false));
    return list;
}

/// Counts each text as an item and its bytes as bytes.
template <typename Pattern>
void match_all(benchmark::State &state, const Pattern &pattern,
               const std::vector<std::string> &list)
{
    std::size_t bytes = 0;
    for (const std::string &text : list)
        bytes += text.size();
    for (auto _ : state) {
        std::size_t matches = 0;
        for (const std::string &text : list)
            matches += pattern.matches(text) ? 1 : 0;
        benchmark::DoNotOptimize(matches);
    }
    const auto rounds = static_cast<std::int64_t>(state.iterations());
    state.SetItemsProcessed(rounds * static_cast<std::int64_t>(list.size()));
    state.SetBytesProcessed(rounds * static_cast<std::int64_t>(bytes));
}

void like_in_addresses(benchmark::State &state, const char *pattern)
{
    match_all(state, LikePattern(pattern), addresses());
}
BENCHMARK_CAPTURE(like_in_addresses, contained, "*weber5*");
BENCHMARK_CAPTURE(like_in_addresses, contained_accented, "*müller*");
BENCHMARK_CAPTURE(like_in_addresses, two_stars, "*.weber*@example.*");
BENCHMARK_CAPTURE(like_in_addresses, wildcards, "*web[a-f]r##*");
BENCHMARK_CAPTURE(like_in_addresses, everything, "**");

void like_in_letters(benchmark::State &state, const char *pattern)
{
    match_all(state, LikePattern(pattern), letters());
}
BENCHMARK_CAPTURE(like_in_letters, contained, "*undeliverable*");
BENCHMARK_CAPTURE(like_in_letters, contained_accented, "*größe*");

QStringList logged(std::int64_t count)
{
    QStringList values;
    for (std::int64_t i = 0; i < count; ++i)
        values << QString::fromStdString(person(static_cast<std::size_t>(40 * i + 1)).address);
    return values;
}

void build_matcher(benchmark::State &state)
{
    const QStringList values = logged(state.range());
    for (auto _ : state)
        benchmark::DoNotOptimize(MultiMatcher(values, 0).end());
}
BENCHMARK(build_matcher)->Arg(10)->Arg(1'000)->Unit(benchmark::kMillisecond);

void match_logged(benchmark::State &state)
{
    match_all(state, MultiMatcher(logged(state.range()), 0), addresses());
}
BENCHMARK(match_logged)->Arg(10)->Arg(1'000);

/// Messages of the inbox that the retrieval is measured with, one after the other.
void read_messages(benchmark::State &state)
{
    std::vector<QByteArray> messages;
    for (std::size_t number = 0; number < texts / 10; ++number)
        messages.push_back(QByteArray::fromStdString(make_message(number).text));
    for (auto _ : state) {
        for (const QByteArray &bytes : messages)
            benchmark::DoNotOptimize(read_message({bytes, QDateTime()}).text.size());
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(messages.size()));
}
BENCHMARK(read_messages)->Unit(benchmark::kMillisecond);
} // namespace

BENCHMARK_MAIN();
