// Blocks of several output vectors, with one tap at a time broadcast to all of them. Blocks of few
// vectors take several taps at once instead, so that as many sums are under way.
//
// A block whose sums are not of one length runs in three segments of taps: those that meet samples
// in front of the first one in some lanes, those that meet samples only, and those that meet samples
// behind the last. The first and the last read copies of the array's ends, with zeros beyond them.
// A zero times an infinite tap is NaN, which the sum as defined need not be: outputs of such a block
// that come out NaN are summed again, one by one.
#include "filter/correlate.h"

#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::filter {
namespace {

using V = simd::Native<float>;
using Index = std::ptrdiff_t;
constexpr Index W = V::lanes;

struct RealTaps {
    static constexpr int parts = 1;  // of an element, and sums that a vector of outputs needs
    [[gnu::always_inline]] static V finish(const V (&sum)[1]) { return sum[0]; }
};

// x * h from x * re(h) and x * im(h), interleaved.
struct ComplexTaps {
    static constexpr int parts = 2;
    [[gnu::always_inline]] static V finish(const V (&sum)[2]) {
        return subAdd(sum[0], swapPairs(sum[1]));
    }
    [[gnu::always_inline]] static Zep32fc product(Zep32fc h, Zep32fc x) {
        return {h.re * x.re - h.im * x.im, h.re * x.im + h.im * x.re};
    }
};
struct ConjugateTaps {
    static constexpr int parts = 2;
    [[gnu::always_inline]] static V finish(const V (&sum)[2]) {
        return subAdd(sum[0], swapPairs(V::zero() - sum[1]));
    }
    [[gnu::always_inline]] static Zep32fc product(Zep32fc h, Zep32fc x) {
        return {h.re * x.re + h.im * x.im, h.re * x.im - h.im * x.re};
    }
};

// Taps h[0 .. count-1], the first of which meets x[0] for output 0; all in scalars but the count.
struct Segment {
    const float* h;
    const float* x;
    Index count;
};

// The first `outputs` scalars of R vectors of outputs. True where one of R vectors has a NaN.
template <class K, int R>
bool block(const Segment* segments, int segmentCount, float* y, Index outputs) {
    constexpr int P = K::parts, kSums = 8;
    constexpr int U = R * P < kSums ? kSums / (R * P) : 1;  // taps at once
    V sum[U][R][P];
    simd::unroll<U>([&](auto u) {
        simd::unroll<R>(
            [&](auto r) { simd::unroll<P>([&](auto p) { sum[u][r][p] = V::zero(); }); });
    });
    const auto tap = [&](auto u, const float* h, const float* x) __attribute__((always_inline)) {
        V t[P];
        simd::unroll<P>([&](auto p) { t[p] = V::broadcast(simd::readAny(h + p)); });
        simd::unroll<R>([&](auto r) {
            const V v = V::load(x + r * W);
            simd::unroll<P>([&](auto p) { sum[u][r][p] = mulAdd(v, t[p], sum[u][r][p]); });
        });
    };
    for (int s = 0; s < segmentCount; ++s) {
        const float *h = segments[s].h, *x = segments[s].x;
        Index n = segments[s].count;
        for (; n >= U; n -= U, h += U * P, x += U * P)
            simd::unroll<U>([&](auto u) { tap(u, h + u * P, x + u * P); });
        if constexpr (U > 1)
            for (; n > 0; --n, h += P, x += P) tap(std::integral_constant<int, 0>{}, h, x);
    }
    bool nan = false;
    simd::unroll<R>([&](auto r) {
        V total[P];
        simd::unroll<P>([&](auto p) {
            total[p] = sum[0][r][p];
            simd::unroll<U - 1>([&](auto u) { total[p] = total[p] + sum[u + 1][r][p]; });
        });
        const V result = K::finish(total);
        nan |= any(result != result);
        const Index left = outputs - r * W;
        if (left >= W)
            result.store(y + r * W);
        else if (left > 0)
            result.storePartial(y + r * W, static_cast<int>(left));
    });
    return nan;
}

constexpr Index clamp(Index n, Index low, Index high) {
    return n < low ? low : n > high ? high : n;
}

template <class K, class T>
class Correlation {
    static constexpr Index P = K::parts;
    static constexpr Index kVector = W / P;  // elements
    static constexpr int kRows = 8 / P;      // of blocks with sums of one length
    static constexpr int kEdgeRows = 4;      // of others
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
            Index n = kRows * kVector;
            if (lag >= 0 && count >= n && lag + n - 1 + taps_ <= samples_) {
                const Segment whole{h_, x_ + lag * P, taps_};
                block<K, kRows>(&whole, 1, y, n * P);
            } else if (count <= kVector) {
                n = edge<1>(lag, y, count);
            } else if (count <= 2 * kVector) {
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

}  // namespace

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
