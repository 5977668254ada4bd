// Prints the rounding error of the forward transforms of any length, ours and FFTW's in the same
// precision: root mean square over all bins of random signals against a transform in extended
// precision, relative to the norm of the spectrum, in units of u * sqrt(log2 N), u = 2^-24 or 2^-53.
// Arguments: columns, e9 and e9_avx512 without any.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/columns.h"
#include "core/selection.h"
#include "support/buffers.h"
#include "transform/dft_peers.h"
#include "transform/exact_dft.h"

namespace zep::bench {
namespace {

// Smooth lengths, generic radices, primes by the definition and by convolution, powers of two.
constexpr int kLengths[] = {12,    17,    47,    60,    64,    100,   243,  251,   360,
                            480,   596,   960,   1000,  1009,  1024,  1152, 1536,  1920,
                            2187,  3125,  4093,  4099,  7919,  8191,  8192, 10000, 16411,
                            44100, 48000, 65536, 65537, 99991, 100000};

// Bins of each figure, and signals at least.
constexpr std::size_t kBins = 200000;
constexpr std::size_t kSignals = 10;

// The errors of one implementation, a signal at a time.
class Errors {
public:
    void add(long double difference, long double norm) {
        const auto share = static_cast<double>(difference / norm);
        sum_ += share;
        squares_ += share * share;
        ++signals_;
    }
    double rms() const { return std::sqrt(sum_ / signals_); }
    // Relative, of the root: half of what the mean square's is.
    double standardError() const {
        const double mean = sum_ / signals_, variance = squares_ / signals_ - mean * mean;
        return 0.5 * std::sqrt(variance / (signals_ - 1)) / mean;
    }

private:
    double sum_ = 0, squares_ = 0;
    int signals_ = 0;
};

double worstStandardError = 0;

// The columns in their order, then FFTW.
template <class Kind>
void printErrors(int N, const ExactDft& exact, const std::vector<Column>& columns) {
    using T = typename Kind::Element;
    const auto len = static_cast<std::size_t>(N), bins = Kind::bins(len);
    const typename Kind::Plan plan(Kind::plan, N);
    std::vector<typename Kind::Spec*> specs;
    for (const Column& c : columns) {
        zepSelectColumn(c.slot);
        specs.push_back(nullptr);
        if (Kind::create(&specs.back(), N, ZEP_FFT_SCALE_NONE, zepAlgHintNone) != zepStsNoErr)
            std::abort();
    }
    AlignedArray<T> x(len), X(len);
    AlignedArray<typename Kind::Bin> peer(len + 1);
    std::vector<Extended> source(len), want(len);
    std::vector<Errors> errors(columns.size() + 1);
    const std::size_t signals = std::max(kSignals, kBins / bins + 1);
    for (std::size_t s = 0; s < signals; ++s) {
        fillUniform(x, -1.0, 1.0, 1000003 * len + s);
        for (std::size_t n = 0; n < len; ++n) source[n] = test::toExtended(x[n]);
        exact.run(source.data(), want.data());
        long double norm = 0;
        for (std::size_t k = 0; k < bins; ++k) norm += std::norm(want[k]);
        const auto add = [&](Errors& to, auto bin) {
            long double difference = 0;
            for (std::size_t k = 0; k < bins; ++k) difference += std::norm(bin(k) - want[k]);
            to.add(difference, norm);
        };
        for (std::size_t c = 0; c < columns.size(); ++c) {
            zepSelectColumn(columns[c].slot);
            Kind::forward(x.data(), X.data(), specs[c], nullptr);
            add(errors[c], [&](std::size_t k) { return test::computedBin(X.data(), len, k); });
        }
        plan.run(x.data(), peer.data());
        add(errors.back(), [&](std::size_t k) { return test::toExtended(peer[k]); });
    }
    for (typename Kind::Spec* spec : specs) Kind::release(spec);
    for (const Errors& e : errors) {
        std::printf(" %.3f |", e.rms() / (Kind::unit * std::sqrt(std::log2(N))));
        worstStandardError = std::max(worstStandardError, e.standardError());
    }
}

std::vector<Column> chosenColumns(int count, char** names) {
    static const char* kDefault[] = {"e9", "e9_avx512"};
    std::vector<Column> chosen;
    for (int i = 0; i < (count > 0 ? count : 2); ++i)
        for (const Column& c : kColumns)
            if (std::strcmp(c.name, count > 0 ? names[i] : kDefault[i]) == 0) chosen.push_back(c);
    return chosen;
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    const auto columns = chosenColumns(argc - 1, argv + 1);
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    std::printf("| N |");
    for (const char* kind : {"complex", "real", "double"}) {
        for (const zep::Column& c : columns) std::printf(" %s %s |", kind, c.name);
        std::printf(" FFTW |");
    }
    std::printf("\n|---|");
    for (std::size_t i = 0; i < 3 * (columns.size() + 1); ++i) std::printf("---|");
    std::printf("\n");
    for (const int N : kLengths) {
        const ExactDft exact(static_cast<std::size_t>(N));
        std::printf("| %d |", N);
        printErrors<ComplexKind>(N, exact, columns);
        printErrors<RealKind>(N, exact, columns);
        printErrors<DoubleKind>(N, exact, columns);
        std::printf("\n");
    }
    std::printf("\nstandard error of a figure: at most %.2f %%\n", 100 * worstStandardError);
}
