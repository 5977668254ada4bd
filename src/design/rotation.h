// Sines and cosines of equidistant angles: sixteen at a time, all turned by the same angle from
// block to block. Each turn costs a rounding, so the error grows by some 2^-53 per block, while a
// recurrence of second order on the cosine alone would lose with the square of the length. The
// number of angles is the same at every vector width, and so are the values.
#pragma once

#include <cmath>

#include "core/variant_exports.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::design {

using D = simd::Native<Zep64f>;
constexpr int kBlock = 16;
constexpr int kRegisters = kBlock / D::lanes;
constexpr double kPi = 3.141592653589793;

using Block = D[kRegisters];

struct Rotation {
    Block cosine, sine;
    double turnCosine, turnSine;

    // Angles first + n * step.
    Rotation(double first, double step) {
        double c[kBlock], s[kBlock];
        c[0] = std::cos(first);
        s[0] = std::sin(first);
        double wc = std::cos(step), ws = std::sin(step);
        for (int width = 1; width < kBlock; width *= 2) {
            for (int k = 0; k < width; ++k) {
                c[width + k] = c[k] * wc - s[k] * ws;
                s[width + k] = s[k] * wc + c[k] * ws;
            }
            const double doubled = wc * wc - ws * ws;
            ws = 2 * wc * ws;
            wc = doubled;
        }
        simd::unroll<kRegisters>([&](auto r) {
            cosine[r] = D::load(c + r * D::lanes);
            sine[r] = D::load(s + r * D::lanes);
        });
        turnCosine = std::cos(kBlock * step);
        turnSine = std::sin(kBlock * step);
    }
    [[gnu::always_inline]] void advance() {
        const D c = D::broadcast(turnCosine), s = D::broadcast(turnSine);
        simd::unroll<kRegisters>([&](auto r) {
            const D turned = cosine[r] * c - sine[r] * s;
            sine[r] = sine[r] * c + cosine[r] * s;
            cosine[r] = turned;
        });
    }
};

// first, first + 1 and so on.
struct Count {
    Block n;

    explicit Count(double first) {
        double x[kBlock];
        for (int k = 0; k < kBlock; ++k) x[k] = first + k;
        simd::unroll<kRegisters>([&](auto r) { n[r] = D::load(x + r * D::lanes); });
    }
    [[gnu::always_inline]] void advance() {
        simd::unroll<kRegisters>([&](auto r) { n[r] = n[r] + D::broadcast(kBlock); });
    }
};

// `count` values from p on.
inline void storeFront(const Block& x, double* p, std::ptrdiff_t count) {
    simd::unroll<kRegisters>([&](auto r) {
        const std::ptrdiff_t left = count - r * D::lanes;
        if (left >= D::lanes)
            x[r].store(p + r * D::lanes);
        else if (left > 0)
            x[r].storePartial(p + r * D::lanes, static_cast<int>(left));
    });
}

}  // namespace zep::ZEP_VARIANT::design
