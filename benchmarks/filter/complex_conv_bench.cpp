// Correlations of complex sequences of one length: families autocorr_32fc_lags<n> and
// crosscorr_32fc_lags<n>, a row's size is the length. Ours builds its transform in every call, FFTW's
// plans are ready.
#include "filter/checked_rows.h"
#include "filter/fftw_filter.h"
#include "filter/filter_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

struct Lengths {
    int samples, lags;
};
constexpr Lengths kLengths[] = {{100, 100}, {1000, 1000}, {4096, 64}, {4096, 4096}, {65536, 1024}};

struct Arrays {
    AlignedArray<Zep32fc> a, b, conjugate, padded;
    explicit Arrays(std::size_t n, std::size_t lags) : a(n), b(n), conjugate(n), padded(n + lags) {
        fillUniform(a, -1, 1, 1);
        fillUniform(b, -1, 1, 2);
        std::fill(padded.begin(), padded.end(), Zep32fc{});
    }
};

// a against itself, or b against a.
void addCorrelation(Lengths lengths, bool itself) {
    const auto [A, lags] = lengths;
    const auto d = std::make_shared<Arrays>(std::size_t(A), std::size_t(lags));
    const Zep32fc *a = d->a.data(), *b = itself ? a : d->b.data();
    const Case<Zep32fc> rows{
        (itself ? "autocorr_32fc_lags" : "crosscorr_32fc_lags") + std::to_string(lags), A, lags,
        8.0 * A * lags, [=](int k) {
            Sum sum;
            for (int i = 0; i + k < A; ++i) sum.add(std::conj(wide(a[i])), wide(b[i + k]));
            return sum;
        }};
    rows.ours([=] {
        return [=](Zep32fc* y) {
            if (itself)
                zepsAutoCorr_32fc(a, A, y, lags);
            else
                zepsCrossCorr_32fc(a, A, b, A, y, lags, 0);
            benchmark::DoNotOptimize(d.get());
        };
    });
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(filterLoops))) {
        const auto add = [&](const char* form, auto filter) {
            rows.peer(form + ("-" + level), [=] {
                return [=](Zep32fc* y) {
                    for (int i = 0; i < A; ++i) d->conjugate[std::size_t(i)] = {a[i].re, -a[i].im};
                    std::copy_n(b, A, d->padded.begin());
                    filter(d->conjugate.data(), A, d->padded.data(), y, lags);
                };
            });
        };
        add("plain", peers->plainComplex);
        add("block", peers->blockComplex);
    }
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(filterEigen)))
        rows.peer("eigen-" + level, [=, correlate = peers->correlateComplex] {
            return [=](Zep32fc* y) {
                correlate(a, b, A, y, lags);
                benchmark::DoNotOptimize(d.get());
            };
        });
    rows.peer("fftw-whole", [=] {
        return [=, correlate = fftwCorrelation(a, b, A, lags)](Zep32fc* y) {
            correlate(y);
            benchmark::DoNotOptimize(d.get());
        };
    });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    for (const Lengths lengths : kLengths) {
        addCorrelation(lengths, true);
        addCorrelation(lengths, false);
    }
    return runAll(argc, argv);
}
