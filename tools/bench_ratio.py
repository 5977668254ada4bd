#!/usr/bin/env python3
"""Time ratios of the library to its best peer.

Runs benchmark programs (9 repetitions, randomly interleaved) or reads their JSON output, and prints for each family
and size our median time, the best peer's median with its name, and the ratio: below 1 the library is ahead. Rows are
named family/implementation/size; zep_<column> is the library, and peers that the compiler made end in their level.

  tools/bench_ratio.py --build build               every benchmark program of a build
  tools/bench_ratio.py build/benchmarks/vector/arithmetic_bench --filter 'add_.*/1024'
  tools/bench_ratio.py --json saved.json --markdown
"""
import argparse
import collections
import json
import math
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile

NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
OURS = "zep_"


def find_programs(build):
    root = pathlib.Path(build)
    if (root / "benchmarks").is_dir():
        root = root / "benchmarks"
    return sorted(
        p for p in root.rglob("*_bench") if p.is_file() and os.access(p, os.X_OK)
    )


def run(program, options):
    with tempfile.TemporaryDirectory() as folder:
        out = os.path.join(folder, "out.json")
        command = [
            str(program),
            f"--benchmark_repetitions={options.repetitions}",
            "--benchmark_enable_random_interleaving=true",
            f"--benchmark_min_time={options.min_time}",
            f"--benchmark_out={out}",
            "--benchmark_out_format=json",
        ]
        if options.filter:
            command.append(f"--benchmark_filter={options.filter}")
        print(f"running {program}", file=sys.stderr, flush=True)
        pin = None
        if options.core is not None:
            pin = lambda: os.sched_setaffinity(0, {options.core})
        done = subprocess.run(
            command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, preexec_fn=pin
        )
        if done.returncode != 0:
            sys.exit(f"{program}: exit code {done.returncode}\n{done.stderr}")
        if not os.path.exists(out) or os.path.getsize(out) == 0:
            return None  # the filter matched nothing here
        with open(out) as file:
            return json.load(file)


def processor():
    try:
        with open("/proc/cpuinfo") as file:
            for line in file:
                if line.startswith("model name"):
                    return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return "unknown processor"


class Results:
    """Times in ns, by (family, size) and implementation."""

    def __init__(self, without=()):
        self.without = without
        self.times = collections.OrderedDict()
        self.contexts = []

    def add(self, document):
        context = document.get("context", {})
        self.contexts.append(context)
        for row in document.get("benchmarks", []):
            if row.get("run_type") == "aggregate" or row.get("error_occurred"):
                continue
            parts = row.get("run_name", row["name"]).split("/")
            if len(parts) < 3 or parts[1] in self.without:
                continue
            family, implementation, size = parts[:3]
            time = row["cpu_time"] * NANOSECONDS[row.get("time_unit", "ns")]
            by_name = self.times.setdefault((family, size), collections.OrderedDict())
            by_name.setdefault(implementation, []).append(time)

    def rows(self):
        for (family, size), by_name in sorted(self.times.items(), key=row_order):
            medians = {name: statistics.median(t) for name, t in by_name.items()}
            for name, time in medians.items():
                if name.startswith(OURS):
                    column = name[len(OURS):]
                    peers = [(t, peer) for peer, t in medians.items() if is_peer_of(column, peer)]
                    yield family, size, column, time, min(peers) if peers else None


# A column is judged by every peer but those that were compiled for a level above its own.
LEVELS_ABOVE = {"e9_avx512": (), "e9_avx2": ("-native",)}


def is_peer_of(column, name):
    above = LEVELS_ABOVE.get(column, ("-v3", "-native"))
    return not name.startswith(OURS) and not name.endswith(above or ("\0",))


# By family, then by size as a number. Interleaved runs come in random order.
def row_order(item):
    (family, size), _ = item
    return family, (0, int(size), size) if size.isdigit() else (1, 0, size)


def readable(ns):
    for unit, scale in (("ms", 1e6), ("us", 1e3)):
        if ns >= scale:
            return f"{ns / scale:.3g} {unit}" if ns < 100 * scale else f"{ns / scale:.0f} {unit}"
    return f"{ns:.1f} ns"


def header(results):
    context = results.contexts[0] if results.contexts else {}
    lines = [f"Processor: {processor()}, {context.get('num_cpus', '?')} logical cores"]
    lines.append(
        f"Library: {context.get('compiler', '?')}, flags {context.get('flags', '?').strip()}"
        f" and each variant's level; peer loops {context.get('peer_flags', '?')}"
    )
    if any(c.get("library_build_type") == "debug" for c in results.contexts):
        lines.append("The benchmark framework is a debug build; the timed loops are not affected")
    lines.append(f"Date: {context.get('date', '?')}; medians; ratio = ours / best peer, below 1 is ahead")
    return lines


COLUMNS = ("family", "size", "variant", "ours", "best peer", "peer", "ratio")


def table(results):
    for family, size, variant, time, best in results.rows():
        if best is None:
            yield family, size, variant, readable(time), "", "", ""
        else:
            yield (family, size, variant, readable(time), readable(best[0]), best[1],
                   f"{time / best[0]:.2f}")


def print_text(results):
    lines = [COLUMNS, *table(results)]
    widths = [max(len(line[i]) for line in lines) for i in range(len(COLUMNS))]
    print("\n".join(header(results)), end="\n\n")
    for line in lines:
        left = "  ".join(cell.ljust(w) for cell, w in zip(line[:1], widths[:1]))
        right = "  ".join(cell.rjust(w) for cell, w in zip(line[1:], widths[1:]))
        print(f"{left}  {right}")


def print_markdown(results):
    for line in header(results):
        print(f"- {line}")
    print("\n| " + " | ".join(COLUMNS) + " |")
    print("|" + "---|" * len(COLUMNS))
    for line in table(results):
        print("| " + " | ".join(line) + " |")


def print_summary(results):
    ratios = collections.OrderedDict()
    for family, _, variant, time, best in results.rows():
        if best:
            ratios.setdefault((family, variant), []).append(time / best[0])
    print()
    for (family, variant), values in ratios.items():
        mean = math.exp(statistics.fmean(map(math.log, values)))
        print(f"{family} ({variant}): geometric mean {mean:.2f}, worst {max(values):.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("programs", nargs="*", help="benchmark programs to run")
    parser.add_argument("--build", help="build folder whose benchmark programs (*_bench) are run")
    parser.add_argument("--json", nargs="+", default=[], help="saved outputs to read instead")
    parser.add_argument("--filter", help="regular expression of rows, family/implementation/size")
    parser.add_argument("--repetitions", type=int, default=9)
    parser.add_argument("--min-time", type=float, default=0.05, help="seconds a repetition")
    parser.add_argument("--without", action="append", default=[], help="a peer to leave out")
    parser.add_argument("--core", type=int, help="processor core to run on")
    parser.add_argument("--markdown", action="store_true")
    parser.add_argument("--summary", action="store_true", help="also a line for each family")
    options = parser.parse_args()

    programs = [pathlib.Path(p) for p in options.programs]
    if options.build:
        programs += find_programs(options.build)
    if not programs and not options.json:
        parser.error("no programs: give some, --build or --json")

    results = Results(set(options.without))
    for path in options.json:
        with open(path) as file:
            results.add(json.load(file))
    for program in programs:
        document = run(program, options)
        if document is not None:
            results.add(document)
    if not results.times:
        sys.exit("no rows")
    (print_markdown if options.markdown else print_text)(results)
    if options.summary:
        print_summary(results)


if __name__ == "__main__":
    main()
