// R vectors of outputs in registers while the taps pass by.
//
// A vector of samples at position p meets tap j in output vector (p - j) / W, W the lanes: one that
// stands W samples further serves the same taps one output vector on. So taps are taken in columns
// j, j + W, j + 2W, ..., and every vector that is loaded meets as many of them as there are outputs
// for: most loads cross a cache line, and one for each product would cost twice as much as it. Where
// that leaves one tap in a column, the steps are half a vector or a quarter.
#pragma once

#include "core/variant/tag.h"
#include "simd/complex.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::filter {

using V = simd::Native<float>;
using Index = std::ptrdiff_t;
constexpr Index W = V::lanes;

struct RealTaps {
    using V = filter::V;
    static constexpr int parts = 1;  // of an element, and sums that a vector of outputs needs
    [[gnu::always_inline]] static V finish(const V (&sum)[1]) { return sum[0]; }
};

struct DoubleTaps {
    using V = simd::Native<double>;
    static constexpr int parts = 1;
    [[gnu::always_inline]] static V finish(const V (&sum)[1]) { return sum[0]; }
};

// x * h from x * re(h) and x * im(h), interleaved.
struct ComplexTaps {
    using V = filter::V;
    static constexpr int parts = 2;
    [[gnu::always_inline]] static V finish(const V (&sum)[2]) {
        return subAdd(sum[0], swapPairs(sum[1]));
    }
    [[gnu::always_inline]] static Zep32fc product(Zep32fc h, Zep32fc x) {
        return {h.re * x.re - h.im * x.im, h.re * x.im + h.im * x.re};
    }
};
struct ConjugateTaps {
    using V = filter::V;
    static constexpr int parts = 2;
    [[gnu::always_inline]] static V finish(const V (&sum)[2]) {
        return subAdd(sum[0], swapPairs(V::zero() - sum[1]));
    }
    [[gnu::always_inline]] static Zep32fc product(Zep32fc h, Zep32fc x) {
        return {h.re * x.re + h.im * x.im, h.re * x.im - h.im * x.re};
    }
};

// Sums that are under way at once, of all outputs, and taps in a column: with a vector of samples
// and a product they fill the registers. Taps in a column of half a vector's steps; whether there are
// steps of a quarter.
template <class Tag>
struct CorrelateTuning;
template <>
struct CorrelateTuning<tag::m7> {
    static constexpr int sums = 8, column = 4, halves = 2;
    static constexpr bool quarters = false;
};
template <>
struct CorrelateTuning<tag::u8> : CorrelateTuning<tag::m7> {};
template <>
struct CorrelateTuning<tag::n8> : CorrelateTuning<tag::m7> {};
template <>
struct CorrelateTuning<tag::y8> : CorrelateTuning<tag::m7> {};
template <>
struct CorrelateTuning<tag::e9> : CorrelateTuning<tag::m7> {};
template <>
struct CorrelateTuning<tag::e9_avx512> {
    static constexpr int sums = 16, column = 4, halves = 4;
    static constexpr bool quarters = true;
};

// Taps h[0 .. count-1], the first of which meets x[0] for output 0; all in scalars but the count.
template <class Scalar>
struct SegmentOf {
    const Scalar* h;
    const Scalar* x;
    Index count;
};
using Segment = SegmentOf<float>;

template <class K, int R>
class OutputSums {
    using V = typename K::V;
    using Scalar = typename V::Scalar;
    using Segment = SegmentOf<Scalar>;
    static constexpr Index W = V::lanes;
    using Tuning = Tuned<CorrelateTuning>;
    static constexpr int P = K::parts;
    // Of an output; more than a few would only have to be added up.
    static constexpr int kMost = 8, kFree = Tuning::sums / (R * P);
    static constexpr int U = kFree < 1 ? 1 : kFree > kMost ? kMost : kFree;
    static constexpr Index kVector = W / P;  // elements

public:
    [[gnu::always_inline]] OutputSums() {
        simd::unroll<U>([&](auto u) __attribute__((always_inline)) {
            simd::unroll<R>([&](auto r) __attribute__((always_inline)) {
                simd::unroll<P>([&](auto p)
                                    __attribute__((always_inline)) { sum_[u][r][p] = V::zero(); });
            });
        });
    }

