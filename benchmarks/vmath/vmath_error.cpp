// The errors of vector mathematics, for the tables and plots of the manual:
//
//   vmath_error walk FOLDER [STRIDE [FUNCTION...]]   all columns over all 2^32 numbers, or every STRIDE-th
//   vmath_error verify [STRIDE]                      the reference of the walk against MPFR
//   vmath_error powers [COUNT]                       random pairs, spread over all exponents
//   vmath_error complex [COUNT]                      random bases about the unit circle, against 200 bits
//
// A walk writes FOLDER/<function>.csv, a row for each result, column and binade of the argument, and goes on where an
// earlier one was stopped. tools/vmath_accuracy.py makes the tables and plots from it.
#include "vmath/vmath_error.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/buffers.h"
#include "vmath/functions.h"

namespace zep::bench {
namespace {

Exact exactOf(const test::MathFunction& f) {
    const std::string name = f.name;
    if (name.starts_with("Exp")) return Exact::Exp;
    if (name.starts_with("Ln")) return Exact::Ln;
    if (name.starts_with("Log10")) return Exact::Log10;
    return Exact::SinCos;
}

// Where the plain functions keep to a rule of their own.
bool leftOut(const test::MathFunction& f, float x) {
    const std::string_view name = f.name;
    if (name == "Exp_32f_I") return !(x > -87.33650207519531f && x <= 87.0999984741211f);
    if (name == "Ln_32f_I") return std::fabs(x) < 0x1p-126f || x == test::kInf;
    return false;
}
bool anyLeftOut(const test::MathFunction& f, int binade) {
    const std::string_view name = f.name;
    const int exponent = binade & 255;
    return (name == "Exp_32f_I" && exponent >= 127 + 6) ||
           (name == "Ln_32f_I" && (exponent == 0 || exponent == 255));
}

// Some elements' results in one column.
struct Tally {
    std::int64_t count = 0;
    double worst = 0, sum = 0, relative = 0;
    float at = 0;
    bool asBelow = true;  // the same bits as in the column below

    void add(double error, double ratio, float x) {
        ++count;
        sum += error;
        relative = std::max(relative, ratio);
        if (error > worst) {
            worst = error;
            at = x;
        }
    }
    void add(const Tally& t) {
        count += t.count;
        sum += t.sum;
        relative = std::max(relative, t.relative);
        if (t.worst > worst) {
            worst = t.worst;
            at = t.at;
        }
        asBelow = asBelow && t.asBelow;
    }
};

class Walk {
public:
    Walk(const test::MathFunction& f, std::uint64_t stride) : f_(f), stride_(stride) {}

    // The rows of the binade; sign and exponent field are its number.
    void binade(int number, std::FILE* out) {
        Tally sums[2][std::size(kColumns)];
        const std::uint64_t first = std::uint64_t{static_cast<unsigned>(number)} << 23;
        std::uint64_t at = (stride_ - first % stride_) % stride_;
        while (at < std::uint64_t{1} << 23) {
            int count = 0;
            for (; count < kChunk && at < std::uint64_t{1} << 23; at += stride_)
                x_[static_cast<std::size_t>(count++)] =
                    test::fromBits(static_cast<std::uint32_t>(first + at));
            std::fill(x_.begin() + count, x_.end(), x_[static_cast<std::size_t>(count - 1)]);
            chunk(count, anyLeftOut(f_, number), sums);
        }
        for (int part = 0; part < f_.outputs; ++part)
            for (std::size_t c = 0; c < std::size(kColumns); ++c) {
                const Tally& t = sums[part][c];
                std::fprintf(out, "%d,%s,%s,%lld,%.5f,%.9g,%.9g,%.6g,%d\n", number,
                             f_.outputs == 1 ? ""
                             : part == 0     ? "sin"
                                             : "cos",
                             kColumns[c].name, static_cast<long long>(t.count), t.worst,
                             static_cast<double>(t.at), t.sum, t.relative, c > 0 && t.asBelow);
            }
        std::fflush(out);
    }

private:
    void chunk(int count, bool someLeftOut, Tally (&sums)[2][std::size(kColumns)]) {
        const int whole = (count + 15) / 16 * 16;
        reference(exactOf(f_), x_.data(), exact_[0].data(), exact_[1].data(), whole);
        Tally found[2];
        for (std::size_t c = 0; c < std::size(kColumns); ++c) {
            const auto now = c % 2;
            zepSelectColumn(kColumns[c].slot);
            f_.run(x_.data(), nullptr, y_[0][now].data(), y_[1][now].data(), count);
            for (int part = 0; part < f_.outputs; ++part) {
                const float* y = y_[part][now].data();
                const float* before = y_[part][1 - now].data();
                const bool same =
                    c > 0 && std::memcmp(y, before, static_cast<std::size_t>(count) * 4) == 0;
                if (!same) found[part] = compared(y, exact_[part].data(), count, someLeftOut);
                found[part].asBelow = same;
                sums[part][c].add(found[part]);
            }
        }
    }
    Tally compared(const float* y, const double* exact, int count, bool someLeftOut) {
        Tally t;
        if (!someLeftOut && unitsOff(y, exact, error_.data(), relative_.data(), count)) {
            for (int n = 0; n < count; ++n) {
                const auto i = static_cast<std::size_t>(n);
                t.add(error_[i], relative_[i], x_[i]);
            }
            return t;
        }
        for (int n = 0; n < count; ++n) {
            const float x = x_[static_cast<std::size_t>(n)];
            const bool finite = std::fabs(exact[n]) < 0x1.ffffffp127;
            if (leftOut(f_, x)) continue;
            const double error = unitsOff(y[n], exact[n]);
            if (!finite && error == 0) continue;  // infinite or NaN, as it should be
            const double size = std::max(std::fabs(exact[n]), 0x1p-12);
            t.add(error, error > 1e8 ? 1 : std::fabs(static_cast<double>(y[n]) - exact[n]) / size,
                  x);
        }
        return t;
    }

