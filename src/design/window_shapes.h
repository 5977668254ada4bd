// Factors of the windows, sixteen at a time from the first sample towards the middle.
//
// The cosine of the angle a is taken as 1 - 2 * sin(a / 2)^2. What the formulas subtract from each
// other near the ends cancels exactly then, and the small factors there are as exact as the others.
#pragma once

#include "design/rotation.h"

namespace zep::ZEP_VARIANT::design {

struct Bartlett {
    Count n{0};
    double step;

    explicit Bartlett(double s) : step(s) {}
    [[gnu::always_inline]] void next(Block& w) {
        simd::unroll<kRegisters>([&](auto r) { w[r] = n.n[r] * D::broadcast(step); });
        n.advance();
    }
};

// op(q) with q = sin(n * theta / 2)^2, theta = 2 * pi / (len - 1).
template <class Op>
struct CosineWindow {
    Rotation half;
    Op op;

    CosineWindow(int len, Op o) : half(0, kPi / (len - 1)), op(o) {}
    [[gnu::always_inline]] void next(Block& w) {
        simd::unroll<kRegisters>([&](auto r) { w[r] = op(half.sine[r] * half.sine[r]); });
        half.advance();
    }
};

struct Hann {
    [[gnu::always_inline]] D operator()(D q) const { return q; }
};
struct Hamming {
    [[gnu::always_inline]] D operator()(D q) const {
        return D::broadcast(0.08) + q * D::broadcast(0.92);
    }
};
// (alpha + 0.5) - v - 4 * alpha * v^2 with v = 0.5 - q.
struct Blackman {
    double alpha;
    [[gnu::always_inline]] D operator()(D q) const {
        const D one = D::broadcast(1);
        return q * (one + D::broadcast(4 * alpha) * (one - q));
    }
};

}  // namespace zep::ZEP_VARIANT::design
