// Prints the rounding error of the forward transforms of any length, ours and FFTW's in the same
// precision: root mean square against the definition in extended precision, at up to 256 bins of
// random signals, relative to the norm of the spectrum, in units of u * sqrt(log2 N), u = 2^-24 or
// 2^-53. Arguments: the column's slot, see src/core/columns.h; without one, the machine's best.
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/selection.h"
#include "support/buffers.h"
#include "transform/fftw_plan.h"
#include "zeps.h"

namespace zep::bench {
namespace {

// Smooth lengths, generic radices, primes by the definition and by convolution, powers of two.
constexpr int kLengths[] = {12,   17,   47,    60,    100,   243,   251,   360,   480,   596,
                            960,  1000, 1009,  1152,  1536,  1920,  2187,  3125,  4093,  4099,
                            7919, 8191, 10000, 16411, 44100, 48000, 65537, 99991, 100000};

using Extended = std::complex<long double>;

struct ComplexKind {
    using Spec = DFTSpecC32fc;
    using Element = Zep32fc;
    using Bin = Zep32fc;
    using Plan = FftwPlan<Zep32f>;
    static constexpr double unit = 0x1p-24;
    static constexpr auto create = zepsDFTInitAlloc_C_32fc;
    static constexpr auto release = zepsDFTFree_C_32fc;
    static constexpr auto forward = zepsDFTFwd_CToC_32fc;
    static constexpr auto plan = Plan::complex;
    static Extended sample(Zep32fc x) { return {x.re, x.im}; }
    static std::size_t bins(int N) { return static_cast<std::size_t>(N); }
    static Extended bin(const Zep32fc* X, int, std::size_t k) { return {X[k].re, X[k].im}; }
};

struct DoubleKind {
    using Spec = DFTSpecC64fc;
    using Element = Zep64fc;
    using Bin = Zep64fc;
    using Plan = FftwPlan<Zep64f>;
    static constexpr double unit = 0x1p-53;
    static constexpr auto create = zepsDFTInitAlloc_C_64fc;
    static constexpr auto release = zepsDFTFree_C_64fc;
    static constexpr auto forward = zepsDFTFwd_CToC_64fc;
    static constexpr auto plan = Plan::complex;
    static Extended sample(Zep64fc x) { return {x.re, x.im}; }
    static std::size_t bins(int N) { return static_cast<std::size_t>(N); }
    static Extended bin(const Zep64fc* X, int, std::size_t k) { return {X[k].re, X[k].im}; }
};

struct RealKind {
    using Spec = DFTSpecR32f;
    using Element = Zep32f;
    using Bin = Zep32fc;
    using Plan = FftwPlan<Zep32f>;
    static constexpr double unit = 0x1p-24;
    static constexpr auto create = zepsDFTInitAlloc_R_32f;
    static constexpr auto release = zepsDFTFree_R_32f;
    static constexpr auto forward = zepsDFTFwd_RToPerm_32f;
    static constexpr auto plan = Plan::real;
    static Extended sample(Zep32f x) { return x; }
    static std::size_t bins(int N) { return static_cast<std::size_t>(N / 2 + 1); }
    // Of the packed spectrum: R(0), R(N/2) where N is even, then pairs.
    static Extended bin(const Zep32f* X, int N, std::size_t k) {
        if (k == 0) return X[0];
        if (2 * k == static_cast<std::size_t>(N)) return X[1];
        const Zep32f* pair = X + 2 * k - (N % 2 == 0 ? 0 : 1);
        return {pair[0], pair[1]};
    }
};

struct Errors {
    double ours, fftw;
};

template <class Kind>
Errors errorsOf(int N) {
    using T = typename Kind::Element;
    const auto len = static_cast<std::size_t>(N);
    std::vector<Extended> roots(len);
    for (std::size_t k = 0; k < len; ++k) {
        const long double angle = 6.283185307179586476925286766559L * static_cast<long double>(k) /
                                  static_cast<long double>(N);
        roots[k] = {std::cos(angle), -std::sin(angle)};
    }
    typename Kind::Spec* spec = nullptr;
    if (Kind::create(&spec, N, ZEP_FFT_SCALE_NONE, zepAlgHintNone) != zepStsNoErr) std::abort();
    const typename Kind::Plan plan(Kind::plan, N);
    AlignedArray<T> x(len), X(len);
    AlignedArray<typename Kind::Bin> peer(len + 1);
    long double ours = 0, fftw = 0, norm = 0;
    const std::size_t step = (Kind::bins(N) + 255) / 256;
    const int signals = N < 2000 ? 2000 / N + 1 : 1;
    for (int s = 0; s < signals; ++s) {
        fillUniform(x, -1.0, 1.0, static_cast<std::uint64_t>(1000 * N + s));
        Kind::forward(x.data(), X.data(), spec, nullptr);
        plan.run(x.data(), peer.data());
        for (std::size_t k = 0; k < Kind::bins(N); k += step) {
            Extended sum = 0;
            std::size_t i = 0;
            for (const T& v : x) {
                sum += Kind::sample(v) * roots[i];
                i = i + k < len ? i + k : i + k - len;
            }
            ours += std::norm(Kind::bin(X.data(), N, k) - sum);
            fftw += std::norm(Extended(peer[k].re, peer[k].im) - sum);
            norm += std::norm(sum);
        }
    }
    Kind::release(spec);
    const auto inUnits = [&](long double difference) {
        return static_cast<double>(std::sqrt(difference / norm)) /
               (Kind::unit * std::sqrt(std::log2(N)));
    };
    return {inUnits(ours), inUnits(fftw)};
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    if (argc > 1) zep::zepSelectColumn(std::atoi(argv[1]));
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    std::printf(
        "| N | complex | FFTW | real | FFTW | double | FFTW |\n|---|---|---|---|---|---|---|\n");
    for (const int N : kLengths) {
        const Errors c = errorsOf<ComplexKind>(N), r = errorsOf<RealKind>(N),
                     d = errorsOf<DoubleKind>(N);
        std::printf("| %d | %.3f | %.3f | %.3f | %.3f | %.3f | %.3f |\n", N, c.ours, c.fftw, r.ours,
                    r.fftw, d.ours, d.fftw);
    }
}