    [[gnu::always_inline]] void add(Segment s) {
        if constexpr (R == 1) {
            // One vector of outputs gains nothing from columns.
            for (; s.count >= U; s.count -= U, s.h += U * P, s.x += U * P)
                simd::unroll<U>([&](auto u) __attribute__((always_inline)) {
                    column<1, u>(s.h + u * P, s.x + u * P);
                });
            columns<1>(s, 0, s.count * P);
        } else {
            constexpr int kColumn = Tuning::column / P;
            while (s.count >= kColumn * kVector) chunk<kColumn>(s);
            if constexpr (kColumn > 2)
                if (s.count >= 2 * kVector) chunk<2>(s);
            if (s.count >= kVector) chunk<1>(s);
            if constexpr (Tuning::quarters && P == 1)
                if (s.count >= W / 2) {
                    parts<2, W / 4>(s, 0, W / 4);
                    advance(s, W / 2);
                }
            columns<1>(s, 0, s.count * P);
        }
    }

    // The first `outputs` scalars. True where there is a NaN.
    [[gnu::always_inline]] bool store(Scalar* y, Index outputs) const {
        bool nan = false;
        simd::unroll<R>([&](auto r) __attribute__((always_inline)) {
            const V result = finish<r>();
            nan |= any(result != result);
            const Index left = outputs - r * W;
            if (left >= W)
                result.store(y + r * W);
            else if (left > 0)
                result.storePartial(y + r * W, static_cast<int>(left));
        });
        return nan;
    }
    [[gnu::always_inline]] void storeAll(Scalar* y) const {
        simd::unroll<R>([&](auto r)
                            __attribute__((always_inline)) { finish<r>().store(y + r * W); });
    }

    // The outputs of vector r.
    template <int r>
    [[gnu::always_inline]] V finish() const {
        V total[P];
        simd::unroll<P>([&](auto p)
                            __attribute__((always_inline)) { total[p] = addUp<0, U, r, p>(); });
        return K::finish(total);
    }

private:
    // As many vectors of taps.
    template <int vectors>
    [[gnu::always_inline]] void chunk(Segment& s) {
        if constexpr (2 * vectors * P <= Tuning::halves)
            parts<2 * vectors, W / 2>(s, 0, W / 2);
        else
            columns<vectors>(s, 0, W);
        advance(s, vectors * W);
    }
    [[gnu::always_inline]] static void advance(Segment& s, Index scalars) {
        s.count -= scalars / P;
        s.h += scalars;
        s.x += scalars;
    }

    // Columns that begin at the scalars `begin` to `end`, by turns into the one and the other set of
    // sums: T taps W apart, or a part of W apart.
    template <int T>
    [[gnu::always_inline]] void columns(const Segment& s, Index begin, Index end) {
        byTurns<T>(
            begin, end, [&](auto u0, Index j) __attribute__((always_inline)) {
                column<T, u0>(s.h + j, s.x + j);
            });
    }
    template <int T, int distance>
    [[gnu::always_inline]] void parts(const Segment& s, Index begin, Index end) {
        byTurns<T>(
            begin, end, [&](auto u0, Index j) __attribute__((always_inline)) {
                partColumn<T, distance, u0>(s.h + j, s.x + j);
            });
    }
    template <int T, class F>
    [[gnu::always_inline]] static void byTurns(Index j, Index end, F f) {
        if constexpr (T % U != 0)
            for (; j + 2 * P <= end; j += 2 * P) {
                f(std::integral_constant<int, 0>{}, j);
                f(std::integral_constant<int, T % U>{}, j + P);
            }
        for (; j < end; j += P) f(std::integral_constant<int, 0>{}, j);
    }

    template <int T, int u0>
    [[gnu::always_inline]] void column(const Scalar* h, const Scalar* x) {
        const Taps<T> taps(h, W);
        simd::unroll<R + T - 1>([&](auto m) __attribute__((always_inline)) {
            V v = V::load(x + m * W);
            // The compiler would load it for every product.
            if constexpr (T > 1) simd::keepInRegister(v);
            simd::unroll<T>([&](auto t) __attribute__((always_inline)) {
                product<m - t, (u0 + t) % U>(v, taps.tap[t]);
            });
        });
    }

