#include "vector/fixed_point_loops.h"

#include <algorithm>
#include <cmath>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

Zep32s saturated(Zep64s r) {
    return static_cast<Zep32s>(std::clamp<Zep64s>(r, -2147483648LL, 2147483647LL));
}
// To nearest, ties to even.
Zep64s scaled(Zep64s r, int k) { return (r + (Zep64s{1} << (k - 1)) - 1 + (r >> k & 1)) >> k; }

void add(const Zep32s* a, const Zep32s* b, Zep32s* __restrict y, int n, int k) {
    if (k == 0)
        for (int i = 0; i < n; ++i) y[i] = saturated(Zep64s{a[i]} + b[i]);
    else if (k < 0)
        for (int i = 0; i < n; ++i) y[i] = saturated(Zep64s{saturated(Zep64s{a[i]} + b[i])} << -k);
    else if (k == 1)
        for (int i = 0; i < n; ++i) {
            const Zep32s half = (a[i] & b[i]) + ((a[i] ^ b[i]) >> 1);
            y[i] = half + (half & (a[i] ^ b[i]) & 1);
        }
    else
        for (int i = 0; i < n; ++i) y[i] = static_cast<Zep32s>(scaled(Zep64s{a[i]} + b[i], k));
}
void sub(const Zep32s* a, const Zep32s* b, Zep32s* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = saturated(Zep64s{b[i]} - a[i]);
}
void addConstant(Zep32s val, Zep32s* __restrict y, int n, int k) {
    if (k == 0)
        for (int i = 0; i < n; ++i) y[i] = saturated(Zep64s{y[i]} + val);
    else
        for (int i = 0; i < n; ++i) y[i] = static_cast<Zep32s>(scaled(Zep64s{y[i]} + val, k));
}
void mulConstant(Zep32s val, Zep32s* __restrict y, int n, int k) {
    if (k == 0)
        for (int i = 0; i < n; ++i) y[i] = saturated(Zep64s{y[i]} * val);
    else
        for (int i = 0; i < n; ++i) y[i] = saturated(scaled(Zep64s{y[i]} * val, k));
}
void mul16(const Zep16s* a, const Zep16s* b, Zep16s* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = static_cast<Zep16s>(std::clamp(a[i] * b[i], -32768, 32767));
}
void divConstant16(Zep16s val, Zep16s* __restrict y, int n) {
    const Zep32f factor = 1.0f / static_cast<Zep32f>(val);
    for (int i = 0; i < n; ++i) {
        const auto q = static_cast<int>(std::nearbyint(static_cast<Zep32f>(y[i]) * factor));
        y[i] = static_cast<Zep16s>(std::clamp(q, -32768, 32767));
    }
}

}  // namespace

extern constexpr FixedPointPeers fixedPointLoops{add,         sub,   addConstant,
                                                 mulConstant, mul16, divConstant16};

}  // namespace zep::bench::ZEP_PEER_LEVEL
