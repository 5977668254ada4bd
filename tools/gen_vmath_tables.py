#!/usr/bin/env python3
"""Writes the tables of src/vmath from their definitions: gen_vmath_tables.py [DIRECTORY]

Each value is rounded from 60 digits. Long tables serve scalar look-ups; those named kRegister... have
as many entries as a vector register holds (or two of them) and come with the polynomial that their
wider steps need. Polynomials interpolate at Chebyshev's nodes, which is within a few per cent of the
best fit.
"""
import math
import pathlib
import struct
import sys

import mpmath as mp
from mpmath import mpf

mp.mp.prec = 200
LN2, LOG10E = mp.log(2), mp.log10(mp.e)


def f32(x):
    """The nearest single precision number: to 24 bits (no table holds a denormal)."""
    if x == 0:
        return 0.0
    m, e = mp.frexp(mpf(x))
    return float(mp.ldexp(mp.nint(mp.ldexp(m, 24)), e - 24))


def f64(x):
    if x == 0:
        return 0.0
    m, e = mp.frexp(mpf(x))
    return float(mp.ldexp(mp.nint(mp.ldexp(m, 53)), int(e) - 53))


def bits(x):
    return struct.unpack("<i", struct.pack("<f", x))[0]


def bits64(x):
    return struct.unpack("<q", struct.pack("<d", x))[0]


def text(x, single):
    if isinstance(x, int):
        return hex(x)
    if x == 0:
        return "0"
    digits, exponent = x.hex().split("p")
    return digits.rstrip("0").rstrip(".") + "p" + exponent + ("f" if single else "")


def array(type_, name, rows, single, per_line):
    """rows: numbers, or tuples for structures."""
    cells = ["{" + ", ".join(text(v, single) for v in r) + "}" if isinstance(r, tuple) else text(r, single)
             for r in rows]
    lines = [f"alignas(64) inline constexpr {type_} {name}[{len(rows)}] = {{"]
    for i in range(0, len(cells), per_line):
        lines.append("    " + ", ".join(cells[i:i + per_line]) + ",")
    return "\n".join(lines + ["};", ""])


def constant(type_, name, value):
    return f"inline constexpr {type_} {name} = {text(value, type_ == 'float')};\n"


def fit(g, lo, hi, degree):
    """Coefficients, lowest first, of the polynomial that meets g at Chebyshev's nodes of [lo, hi]."""
    n = degree + 1
    x = [(lo + hi) / 2 + (hi - lo) / 2 * mp.cos(mp.pi * (2 * k + 1) / (2 * n)) for k in range(n)]
    a = mp.matrix(n, n)
    for r in range(n):
        for c in range(n):
            a[r, c] = x[r]**c
    return list(mp.lu_solve(a, mp.matrix([g(v) for v in x])))


def pair(x, round_):
    high = round_(x)
    return high, round_(x - mpf(high))


def bits_to_float(bits):
    return mpf(struct.unpack("<f", struct.pack("<I", bits))[0])


def series(f, terms):
    """f for |x| away from 0, its Taylor series near it (where f would cancel)."""
    return lambda x: sum(t * x**k for k, t in enumerate(terms)) if abs(x) < mpf(10)**-6 else f(x)


