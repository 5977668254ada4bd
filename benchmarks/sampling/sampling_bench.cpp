// Median filters, preemphasis and rate stepping beside what the compiler makes of networks, sliding
// sorted windows and plain loops. Sizes are samples; of rate stepping, those of the longer side.
#include <cstring>
#include <string>

#include "sampling/sampling_loops.h"
#include "support/buffers.h"
#include "support/rows.h"
#include "zeps.h"

namespace zep::bench {
namespace {

// f(x, y, n).
template <class X, class F>
Body onSamples(int size, F f) {
    return [size, f](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<X> x(n), y(n);
        fillUniform(x, -1, 1);
        fillUniform(y, -1, 1);
        for (auto _ : state) {
            f(x.data(), y.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

template <class F>
void addPeers(const std::string& family, const char* peer, int size, F f) {
    for (const auto& [level, loops] : peerLevels(ZEP_PEERS(samplingLoops))) {
        const SamplingPeers* const p = loops;
        addPeer(family, peer + level, size,
                onSamples<Zep32f>(size, [=](auto x, auto y, int n) { f(*p, x, y, n); }));
    }
}

void registerMedians() {
    for (const int size : {1024, 16384})
        for (const int mask : {3, 5, 9, 31, 101, 1001}) {
            if (mask >= size / 2) continue;
            const std::string family = "median_32f_" + std::to_string(mask);
            addOurs(family, size, onSamples<Zep32f>(size, [=](auto x, auto y, int n) {
                        zepsFilterMedian_32f(x, y, n, mask);
                    }));
            if (mask <= 9)
                addPeers(family, "network-", size, [=](auto& p, auto x, auto y, int n) {
                    (mask == 3   ? p.networkMedian3
                     : mask == 5 ? p.networkMedian5
                                 : p.networkMedian9)(x, y, n);
                });
            else
                addPeers(family, "sliding-", size,
                         [=](auto& p, auto x, auto y, int n) { p.slidingMedian(x, y, n, mask); });
            if (mask <= 101 && size == 1024)
                addPeers(family, "nth_element-", size,
                         [=](auto& p, auto x, auto y, int n) { p.selectedMedian(x, y, n, mask); });
        }
}

// In place: each call gets the samples anew, and all rows pay for the copy.
void registerPreemphasis() {
    for (const int size : {64, 1024, 4096, 65536}) {
        const auto copied = [](Zep32f* y, const Zep32f* x, int n) {
            std::memcpy(y, x, sizeof *x * static_cast<std::size_t>(n));
        };
        addOurs("preemphasize_32f", size, onSamples<Zep32f>(size, [=](auto x, auto y, int n) {
                    copied(y, x, n);
                    zepsPreemphasize_32f(y, n, 0.9375f);
                }));
        addPeers("preemphasize_32f", "loop-", size, [=](auto& p, auto x, auto y, int n) {
            copied(y, x, n);
            p.preemphasize(y, n, 0.9375f);
        });
    }
}

template <class X, class Ours, class Theirs>
void addRate(const std::string& name, int size, Ours ours, Theirs theirs) {
    for (const int factor : {2, 3, 4, 8}) {
        const std::string family = name + "_by_" + std::to_string(factor);
        addOurs(family, size,
                onSamples<X>(size, [=](auto x, auto y, int n) { ours(x, n, y, factor); }));
        for (const auto& [level, loops] : peerLevels(ZEP_PEERS(samplingLoops))) {
            const SamplingPeers* const p = loops;
            addPeer(family, "loop-" + level, size, onSamples<X>(size, [=](auto x, auto y, int n) {
                        theirs(*p, x, n, y, factor);
                    }));
        }
    }
}

void registerRates() {
    for (const int size : {1024, 16384}) {
        addRate<Zep32fc>(
            "sampleup_32fc", size,
            [](auto x, int n, auto y, int factor) {
                int len, phase = 1;
                zepsSampleUp_32fc(x, n / factor, y, &len, factor, &phase);
            },
            [](auto& p, auto x, int n, auto y, int factor) { p.up(x, n / factor, y, factor, 1); });
        addRate<Zep32f>(
            "sampledown_32f", size,
            [](auto x, int n, auto y, int factor) {
                int len, phase = 1;
                zepsSampleDown_32f(x, n, y, &len, factor, &phase);
            },
            [](auto& p, auto x, int n, auto y, int factor) { p.down(x, n, y, factor, 1); });
        addRate<Zep32fc>(
            "sampledown_32fc", size,
            [](auto x, int n, auto y, int factor) {
                int len, phase = 1;
                zepsSampleDown_32fc(x, n, y, &len, factor, &phase);
            },
            [](auto& p, auto x, int n, auto y, int factor) { p.downComplex(x, n, y, factor, 1); });
    }
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerMedians();
    zep::bench::registerPreemphasis();
    zep::bench::registerRates();
    return zep::bench::runAll(argc, argv);
}
