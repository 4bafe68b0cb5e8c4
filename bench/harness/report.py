"""The two tables: what every contestant took, and how the product stands against its targets."""

from dataclasses import dataclass, field
from statistics import median

from harness.contests import AT_REST, PRODUCT

MEMORY_LIMIT_KB = 120 * 1024
LINEAR_LIMIT = 1.15  # time per message at the larger count, against the smaller
MEMORY_GROWTH_LIMIT = 1.25  # peak memory, the same
IMPORT_MEMORY_LIMIT = 5  # peak memory above that of the program at rest, in sizes of the file


@dataclass
class Result:
    """All runs of one contestant; `trouble` says why there are none."""

    costs: list
    trouble: str = ""
    outcome: object = None  # what every run left behind
    traffic: list = field(default_factory=list)  # see Contestant

    def forget_runs(self):
        self.costs.clear()
        self.traffic.clear()

    @property
    def seconds(self) -> float:
        return median(cost.seconds for cost in self.costs)

    @property
    def rss_kb(self) -> float:
        return median(cost.rss_kb for cost in self.costs)


def shown_seconds(seconds: float) -> str:
    return f"{seconds * 1000:.0f} ms" if seconds < 1 else f"{seconds:.2f} s"


def shown_ratio(ratio: float) -> str:
    return f"{ratio:.2f}" if ratio >= 0.1 else f"1/{1 / ratio:.0f}"


def row(cells) -> str:
    return "| " + " | ".join(cells) + " |"


def cost_cells(result: Result, reference: Result | None) -> list:
    if not result.costs:
        return [result.trouble, "", "", "", ""]
    times = [cost.seconds for cost in result.costs]
    noisy = sum(cost.noisy for cost in result.costs)
    runs = f"{len(times)}" + (f" ({noisy} noisy)" if noisy else "")
    ratio = ""
    if reference and reference.costs and reference is not result:
        ratio = shown_ratio(reference.seconds / result.seconds)
    return [shown_seconds(result.seconds),
            f"{shown_seconds(min(times))} – {shown_seconds(max(times))}",
            f"{result.rss_kb / 1024:.0f} MB", runs, ratio]


def costs_table(contests, results) -> str:
    lines = [row(["work", "contestant", "median", "min – max", "peak memory", "runs",
                  "ostrix / this"]),
             row(["---", "---", "--:", "--:", "--:", "--:", "--:"])]
    for contest in contests:
        title = contest.title
        for contestant in contest.contestants:
            result = results[contest.name, contestant.name]
            reference = results[contest.name, PRODUCT]
            lines.append(row([title, contestant.name, *cost_cells(result, reference)]))
            title = ""
    return "\n".join(lines)


def verdict(what: str, measured: float | None, limit: float, show, at_least=False) -> str:
    shown_limit = f"{'≥' if at_least else '≤'} {show(limit)}"
    if measured is None:
        return row([what, "–", shown_limit, "not measured"])
    is_met = measured >= limit if at_least else measured <= limit
    return row([what, show(measured), shown_limit, "met" if is_met else "**missed**"])


def ratio_of(results, contest, target) -> float | None:
    ours, theirs = results[contest.name, PRODUCT], results[contest.name, target.against]
    return ours.seconds / theirs.seconds if ours.costs and theirs.costs else None


def growth(results, kind: str, counts, value) -> float | None:
    few, many = (results.get((f"retrieval-{kind}-{count}", PRODUCT)) for count in counts)
    if not (few and many and few.costs and many.costs):
        return None
    return value(many) / value(few)


def most_memory(results) -> float | None:
    peaks = [result.rss_kb for (contest, name), result in results.items()
             if name == PRODUCT and contest.startswith("retrieval") and result.costs]
    return max(peaks, default=None)


def retrieval_verdicts(results, counts) -> list:
    times = counts[1] / counts[0]
    lines = []
    for kind in ("maildir", "mbox"):
        slower = growth(results, kind, counts, lambda result: result.seconds)
        lines.append(verdict(f"retrieval, {kind}: time per message, larger inbox / smaller",
                             slower and slower / times, LINEAR_LIMIT, shown_ratio))
        lines.append(verdict(f"retrieval, {kind}: peak memory, larger inbox / smaller",
                             growth(results, kind, counts, lambda result: result.rss_kb),
                             MEMORY_GROWTH_LIMIT, shown_ratio))
    lines.append(verdict("retrieval: peak memory", most_memory(results), MEMORY_LIMIT_KB,
                         lambda kb: f"{kb / 1024:.0f} MB"))
    return lines


def server_verdicts(contest, ours: Result) -> list:
    lines = []
    if contest.least_rate:
        rate = contest.messages / ours.seconds if ours.costs else None
        lines.append(verdict(f"{contest.title}: messages a second", rate, contest.least_rate,
                             lambda number: f"{number:,.0f}", at_least=True))
    if contest.most_seconds:
        lines.append(verdict(f"{contest.title}: time", ours.seconds if ours.costs else None,
                             contest.most_seconds, shown_seconds))
    if contest.most_traffic:
        lines.append(verdict(f"{contest.title}: bytes received / bytes in the rows",
                             median(ours.traffic) if ours.traffic else None,
                             contest.most_traffic, shown_ratio))
    return lines


def import_verdict(results, file_size: int) -> str:
    busy, rest = (results.get((contest, PRODUCT)) for contest in ("import", AT_REST))
    grown = None
    if busy and rest and busy.costs and rest.costs:
        grown = (busy.rss_kb - rest.rss_kb) * 1024 / file_size
    return verdict("import: peak memory above the program at rest / size of the file", grown,
                   IMPORT_MEMORY_LIMIT, shown_ratio)


def targets_table(contests, results, counts, import_size: int) -> str:
    lines = [row(["target", "measured", "limit", ""]), row(["---", "--:", "--:", "---"])]
    for contest in contests:
        lines += [verdict(f"{contest.title}: time / {target.against}",
                          ratio_of(results, contest, target), target.limit, shown_ratio)
                  for target in contest.targets]
        lines += server_verdicts(contest, results[contest.name, PRODUCT])
    if any(contest.name.startswith("retrieval") for contest in contests):
        lines += retrieval_verdicts(results, counts)
    if any(contest.name == "import" for contest in contests):
        lines.append(import_verdict(results, import_size))
    return "\n".join(lines)