def exp_tables():
    out = ["// 2^(j/128), and what rounding it left over.\n",
           array("FloatPair", "kExp128", [pair(mpf(2)**(mpf(j) / 128), f32) for j in range(128)], True, 2),
           "// 2^(j/64), and what rounding it left over.\n",
           array("DoublePair", "kExp64", [pair(mpf(2)**(mpf(j) / 64), f64) for j in range(64)], False, 2),
           "// 2^(j/128).\n",
           array("double", "kPowerExp128", [f64(mpf(2)**(mpf(j) / 128)) for j in range(128)], False, 4)]
    # exp(r) = 1 + r + r^2 (c[0] + c[1] r + ...)
    g = series(lambda r: (mp.exp(r) - 1 - r) / r**2, [mpf(1) / mp.factorial(k + 2) for k in range(12)])
    for n, degree in ((4, 2), (16, 1)):
        a = LN2 / (2 * n) * mpf("1.001")
        exact = [mpf(2)**(mpf(j) / n) for j in range(n)]
        values = [f32(v) for v in exact]
        shift = 23 - int(math.log2(n))
        if n == 4:  # kept as floats: the level has no permutation of integers
            out += [f"// 2^(j/{n}), and the relative error of the rounded value.\n",
                    array("float", f"kRegisterExp{n}", values, True, 4)]
        else:
            out += [f"// The bits of 2^(j/{n}), less j in the lowest place of the integer that goes into the\n"
                    f"// exponent; and the relative error of the rounded value.\n",
                    array("std::int32_t", f"kRegisterExp{n}",
                          [bits(v) - (j << shift) for j, v in enumerate(values)], True, 8)]
        step = f32(LN2 / n) if n == 16 else float(mp.nint(LN2 / n * 2**16)) / 2**16
        out += [f"// {n} / ln 2, and ln 2 / {n} in two parts.\n",
                constant("float", f"kInverse{n}", f32(n / LN2)), constant("float", f"kStep{n}", step),
                constant("float", f"kStepLow{n}", f32(LN2 / n - mpf(step))),
                array("float", f"kRegisterExpLow{n}", [f32((e - mpf(v)) / v) for e, v in zip(exact, values)], True, 4),
                f"// exp(r) = 1 + r + r^2 (c0 + c1 r + ...) for |r| to ln 2 / {2 * n}.\n",
                array("float", f"kRegisterExpCoefficients{n}", [f32(c) for c in fit(g, -a, a, degree)], True, 4)]
    a = LN2 / 32 * mpf("1.001")
    out += ["// The bits of 2^(j/16), less j as above.\n",
            array("std::int64_t", "kRegisterPowerExp",
                  [bits64(f64(mpf(2)**(mpf(j) / 16))) - (j << 48) for j in range(16)], False, 4),
            array("double", "kRegisterPowerExpCoefficients", [f64(c) for c in fit(g, -a, a, 2)], False, 4)]
    return out


def log_bins(index_bits, offset, unit, d, exact=True):
    """Reciprocals for the bins of a mantissa table: bin b holds the floats of bits offset + b * step up to
    offset + (b + 1) * step. The factor is the multiple of unit that keeps |m * factor - d| least, the
    exact logarithm of d / factor goes with it. exact: m * factor - d is a single precision number, checked."""
    step = 1 << (23 - index_bits)
    bins, worst = [], mpf(0)
    for b in range(1 << index_bits):
        lo, hi = bits_to_float(offset + b * step), bits_to_float(offset + (b + 1) * step)
        def reach(k):
            return max(abs(lo * k * unit - d), abs(hi * k * unit - d))
        k0 = int(mp.nint(d / ((lo + hi) / 2) / unit))
        k = min((k0 - 1, k0, k0 + 1), key=reach)
        if lo <= 1 <= hi:
            k = int(d / unit)
        if not exact:
            pass
        elif lo < 1 < hi:  # both halves
            assert d * (1 - lo) <= mpf(2)**24 * unit * mpf(2)**-24 and d * (hi - 1) <= unit * 2
        else:
            ulp = mpf(2)**-24 if lo < 1 else mpf(2)**-23
            assert reach(k) <= mpf(2)**24 * unit * ulp, (b, reach(k))
        worst = max(worst, reach(k))
        bins.append((f32(k * unit), mp.log(d / (k * unit))))
    return bins, worst


def split_at(x, grid):
    high = mp.floor(x / grid) * grid
    return f32(high), f32(x - high)