    // The vectors between are put together from their neighbours.
    template <int T, int distance, int u0>
    [[gnu::always_inline]] void partColumn(const Scalar* h, const Scalar* x) {
        static_assert(T % 2 == 0 && (T == 2 || 2 * distance == W));
        constexpr int kVectors = R + T / 2 - 1;
        const Taps<T> taps(h, distance);
        V v = V::load(x);
        simd::unroll<kVectors>([&](auto m) __attribute__((always_inline)) {
            V next, between;
            if constexpr (m + 1 < kVectors) {
                next = V::load(x + (m + 1) * W);
                simd::keepInRegister(next);
                between = simd::lanesFrom<distance>(v, next);
            } else {
                // Beyond this one there need not be samples.
                between = V::load(x + m * W + distance);
            }
            simd::unroll<T / 2>([&](auto t) __attribute__((always_inline)) {
                product<m - t, (u0 + 2 * t) % U>(v, taps.tap[2 * t]);
                product<m - t, (u0 + 2 * t + 1) % U>(between, taps.tap[2 * t + 1]);
            });
            if constexpr (m + 1 < kVectors) v = next;
        });
    }

    // Broadcast: h[0], h[distance], ...
    template <int T>
    struct Taps {
        V tap[T][P];
        [[gnu::always_inline]] Taps(const Scalar* h, Index distance) {
            simd::unroll<T>([&](auto t) __attribute__((always_inline)) {
                simd::unroll<P>([&](auto p) __attribute__((always_inline)) {
                    tap[t][p] = V::broadcast(simd::readAny(h + t * distance + p));
                });
            });
        }
    };

    template <int r, int u>
    [[gnu::always_inline]] void product(V v, const V (&tap)[P]) {
        if constexpr (r >= 0 && r < R)
            simd::unroll<P>([&](auto p) __attribute__((always_inline)) {
                sum_[u][r][p] = mulAdd(v, tap[p], sum_[u][r][p]);
            });
    }

    // Sets u to u + count - 1.
    template <int u, int count, int r, int p>
    [[gnu::always_inline]] V addUp() const {
        if constexpr (count == 1)
            return sum_[u][r][p];
        else
            return addUp<u, count / 2, r, p>() + addUp<u + count / 2, count / 2, r, p>();
    }

    V sum_[U][R][P];
};

// y[i] = sum over j of h[j] * x[i + j] for count elements, at least a vector of them, whose sums are
// all of one length. What is left behind blocks of R vectors is computed together with outputs in
// front of it, so that few blocks are left, and none that reads beyond the samples.
template <class K>
class EqualSums {
    using V = typename K::V;
    using Scalar = typename V::Scalar;
    static constexpr Index P = K::parts, W = V::lanes, kVector = W / P;
    static constexpr int kRows = Tuned<CorrelateTuning>::sums / P;

public:
    EqualSums(const Scalar* h, Index taps) : h_(h), taps_(taps) {}

    void run(const Scalar* x, Scalar* y, Index count) const {
        Index left = count;
        while (left >= kRows * kVector) block<kRows>(x, y, left, 0);
        rest<kRows / 2>(x, y, left, count);
    }

private:
    // Less than 2R vectors are left of all.
    template <int R>
    [[gnu::always_inline]] void rest(const Scalar* x, Scalar* y, Index left, Index all) const {
        if constexpr (R > 0) {
            if (left >= R * kVector) block<R>(x, y, left, 0);
            // What is computed twice costs less than one more block.
            constexpr Index kBlock = 16;
            const Index twice = R * kVector - left;
            if (left > R / 2 * kVector && twice * taps_ <= kBlock * kVector && all >= R * kVector)
                return block<R>(x, y, left, twice);
            rest<R / 2>(x, y, left, all);
        } else if (left > 0) {
            block<1>(x, y, left, kVector - left);
        }
    }
    template <int R>
    [[gnu::always_inline]] void block(const Scalar*& x, Scalar*& y, Index& left, Index back) const {
        x -= back * P;
        y -= back * P;
        OutputSums<K, R> sums;
        sums.add({h_, x, taps_});
        sums.storeAll(y);
        x += R * W;
        y += R * W;
        left -= R * kVector - back;
    }

    const Scalar* h_;
    Index taps_;
};

}  // namespace zep::ZEP_VARIANT::filter
