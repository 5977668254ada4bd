// Convolution and correlations of whole arrays. Ours builds its transform in every call, FFTW's
// plans are ready. Families conv_32f_x<shorter>, autocorr_32f_lags<n>, crosscorr_32f_lags<n>; a
// row's size is the length of the longer sequence.
#include "filter/checked_rows.h"
#include "filter/fftw_filter.h"
#include "filter/filter_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

struct Pair {
    int longer, shorter;
};
constexpr Pair kConvolutions[] = {{256, 32},    {100, 100},    {1000, 1000},
                                  {4096, 64},   {65536, 64},   {100000, 64},
                                  {4096, 4096}, {65536, 1024}, {100000, 5000}};
// Length and lags.
constexpr Pair kCorrelations[] = {{100, 100},   {1000, 1000},  {4096, 64},
                                  {4096, 4096}, {65536, 1024}, {100000, 5000}};

struct Data {
    AlignedArray<Zep32f> a, b, reversed;
    AlignedArray<Zep32f> padded;  // a between zeros
    Data(int A, int B)
        : a(std::size_t(A)),
          b(std::size_t(B)),
          reversed(std::size_t(B)),
          padded(std::size_t(A + 2 * B)) {
        fillUniform(a, -1, 1, 1);
        fillUniform(b, -1, 1, 2);
        std::reverse_copy(b.begin(), b.end(), reversed.begin());
        std::fill(padded.begin(), padded.end(), 0.0f);
    }
    // In front of a: the zeros that the first outputs meet.
    const Zep32f* pad() {
        std::copy(a.begin(), a.end(), padded.begin() + (b.size() - 1));
        return padded.data();
    }
};

template <class Add>
void addLoops(const Case<Zep32f>& rows, Add filter) {
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(filterLoops))) {
        rows.peer("plain-" + level, filter(peers->plain));
        rows.peer("block32-" + level, filter(peers->block32));
        rows.peer("block64-" + level, filter(peers->block64));
    }
}

void addConvolution(Pair lengths) {
    const auto [A, B] = lengths;
    const int F = A + B - 1;
    const auto d = std::make_shared<Data>(A, B);
    const Case<Zep32f> rows{"conv_32f_x" + std::to_string(B), A, F, 2.0 * A * B, [=](int n) {
                                Sum sum;
                                for (int k = std::max(0, n - A + 1); k <= std::min(n, B - 1); ++k)
                                    sum.add(d->b[std::size_t(k)], d->a[std::size_t(n - k)]);
                                return sum;
                            }};
    rows.ours([=] { return [=](Zep32f* y) { zepsConv_32f(d->a.data(), A, d->b.data(), B, y); }; });
    // The copy between zeros and the reversal are part of the work.
    addLoops(rows, [=](auto filter) {
        return [=] {
            return [=](Zep32f* y) {
                std::reverse_copy(d->b.begin(), d->b.end(), d->reversed.begin());
                filter(d->reversed.data(), B, d->pad(), y, F);
            };
        };
    });
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(filterEigen)))
        rows.peer("eigen-" + level, [=, convolve = peers->convolve] {
            return [=](Zep32f* y) { convolve(d->a.data(), A, d->b.data(), B, y); };
        });
    rows.peer("fftw-whole", [=] {
        const auto block = std::make_shared<FftwBlock<Zep32f>>(orderAtLeast(F));
        return [=](Zep32f* y) {
            block->keep(d->b.data(), B, true);
            block->load(d->a.data(), A);
            block->convolve();
            std::copy_n(block->samples.begin(), F, y);
        };
    });
    if (A < 3 * B) return;
    rows.peer("fftw-os", [=] {
        static std::map<std::pair<int, int>, int> orders;
        int& order = orders[{A, B}];
        const Zep32f* x = d->pad() + (B - 1);
        if (order == 0) order = FftwOverlapSave<Zep32f>::bestOrder(d->b.data(), B, x, F);
        const auto filter = std::make_shared<FftwOverlapSave<Zep32f>>(d->b.data(), B, order);
        return [=](Zep32f* y) {
            filter->prepare();
            filter->run(d->pad() + (B - 1), y, F);
        };
    });
}

// Lags 0 .. n-1 of sequences of one length; a against itself, or b against a.
void addCorrelation(Pair lengths, bool itself) {
    const auto [A, lags] = lengths;
    struct Arrays {
        AlignedArray<Zep32f> a, b, padded;
        explicit Arrays(std::size_t n, std::size_t lags) : a(n), b(n), padded(n + lags) {
            fillUniform(a, -1, 1, 1);
            fillUniform(b, -1, 1, 2);
            std::fill(padded.begin(), padded.end(), 0.0f);
        }
    };
    const auto d = std::make_shared<Arrays>(std::size_t(A), std::size_t(lags));
    const Zep32f *a = d->a.data(), *b = itself ? a : d->b.data();
    const Case<Zep32f> rows{
        (itself ? "autocorr_32f_lags" : "crosscorr_32f_lags") + std::to_string(lags), A, lags,
        2.0 * A * lags, [=](int k) {
            Sum sum;
            for (int i = 0; i + k < A; ++i) sum.add(a[i], b[i + k]);
            return sum;
        }};
    rows.ours([=] {
        return [=](Zep32f* y) {
            if (itself)
                zepsAutoCorr_32f(a, A, y, lags);
            else
                zepsCrossCorr_32f(a, A, b, A, y, lags, 0);
            benchmark::DoNotOptimize(d.get());
        };
    });
    addLoops(rows, [=](auto filter) {
        return [=] {
            return [=](Zep32f* y) {
                std::copy_n(b, A, d->padded.begin());
                filter(a, A, d->padded.data(), y, lags);
            };
        };
    });
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(filterEigen)))
        rows.peer("eigen-" + level, [=, correlate = peers->correlate] {
            return [=](Zep32f* y) { correlate(a, b, A, y, lags); };
        });
    rows.peer("fftw-whole", [=] {
        return [=, correlate = fftwCorrelation(a, b, A, lags)](Zep32f* y) {
            correlate(y);
            benchmark::DoNotOptimize(d.get());
        };
    });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    for (const Pair lengths : kConvolutions) addConvolution(lengths);
    for (const Pair lengths : kCorrelations) {
        addCorrelation(lengths, true);
        addCorrelation(lengths, false);
    }
    return runAll(argc, argv);
}
