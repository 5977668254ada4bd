#!/usr/bin/env python3
"""Table and plots of the errors of vector mathematics: vmath_accuracy.py WALK FOLDER

Reads what `vmath_error walk WALK` has written. Prints the table, a row for each result and group of columns with the same
bits, and writes FOLDER/<function>.svg: the largest error in each binade of the argument, by gnuplot.
"""
import csv
import math
import pathlib
import subprocess
import sys

NAMES = ["Exp_32f_A24", "Exp_32f_I", "Ln_32f_I", "Log10_32f_A11", "Log10_32f_A24", "SinCos_32f_A11", "SinCos_32f_A21",
         "SinCos_32f_A24"]


def read(path):
    """rows[part, column][binade]; a binade that was begun twice counts as it came last."""
    rows = {}
    for r in csv.DictReader(open(path)):
        rows.setdefault((r["part"], r["column"]), {})[int(r["binade"])] = r
    for key, binades in rows.items():
        if len(binades) != 512:
            sys.exit(f"{path}: {len(binades)} of 512 binades of {key}")
    return rows


def groups(rows, part):
    """Lists of columns with the same bits."""
    result = []
    for p, column in rows:
        if p != part:
            continue
        same = all(r["as_below"] == "1" for r in rows[p, column].values())
        if result and same:
            result[-1].append(column)
        else:
            result.append([column])
    return result


def parts_of(rows):
    return list(dict.fromkeys(part for part, _ in rows))


def table(name, rows):
    for part in parts_of(rows):
        for group in groups(rows, part):
            binades = rows[part, group[0]].values()
            count = sum(int(r["count"]) for r in binades)
            worst = max(binades, key=lambda r: float(r["ulp"]))
            mean = sum(float(r["sum"]) for r in binades) / count
            bits = -math.log2(max(float(r["relative"]) for r in binades))
            print(f"| {name}{' ' + part if part else ''} | {', '.join(group)} | {count} | {float(worst['ulp']):.4f} | "
                  f"{worst['at']} | {mean:.4f} | {bits:.2f} |")


def plot(name, rows, folder):
    """Binades of negative arguments to the left, from the largest on; of positive ones to the right."""
    parts = parts_of(rows)
    both = groups(rows, parts[0])
    if len(parts) == 2 and groups(rows, parts[1]) != both:
        both = [[c] for _, c in list(rows)[:len(rows) // 2]]
    largest, blocks = 0, []
    for group in both:
        points = []
        for x in range(-255, 256):
            sign, field = (256, -x - 1) if x < 0 else (0, x)
            if field > 254:
                continue
            of_parts = [rows[p, group[0]][sign + field] for p in parts]
            if not any(int(r["count"]) for r in of_parts):
                continue
            ulp = max(float(r["ulp"]) for r in of_parts)
            largest = max(largest, ulp)
            points.append(f"{x + 0.5} {max(ulp, 0.001)}")
        blocks.append(points)
    negative = any(p.startswith("-") for p in blocks[0])
    tics = [(s * (e + 127), ("-" if s < 0 else "") + f"2^{{{e}}}") for e in (-100, -50, 0, 50, 100)
            for s in ((1, -1) if negative else (1,))] + [(0, "0")]
    script = ['set terminal svg size 860,300 font "sans,11"', f'set output "{folder / name}.svg"',
              f'set title "zeps{name}: largest error in each binade of the argument" noenhanced', "set key outside right noenhanced",
              'set ylabel "ULP"', "set grid", "set xtics (" + ", ".join(f'"{t}" {x}' for x, t in sorted(tics)) + ")",
              f"set xrange [{-256 if negative else 0}:256]"]
    script.append("set logscale y; set yrange [0.1:*]" if largest > 10 else "set yrange [0:*]")
    for k, points in enumerate(blocks):
        script += [f"$d{k} << EOD", *points, "EOD"]
    script.append("plot " + ", ".join(f'$d{k} with lines lw {len(blocks) - k} title "{" ".join(g)}"'
                                       for k, g in enumerate(both)))
    subprocess.run(["gnuplot"], input="\n".join(script) + "\n", text=True, check=True)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    walk, folder = map(pathlib.Path, sys.argv[1:])
    folder.mkdir(parents=True, exist_ok=True)
    print("| result | columns | finite values | largest error, ULP | at | mean, ULP | correct bits |")
    print("|---|---|---|---|---|---|---|")
    for name in NAMES:
        path = walk / f"{name}.csv"
        if not path.exists():
            continue
        rows = read(path)
        table(name, rows)
        plot(name, rows, folder)


if __name__ == "__main__":
    main()