    const test::MathFunction& f_;
    std::uint64_t stride_;
    AlignedArray<float> x_{kChunk},
        y_[2][2] = {{AlignedArray<float>(kChunk), AlignedArray<float>(kChunk)},
                    {AlignedArray<float>(kChunk), AlignedArray<float>(kChunk)}};
    AlignedArray<double> exact_[2] = {AlignedArray<double>(kChunk), AlignedArray<double>(kChunk)};
    AlignedArray<double> error_{kChunk}, relative_{kChunk};
};

int lastBinade(const std::string& path) {
    std::ifstream in(path);
    int last = -1;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] < '0' || line[0] > '9') continue;
        last = std::max(last, std::atoi(line.c_str()));
    }
    return last;
}

int walkAll(int argc, char** argv) {
    if (argc < 3) return 2;
    const std::string folder = argv[2];
    const std::uint64_t stride = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1;
    std::filesystem::create_directories(folder);
    for (const auto& f : test::mathFunctions()) {
        if (f.inputs != 1 || f.constant) continue;
        if (argc > 4 && std::none_of(argv + 4, argv + argc, [&](const char* name) {
                return std::string_view(f.name).find(name) != std::string_view::npos;
            }))
            continue;
        const std::string path = folder + "/" + f.name + ".csv";
        // The last binade's rows may be incomplete: they come again, and the later ones count.
        const int from = std::max(0, lastBinade(path));
        std::FILE* out = std::fopen(path.c_str(), from > 0 ? "a" : "w");
        if (out == nullptr) return 1;
        if (from == 0) std::fputs("binade,part,column,count,ulp,at,sum,relative,as_below\n", out);
        Walk walk(f, stride);
        for (int number = from; number < 512; ++number) walk.binade(number, out);
        std::fclose(out);
        std::printf("%s\n", f.name);
        std::fflush(stdout);
    }
    return 0;
}

// The reference's distance from correctly rounded double precision, in units of its last place.
int verify(std::uint64_t stride) {
    AlignedArray<float> x(16);
    AlignedArray<double> first(16), second(16);
    const struct {
        Exact f;
        const char* name;
        bool second;
    } all[] = {{Exact::Exp, "exp", false},
               {Exact::Ln, "ln", false},
               {Exact::Log10, "log10", false},
               {Exact::SinCos, "sin", false},
               {Exact::SinCos, "cos", true}};
    for (const auto& f : all) {
        double worst = 0;
        float where = 0;
        std::int64_t count = 0;
        for (std::uint64_t bits = 0; bits < std::uint64_t{1} << 32;) {
            for (int n = 0; n < 16; ++n, bits += stride)
                x[static_cast<std::size_t>(n)] = test::fromBits(static_cast<std::uint32_t>(bits));
            reference(f.f, x.data(), first.data(), second.data(), 16);
            for (std::size_t n = 0; n < 16; ++n) {
                if (f.f == Exact::Exp && std::fabs(x[n]) > 104) continue;
                const double y = f.second ? second[n] : first[n],
                             exact = exactly(f.f, x[n], f.second);
                if (!std::isfinite(exact) || exact == 0) continue;
                int e;
                std::frexp(exact, &e);
                const double error = std::fabs(y - exact) / std::ldexp(1.0, e - 53);
                ++count;
                if (!(error <= worst)) {
                    worst = error;
                    where = x[n];
                }
            }
        }
        std::printf(
            "%-6s %10lld values: the reference is off by at most %.3g units of double precision "
            "(at %.9g)\n",
            f.name, static_cast<long long>(count), worst, static_cast<double>(where));
        std::fflush(stdout);
    }
    return 0;
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    const std::uint64_t number = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 0;
    if (what == "walk") return zep::bench::walkAll(argc, argv);
    if (what == "verify") return zep::bench::verify(argc > 2 ? number : 4099);
    if (what == "powers") return zep::bench::walkPowers(argc > 2 ? number : 100'000'000);
    if (what == "complex") return zep::bench::walkComplexPowers(argc > 2 ? number : 100'000);
    std::fprintf(stderr,
                 "usage: vmath_error walk FOLDER [STRIDE [FUNCTION...]] | verify [STRIDE] | powers "
                 "[COUNT] | complex [COUNT]\n");
    return 2;
}
