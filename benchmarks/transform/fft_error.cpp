// Prints the rounding error of the forward transforms by order, ours and FFTW's: root mean square
// against a double transform of the same random signals, relative to the norm of the spectrum, in
// units of 2^-24 * sqrt(log2 N). Arguments: the variant's processor number, see
// tests/support/variant.cpp; without one, the machine's best.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/selection.h"
#include "reference/dft.h"
#include "support/buffers.h"
#include "transform/fftw_plan.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kMaxOrder = 22;

// Error of bins 0 .. bins-1 against their reference.
struct Error {
    double difference = 0, norm = 0;

    void add(const Zep32fc* X, const std::vector<test::Complex>& want, std::size_t bins) {
        for (std::size_t k = 0; k < bins; ++k) {
            difference += std::norm(test::Complex(X[k].re, X[k].im) - want[k]);
            norm += std::norm(want[k]);
        }
    }
    double inUnits(int order) const {
        return std::sqrt(difference / norm) / (0x1p-24 * std::sqrt(order));
    }
};

struct Row {
    Error complexOurs, complexFftw, realOurs, realFftw;
};

void transformComplex(int order, const FFTSpecC32fc* spec, const FftwPlan<Zep32f>& plan, Row& row,
                      std::uint64_t seed) {
    const std::size_t N = std::size_t{1} << order;
    AlignedArray<Zep32fc> x(N), X(N);
    fillUniform(x, -1.0, 1.0, seed);
    std::vector<test::Complex> want(N);
    for (std::size_t n = 0; n < N; ++n) want[n] = {x[n].re, x[n].im};
    want = test::fft(std::move(want));
    zepsFFTFwd_CToC_32fc(x.data(), X.data(), spec, nullptr);
    row.complexOurs.add(X.data(), want, N);
    plan.run(x.data(), X.data());
    row.complexFftw.add(X.data(), want, N);
}

void transformReal(int order, const FFTSpecR32f* spec, const FftwPlan<Zep32f>& plan, Row& row,
                   std::uint64_t seed) {
    const std::size_t N = std::size_t{1} << order;
    AlignedArray<Zep32f> x(N);
    AlignedArray<Zep32fc> X(N / 2 + 1);
    fillUniform(x, -1.0, 1.0, seed);
    std::vector<test::Complex> want(N);
    for (std::size_t n = 0; n < N; ++n) want[n] = x[n];
    want = test::fft(std::move(want));
    zepsFFTFwd_RToPerm_32f(x.data(), &X[0].re, spec, nullptr);
    X[N / 2] = {X[0].im, 0};
    X[0].im = 0;
    row.realOurs.add(X.data(), want, N / 2 + 1);
    plan.run(x.data(), X.data());
    row.realFftw.add(X.data(), want, N / 2 + 1);
}

void printRow(int order) {
    FFTSpecC32fc* complexSpec = nullptr;
    FFTSpecR32f* realSpec = nullptr;
    if (zepsFFTInitAlloc_C_32fc(&complexSpec, order, ZEP_FFT_SCALE_NONE, 0) != zepStsNoErr ||
        zepsFFTInitAlloc_R_32f(&realSpec, order, ZEP_FFT_SCALE_NONE, 0) != zepStsNoErr)
        std::abort();
    using Plan = FftwPlan<Zep32f>;
    const Plan complexPlan(Plan::complex, 1 << order), realPlan(Plan::real, 1 << order);
    Row row;
    const int signals = order < 14 ? 1 << (14 - order) : 2;
    for (int s = 0; s < signals; ++s) {
        const auto seed = static_cast<std::uint64_t>(1000 * order + s);
        transformComplex(order, complexSpec, complexPlan, row, seed);
        transformReal(order, realSpec, realPlan, row, seed);
    }
    std::printf("%5d %9.3f %9.3f %9.3f %9.3f\n", order, row.complexOurs.inUnits(order),
                row.complexFftw.inUnits(order), row.realOurs.inUnits(order),
                row.realFftw.inUnits(order));
    zepsFFTFree_C_32fc(complexSpec);
    zepsFFTFree_R_32f(realSpec);
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    if (argc > 1) zep::zepSelectColumn(std::atoi(argv[1]));
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    std::printf("order    fft_c      fftw     fft_r      fftw\n");
    for (int order = 1; order <= zep::bench::kMaxOrder; ++order) zep::bench::printRow(order);
}
