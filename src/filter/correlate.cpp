// Outputs whose sums are of one length, and those that hang over an end of the samples.
//
// A block of the latter runs in three segments of taps: those that meet samples in front of the
// first one in some lanes, those that meet samples only, and those that meet samples behind the
// last. The first and the last read copies of the array's ends, with zeros beyond them. A zero times
// an infinite tap is NaN, which the sum as defined need not be: outputs of such a block that come
// out NaN are summed again, one by one.
#include "filter/correlate.h"

#include "filter/correlate_sums.h"

namespace zep::ZEP_VARIANT::filter {
namespace {

// The first `outputs` scalars of R vectors of outputs. True where one of R vectors has a NaN.
template <class K, int R>
bool block(const Segment* segments, int segmentCount, float* y, Index outputs) {
    OutputSums<K, R> sums;
    for (int s = 0; s < segmentCount; ++s) sums.add(segments[s]);
    return sums.store(y, outputs);
}

constexpr Index clamp(Index n, Index low, Index high) {
    return n < low ? low : n > high ? high : n;
}

template <class K, class T>
class Correlation {
    static constexpr Index P = K::parts;
    static constexpr Index kVector = W / P;  // elements
    static constexpr int kEdgeRows = 4;      // of blocks with sums of several lengths
    static constexpr Index kEdge = kEdgeRows * kVector;

public:
    Correlation(const T* h, Index taps, const T* x, Index samples)
        : h_(reinterpret_cast<const float*>(h)),
          x_(reinterpret_cast<const float*>(x)),
          taps_(taps),
          samples_(samples) {}

    void run(Index lag, T* dst, Index count) {
        auto* y = reinterpret_cast<float*>(dst);
        while (count > 0) {
            // The lags 0 .. samples - taps have sums of one length. What fills no vector goes with
            // what follows, if something does.
            Index n = lag < 0 ? 0 : samples_ - taps_ + 1 - lag;
            if (n >= count)
                n = count;
            else if (n > 0)
                n = n / kVector * kVector;
            if (n >= kVector) {
                EqualSums<K>(h_, taps_).run(x_ + lag * P, y, n);
            } else if (count <= kVector || (lag < 0 && -lag <= kVector && samples_ >= taps_)) {
                n = edge<1>(lag, y, count);
            } else if (count <= 2 * kVector || (lag < 0 && -lag <= 2 * kVector)) {
                n = edge<2>(lag, y, count);
            } else {
                n = edge<kEdgeRows>(lag, y, count);
            }
            lag += n;
            y += n * P;
            count -= n;
        }
    }

private:
    template <int R>
    Index edge(Index lag, float* y, Index count) {
        constexpr Index kBlock = R * kVector;
        const Index n = count < kBlock ? count : kBlock;
        const Index begin = lag + kBlock > 1 ? 0 : 1 - kBlock - lag;
        const Index end = samples_ - lag < taps_ ? samples_ - lag : taps_;
        if (begin >= end) {
            __builtin_memset(y, 0, static_cast<std::size_t>(n * P) * sizeof(float));
            return n;
        }
        const Index inside = clamp(-lag, begin, end);
        const Index behind = clamp(samples_ - lag - kBlock + 1, inside, end);
        if ((begin < inside || behind < end) && !padded_) pad();
        const Segment segments[3] = {
            {h_ + begin * P, front_ + (kEdge + begin + lag) * P, inside - begin},
            {h_ + inside * P, x_ + (inside + lag) * P, behind - inside},
            {h_ + behind * P, back_ + (behind + lag - samples_ + kEdge) * P, end - behind}};
        if (block<K, R>(segments, 3, y, n * P)) sumAgain(lag, y, n);
        return n;
    }

    // front_: kEdge zeros, then the first kEdge samples. back_: the last kEdge samples, then zeros.
    void pad() {
        padded_ = true;
        __builtin_memset(front_, 0, sizeof front_);
        __builtin_memset(back_, 0, sizeof back_);
        const Index n = samples_ < kEdge ? samples_ : kEdge;
        const std::size_t bytes = static_cast<std::size_t>(n * P) * sizeof(float);
        __builtin_memcpy(front_ + kEdge * P, x_, bytes);
        __builtin_memcpy(back_ + (kEdge - n) * P, x_ + (samples_ - n) * P, bytes);
    }

    [[gnu::cold]] void sumAgain(Index lag, float* y, Index count) {
        for (Index i = 0; i < count; ++i, ++lag, y += P) {
            const Index begin = lag < 0 ? -lag : 0;
            const Index end = samples_ - lag < taps_ ? samples_ - lag : taps_;
            float re = 0, im = 0;
            for (Index j = begin; j < end; ++j) {
                const float *h = h_ + j * P, *x = x_ + (j + lag) * P;
                if constexpr (P == 1) {
                    re += simd::readAny(h) * simd::readAny(x);
                } else {
                    const Zep32fc product = K::product({simd::readAny(h), simd::readAny(h + 1)},
                                                       {simd::readAny(x), simd::readAny(x + 1)});
                    re += product.re;
                    im += product.im;
                }
            }
            simd::writeAny(y, re);
            if constexpr (P == 2) simd::writeAny(y + 1, im);
        }
    }

    const float* h_;
    const float* x_;
    Index taps_, samples_;
    bool padded_ = false;
    float front_[2 * kEdge * P], back_[2 * kEdge * P];
};

template <class K, class T>
void inside(const T* h, std::int64_t taps, const T* x, T* y, std::int64_t count) {
    EqualSums<K>(reinterpret_cast<const float*>(h), taps)
        .run(reinterpret_cast<const float*>(x), reinterpret_cast<float*>(y), count);
}

}  // namespace

void correlateInside(const Zep32f* h, std::int64_t taps, const Zep32f* x, Zep32f* y,
                     std::int64_t count) {
    inside<RealTaps>(h, taps, x, y, count);
}
void correlateInside(const Zep32fc* h, std::int64_t taps, const Zep32fc* x, Zep32fc* y,
                     std::int64_t count) {
    inside<ComplexTaps>(h, taps, x, y, count);
}
void correlate(const Zep32f* h, std::int64_t taps, const Zep32f* x, std::int64_t samples,
               std::int64_t lag, Zep32f* y, std::int64_t count) {
    Correlation<RealTaps, Zep32f>(h, taps, x, samples).run(lag, y, count);
}
void correlate(const Zep32fc* h, std::int64_t taps, const Zep32fc* x, std::int64_t samples,
               std::int64_t lag, Zep32fc* y, std::int64_t count) {
    Correlation<ComplexTaps, Zep32fc>(h, taps, x, samples).run(lag, y, count);
}
void correlateConjugate(const Zep32fc* h, std::int64_t taps, const Zep32fc* x, std::int64_t samples,
                        std::int64_t lag, Zep32fc* y, std::int64_t count) {
    Correlation<ConjugateTaps, Zep32fc>(h, taps, x, samples).run(lag, y, count);
}

}  // namespace zep::ZEP_VARIANT::filter