def log_tables():
    out = []
    # Long table of the decimal logarithm; entry 0 belongs to 1, as the index ((bits + half) >> 16) & 127 counts.
    d = mpf(111) / 256
    bins, worst = log_bins(7, 0x3F3F8000, mpf(1) / 256, d)
    bins = bins[64:] + bins[:64]
    rows = [(f, f) + split_at(v * LOG10E, mpf(2)**-16) for f, v in bins]
    out += ["// Reciprocal times log10(e), twice, and the decimal logarithm that it leaves, in two parts.\n",
            array("Log10Entry", "kLog10", rows, True, 1)]
    # Short tables: 16 bins from 0.703125 on.
    for name, d, scale, unit in (("Log10", mpf(28) / 64, LOG10E, mpf(1) / 64), ("Ln", mpf(1), mpf(1), mpf(1) / 32)):
        bins, worst = log_bins(4, 0x3F340000, unit, d, exact=name == "Log10")
        # scale * ln(1 + z/d) = z + z (c[0] + c[1] z + ...)
        g = series(lambda z: (scale * mp.log(1 + z / d) - z) / z,
                   [scale / d - 1] + [scale * (-1)**k / (k + 1) / d**(k + 1) for k in range(1, 12)])
        out.append(f"// |z| to {float(worst):.4f}\n")
        out.append(array("float", f"kRegister{name}Factor", [f for f, _ in bins], True, 4))
        if name == "Log10":
            parts = [split_at(v * scale, mpf(2)**-16) for _, v in bins]
            out += [array("float", "kRegisterLog10High", [p[0] for p in parts], True, 4),
                    array("float", "kRegisterLog10Low", [p[1] for p in parts], True, 4),
                    array("float", "kRegisterLog10Coefficients", [f32(c) for c in fit(g, -worst, worst, 4)], True, 5)]
        else:
            h = series(lambda z: (mp.log(1 + z) - z) / z**2, [(-mpf(1))**(k + 1) / (k + 2) for k in range(12)])
            out += [array("float", "kRegisterLnValue", [f32(v) for _, v in bins], True, 4),
                    array("float", "kRegisterLnCoefficients", [f32(c) for c in fit(h, -worst, worst, 3)], True, 5)]
    # Double precision, for powers.
    out += ["// ln c and 1/c for c = 1 + i/256.\n",
            array("DoublePair", "kPowerLog256", [(f64(mp.log(1 + mpf(i) / 256)), f64(1 / (1 + mpf(i) / 256)))
                                            for i in range(257)], False, 2)]
    bins, worst = log_bins(4, 0x3F340000, mpf(1) / 1024, mpf(1), exact=False)
    bins = [(float(f), v) for f, v in bins]
    h = series(lambda z: (mp.log(1 + z) - z) / z**2, [(-mpf(1))**(k + 1) / (k + 2) for k in range(16)])
    out += [f"// |z| to {float(worst):.4f}\n",
            array("double", "kRegisterPowerFactor", [f for f, _ in bins], False, 4),
            array("double", "kRegisterPowerLog", [f64(v) for _, v in bins], False, 4),
            "// ln(1 + z) = z + z^2 (c0 + c1 z + ...)\n",
            array("double", "kRegisterPowerLogCoefficients", [f64(c) for c in fit(h, -worst, worst, 4)], False, 4),
            array("double", "kRegisterComplexLogCoefficients", [f64(c) for c in fit(h, -worst, worst, 6)], False, 4)]
    return out


def sincos_tables():
    rows = []
    for j in range(64):
        s, c = mp.sinpi(mpf(j) / 32), mp.cospi(mpf(j) / 32)
        rows.append(pair(s, f64) + pair(c, f64))
    mp.mp.prec = 400
    two_over_pi = int(mp.floor(2 / mp.pi * mpf(2)**256))
    words = [f"0x{(two_over_pi >> (192 - 64 * k)) & (2**64 - 1):016X}" for k in range(4)]
    mp.mp.prec = 200
    atan = [f64(mp.atan(mpf(j) / 16)) for j in range(16)]
    u = mpf(1) / 31
    g = lambda t: (mp.atan(mp.sqrt(t)) / mp.sqrt(t) - 1) / t if t > mpf(10)**-12 else -mpf(1) / 3 + t / 5
    return ["// Sine and cosine of j pi/32, each in two parts.\n",
            array("SinCosEntry", "kSinCos64", rows, False, 1),
            "// 256 bits of 2/pi behind the point.\n",
            "inline constexpr std::uint64_t kTwoOverPi[4] = {\n    " + ", ".join(words) + ",\n};\n",
            "// atan(j/16).\n",
            array("double", "kAtan16", atan, False, 4),
            "// atan(u) = u + u t (c0 + c1 t + ...), t = u^2, |u| to 1/31.\n",
            array("double", "kAtanCoefficients", [f64(c) for c in fit(g, mpf(0), u * u, 3)], False, 4)]


def main():
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "src/vmath"
    for name, make in (("exp", exp_tables), ("log", log_tables), ("sincos", sincos_tables)):
        lines = ["// Written by tools/gen_vmath_tables.py.\n", "// clang-format off\n"] + make()
        (folder / f"{name}_tables.inc").write_text("".join(lines))


if __name__ == "__main__":
    main()
