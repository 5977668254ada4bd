// The error of the one-argument functions over all 2^32 single precision numbers, against the C
// library's double precision (itself off by less than 2^-52 of the result):
//
//   vmath_error [SLOT [STRIDE [FUNCTION]]]     slot 0: the machine's own; stride 1: every number
//
// For each result: the largest error in units in the last place and where it occurs, the mean error,
// and the correct bits, counted from the leading bit of the result down to 2^-12.
#include <cstdio>
#include <cstdlib>

#include "core/selection.h"
#include "vmath/functions.h"

namespace zep::bench {
namespace {

struct Tally {
    double worst = 0, sum = 0, relative = 0;
    float at = 0;
    long count = 0;

    void add(float x, float y, double exact) {
        if (std::isnan(exact) || std::isinf(static_cast<float>(exact))) return;
        const double error = test::ulpError(y, exact);
        if (error > worst) {
            worst = error;
            at = x;
        }
        sum += error;
        ++count;
        const double off = std::fabs(static_cast<double>(y) - exact);
        relative = std::max(relative, off / std::max(std::fabs(exact), 0x1p-12));
    }
    void print(const char* function, const char* part) const {
        std::printf("%-15s %-4s %12ld values: largest %.4f ULP at %.9g, mean %.4f, %.2f bits\n",
                    function, part, count, worst, static_cast<double>(at),
                    sum / static_cast<double>(count), -std::log2(relative));
    }
};

// Where the plain functions keep to a rule of their own.
bool leftOut(const test::MathFunction& f, float x) {
    const std::string name = f.name;
    if (name == "Exp_32f_I") return !(x > -87.3365f && x <= 87.0999984741211f);
    if (name == "Ln_32f_I") return !(x >= 0x1p-126f);
    return false;
}

void walk(const test::MathFunction& f, std::uint64_t stride) {
    constexpr std::size_t kChunk = 4096;
    static float x[kChunk], y[kChunk], z[kChunk];
    Tally first, second;
    for (std::uint64_t bits = 0; bits < std::uint64_t{1} << 32;) {
        int n = 0;
        for (; n < static_cast<int>(kChunk) && bits < std::uint64_t{1} << 32; bits += stride)
            x[n++] = test::fromBits(static_cast<std::uint32_t>(bits));
        f.run(x, nullptr, y, z, n);
        for (int i = 0; i < n; ++i) {
            if (leftOut(f, x[i])) continue;
            const auto at = static_cast<double>(x[i]);
            first.add(x[i], y[i], f.first(at, 0));
            if (f.outputs == 2) second.add(x[i], z[i], f.second(at, 0));
        }
    }
    first.print(f.name, f.outputs == 2 ? "sin" : "");
    if (f.outputs == 2) second.print(f.name, "cos");
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    const int slot = argc > 1 ? std::atoi(argv[1]) : 0;
    if (slot > 0) zep::zepSelectColumn(slot);
    const std::uint64_t stride = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    for (const auto& f : zep::test::mathFunctions()) {
        if (f.inputs != 1 || f.constant) continue;
        if (argc > 3 && std::string(f.name).find(argv[3]) == std::string::npos) continue;
        zep::bench::walk(f, stride);
    }
}
