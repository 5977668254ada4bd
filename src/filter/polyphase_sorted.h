// Plain decimation as sums at one rate.
//
// With up = 1 output q meets the positions start + q*down .. start + q*down + L-1. Sorted by their
// place in a period the inputs are `down` streams x_s[m] = x[start + m*down + s], and
//
//   y[q] = sum over s, sum over j of h_s[j] * x_s[q + j],   h_s[j] the tap that meets the input
//
// j periods and s places behind the first one. So every stream is filtered at one rate, with no
// product by zero, and each vector of inputs that is loaded meets several taps (correlate_sums.h).
// The streams of a bunch of outputs stay in the first cache.
#pragma once

#include "filter/fir_record.h"
#include "filter/output_rows.h"
#include "simd/deal.h"
#include "simd/transpose.h"

namespace zep::ZEP_VARIANT::filter {

// What differs by the types of samples and taps. few: outputs that are computed one by one.
template <class Sums>
struct SortedOf;
template <>
struct SortedOf<RealSums> {
    using Sample = float;  // moved as a whole
    using Stream = float;  // of which a stream consists
    static constexpr int few = 2 * V::lanes;
};
template <>
struct SortedOf<ComplexSums> {
    using Sample = double;
    using Stream = double;
    static constexpr int few = V::lanes / 2;
};
template <>
struct SortedOf<DoubleSums> {
    using Sample = float;
    using Stream = double;
    static constexpr int few = V::lanes / 2;
};

// Sizes of a state that sorts its inputs; length 0: it does not.
template <class Sums>
struct SortedSizes {
    Index taps;    // of a stream, at most
    Index length;  // of a stream, elements
    Index bunch;   // outputs

    static constexpr Index kVector = V::lanes;  // elements of a stream that are written at once
    static SortedSizes of(Index taps, Index up, Index down) {
        constexpr Index kLeast = 8 * kVector, kMost = 1024, kElements = 4096;
        if (up != 1 || down < 2 || taps < down || taps > 8 * kElements) return {};
        const Index K = (taps + down - 1) / down;
        Index bunch = kElements / down - K;
        bunch = bunch < kLeast ? kLeast : bunch > kMost ? kMost : bunch;
        bunch = bunch / kLeast * kLeast;
        // Streams begin on cache lines, in other sets than their neighbours.
        const Index length = ((bunch + K + kVector) & ~(kVector - 1)) + kVector;
        if (length * down > 8 * kElements) return {};
        return {K, length, bunch};
    }
};

template <class Sums>
class SortedFilter {
    using Of = SortedOf<Sums>;
    using Sample = typename Of::Sample;
    using Stream = typename Of::Stream;
    using Tap = typename Sums::Tap;
    using Kernel = typename RowsOf<Sums>::Kernel;
    using S = simd::Native<Sample>;
    static constexpr Index kParts = Sums::parts;
    static constexpr Index kSorted = S::lanes;

public:
    explicit SortedFilter(const ZepFIRState& state)
        : streams_(static_cast<Stream*>(state.pSorted)),
          taps_(static_cast<const Tap*>(state.pTapsTable)),
          length_(state.sortedLen),
          bunch_(state.sortedOutputs),
          K_(state.rowLen),
          down_(state.downFactor),
          full_(state.tapsLen - (K_ - 1) * down_) {}

    // So few outputs take less time one by one, with rows of K times as many taps as streams: these
    // would be sorted for K - 1 periods more than there are outputs.
    static constexpr Index few(Index K) { return Of::few + K / 4; }

    // numOut outputs, the first of which meets line[0]. The line holds `history` samples and room for
    // vectors of periods behind them; the next one is src[0], of `inputs`.
    void run(const float* line, Index history, const float* src, Index inputs, float* dst,
             Index numOut) const {
        const auto* past = reinterpret_cast<const Sample*>(line);
        const auto* x = reinterpret_cast<const Sample*>(src);
        // Periods that begin in the history.
        const Index head = history > 0 ? (history + down_ - 1) / down_ : 0;
        for (Index q = 0; q < numOut; q += bunch_) {
            const Index n = numOut - q < bunch_ ? numOut - q : bunch_;
            const Index periods = n + K_ - 1;
            Index m = 0;
            for (; m < periods && q + m < head; m += kSorted) sortVector(past + (q + m) * down_, m);
            // What was sorted beyond them is sorted again.
            if (q + m > head) m = q < head ? head - q : 0;
            if (m < periods) {
                const Index at = (q + m) * down_ - history;
                sort(x + at, inputs - at, m, periods - m);
            }
            outputs(dst + q * kParts, n);
        }
    }

private:
    // `periods` of them, to place m of the streams on; no more than `available` samples are read.
    void sort(const Sample* x, Index available, Index m, Index periods) const {
        // What is loaded behind a period.
        constexpr Index kBehind = 16 / Index{sizeof(Sample)} - 1;
        while (periods >= kSorted && available >= kSorted * down_ + kBehind) {
            sortVector(x, m);
            x += kSorted * down_;
            available -= kSorted * down_;
            m += kSorted;
            periods -= kSorted;
        }
        for (; periods > 0; --periods, ++m, x += down_, available -= down_)
            for (Index s = 0; s < down_ && s < available; ++s)
                streams_[s * length_ + m] = static_cast<Stream>(simd::readAny(x + s));
    }

    // A vector of each stream.
    [[gnu::always_inline]] void sortVector(const Sample* x, Index m) const {
        constexpr Index Q = 16 / Index{sizeof(Sample)};
        const auto put = [](S v, Stream * to) __attribute__((always_inline)) {
            if constexpr (sizeof(Stream) == sizeof(Sample)) {
                v.store(to);
            } else {
                widenLow(v).store(to);
                widenHigh(v).store(to + kSorted / 2);
            }
        };
        if (Q == 4 && down_ == 2) {
            const auto pairs = simd::Dealt<S>::load(x);
            put(pairs.re, streams_ + m);
            put(pairs.im, streams_ + length_ + m);
            return;
        }
        const simd::Rows<const Sample> src{x, down_ * Index{sizeof(Sample)}};
        const simd::Rows<Stream> dst{streams_ + m, length_ * Index{sizeof(Stream)}};
        // The last strip overlaps the one before it.
        for (Index s = 0; s < down_; s += Q) {
            const Index at = s + Q <= down_ ? s : down_ > Q ? down_ - Q : 0;
            simd::transposeStrip<S>(src.from(0, at), dst.from(at, 0), put);
        }
    }

    void outputs(float* dst, Index n) const {
        using Scalar = typename Kernel::V::Scalar;
        const auto add = [this](auto& sums, Index q) __attribute__((always_inline)) {
            const auto* x = reinterpret_cast<const Scalar*>(streams_ + q);
            const auto* h = reinterpret_cast<const Scalar*>(taps_);
            const Index xStep = length_ * Index{sizeof(Stream) / sizeof(Scalar)};
            for (Index s = 0; s < full_; ++s, x += xStep, h += K_ * kParts) sums.add({h, x, K_});
            if (K_ > 1)
                for (Index s = full_; s < down_; ++s, x += xStep, h += K_ * kParts)
                    sums.add({h, x, K_ - 1});
        };
        OutputRows<Sums, decltype(add)>(add).run(dst, n);
    }

    Stream* streams_;
    const Tap* taps_;
    Index length_, bunch_, K_, down_, full_;
};

}  // namespace zep::ZEP_VARIANT::filter
