// The sums of a multi-rate filter for each pair of tap and sample types, in two layouts.
//
// Group: lanes are consecutive outputs. A line holds, for one input, the tap that it meets in each
// output of the group, so that one input times one line serves the whole group and nothing needs
// adding up across lanes. Dot: lanes are consecutive taps of one output.
//
// Every output is one chain of additions in the order of its inputs, whatever group it falls into:
// cutting such a stream changes no bit of finite results.
#pragma once

#include "simd/complex.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::filter {

struct RealSums {
    using Tap = float;
    using V = simd::Native<float>;
    static constexpr int parts = 1;
    static constexpr int group = V::lanes;  // outputs of a group
    static constexpr int row = V::lanes;    // taps of a row come in multiples of this

    struct Line {
        V taps;
        static Line load(const float* p) { return {V::load(p)}; }
    };
    struct Group {
        V sum = V::zero();
        void add(Line line, const float* x) {
            sum = mulAdd(V::broadcast(simd::readAny(x)), line.taps, sum);
        }
        void store(float* to) const { sum.store(to); }
        void storePartial(float* to, int n) const { sum.storePartial(to, n); }
    };
    struct Dot {
        V sum = V::zero();
        void add(const float* taps, const float* x) {
            sum = mulAdd(V::load(x), V::load(taps), sum);
        }
        void addPartial(const float* taps, const float* x, int n) {
            sum = mulAdd(V::loadPartial(x, n), V::load(taps), sum);
        }
        void store(float* to) const { simd::writeAny(to, reduceAdd(sum)); }
    };
};

// Interleaved: products with the real parts of the inputs and with their imaginary parts are summed
// apart and joined at the end.
struct ComplexSums {
    using Tap = float;
    using V = simd::Native<float>;
    static constexpr int parts = 2;
    static constexpr int group = V::lanes / 2;
    static constexpr int row = V::lanes / 2;

    struct Line {
        V taps;
        static Line load(const float* p) { return {V::load(p)}; }
    };
    struct Group {
        V byRe = V::zero(), byIm = V::zero();
        void add(Line line, const float* x) {
            byRe = mulAdd(V::broadcast(simd::readAny(x)), line.taps, byRe);
            byIm = mulAdd(V::broadcast(simd::readAny(x + 1)), line.taps, byIm);
        }
        V sum() const { return subAdd(byRe, swapPairs(byIm)); }
        void store(float* to) const { sum().store(to); }
        void storePartial(float* to, int n) const { sum().storePartial(to, 2 * n); }
    };
    struct Dot {
        V straight = V::zero(), crossed = V::zero();
        void add(V taps, V x) {
            straight = mulAdd(x, taps, straight);
            crossed = mulAdd(swapPairs(x), taps, crossed);
        }
        void add(const float* taps, const float* x) { add(V::load(taps), V::load(x)); }
        void addPartial(const float* taps, const float* x, int n) {
            add(V::load(taps), V::loadPartial(x, 2 * n));
        }
        void store(float* to) const {
            simd::writeAny(to, reduceAdd(straight * V::broadcastPair(1.0f, -1.0f)));
            simd::writeAny(to + 1, reduceAdd(crossed));
        }
    };
};

// Float samples, double taps and sums; each output is rounded to float once.
struct DoubleSums {
    using Tap = double;
    using V = simd::Native<double>;
    using F = simd::Vec<float, 2 * V::lanes>;
    static constexpr int parts = 1;
    static constexpr int group = F::lanes;
    static constexpr int row = F::lanes;

    struct Line {
        V lo, hi;
        static Line load(const double* p) { return {V::load(p), V::load(p + V::lanes)}; }
    };
    struct Group {
        V lo = V::zero(), hi = V::zero();
        void add(Line line, const float* x) {
            const V wide = V::broadcast(static_cast<double>(simd::readAny(x)));
            lo = mulAdd(wide, line.lo, lo);
            hi = mulAdd(wide, line.hi, hi);
        }
        void store(float* to) const { simd::narrow(lo, hi).store(to); }
        void storePartial(float* to, int n) const { simd::narrow(lo, hi).storePartial(to, n); }
    };
    struct Dot {
        V lo = V::zero(), hi = V::zero();
        void add(const double* taps, F x) {
            lo = mulAdd(widenLow(x), V::load(taps), lo);
            hi = mulAdd(widenHigh(x), V::load(taps + V::lanes), hi);
        }
        void add(const double* taps, const float* x) { add(taps, F::load(x)); }
        void addPartial(const double* taps, const float* x, int n) {
            add(taps, F::loadPartial(x, n));
        }
        void store(float* to) const { simd::writeAny(to, static_cast<float>(reduceAdd(lo + hi))); }
    };
};

}  // namespace zep::ZEP_VARIANT::filter
