// Rows whose results are compared with the definition in double precision before they are timed.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <string>

#include "support/buffers.h"
#include "support/rows.h"
#include "zeptypes.h"

namespace zep::bench {

inline std::complex<double> wide(Zep16s x) { return x; }
inline std::complex<double> wide(Zep32f x) { return x; }
inline std::complex<double> wide(Zep64f x) { return x; }
inline std::complex<double> wide(Zep32fc x) { return {x.re, x.im}; }

// A sum of products and of their magnitudes.
struct Sum {
    std::complex<double> value = 0;
    double magnitude = 0;
    void add(std::complex<double> a, std::complex<double> b) {
        value += a * b;
        magnitude += std::abs(a) * std::abs(b);
    }
};

// One computation of `outputs` elements. A row makes what it needs (states, plans), then runs.
template <class T>
struct Case {
    using Run = std::function<void(T* dst)>;
    using Make = std::function<Run()>;

    std::string family;
    std::int64_t size;
    int outputs;
    double operations;                 // of a run, multiplications and additions
    std::function<Sum(int)> expected;  // of output n on fresh data; none: not compared
    std::size_t room = 0;              // of dst, beyond the outputs

    void ours(Make make) const { addOurs(family, size, body(make)); }
    void peer(const std::string& name, Make make) const { addPeer(family, name, size, body(make)); }
    // One whose results are not ours by its definition.
    void unlike(const std::string& name, Make make) const {
        Case other = *this;
        other.expected = nullptr;
        other.peer(name, make);
    }

private:
    // Single precision errs by less in one chain of 2^16 sums or a transform of 2^18 points.
    bool agrees(const T* y) const {
        double worst = 0, largest = 0;
        const int step = std::max(1, outputs / 61);
        for (int n = 0; expected && n < outputs; n += step) {
            const Sum sum = expected(n);
            worst = std::max(worst, std::abs(wide(y[n]) - sum.value));
            largest = std::max(largest, sum.magnitude);
        }
        const double rounding = std::is_integral_v<T> ? 1 : 0;
        return worst <= 3e-5 * largest + rounding;
    }

    Body body(Make make) const {
        return [c = *this, make](benchmark::State& state) {
            AlignedArray<T> dst(static_cast<std::size_t>(c.outputs) + c.room + 64);
            std::fill(dst.begin(), dst.end(), T{});
            const Run run = make();
            run(dst.data());
            if (!c.agrees(dst.data())) {
                state.SkipWithError("results differ");
                return;
            }
            for (auto _ : state) {
                run(dst.data());
                benchmark::ClobberMemory();
            }
            state.counters["flops"] =
                benchmark::Counter(c.operations, benchmark::Counter::kIsIterationInvariantRate);
        };
    }
};

}  // namespace zep::bench
