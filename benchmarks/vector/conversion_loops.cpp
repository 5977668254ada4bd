#include "vector/conversion_loops.h"

#include <algorithm>
#include <cmath>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

template <class S, class D>
void cast(const S* x, D* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = static_cast<D>(x[i]);
}

// Scaled, limited in the float domain where the range is exact there, and rounded to nearest.
template <class D>
void round(const Zep32f* x, D* __restrict y, int n, Zep32f factor, Zep32f low, Zep32f high) {
    for (int i = 0; i < n; ++i) {
        const Zep32f limited = std::min(std::max(x[i] * factor, low), high);
        y[i] = static_cast<D>(static_cast<Zep32s>(std::nearbyint(limited)));
    }
}

void from8s16s(const Zep8s* x, Zep16s* __restrict y, int n) { cast(x, y, n); }
void from8s32f(const Zep8s* x, Zep32f* __restrict y, int n) { cast(x, y, n); }
void from8u32f(const Zep8u* x, Zep32f* __restrict y, int n) { cast(x, y, n); }
void from16s32f(const Zep16s* x, Zep32f* __restrict y, int n) { cast(x, y, n); }
void from16s32s(const Zep16s* x, Zep32s* __restrict y, int n) { cast(x, y, n); }
void from16u32f(const Zep16u* x, Zep32f* __restrict y, int n) { cast(x, y, n); }
void from32s64f(const Zep32s* x, Zep64f* __restrict y, int n) { cast(x, y, n); }
void from16s32fScaled(const Zep16s* x, Zep32f* __restrict y, int n, Zep32f f) {
    for (int i = 0; i < n; ++i) y[i] = static_cast<Zep32f>(x[i]) * f;
}
void from32s32f(const Zep32s* x, Zep32f* __restrict y, int n) { cast(x, y, n); }
void from32f64f(const Zep32f* x, Zep64f* __restrict y, int n) { cast(x, y, n); }
void from64f32f(const Zep64f* x, Zep32f* __restrict y, int n) { cast(x, y, n); }
void from32s16s(const Zep32s* x, Zep16s* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = static_cast<Zep16s>(std::clamp(x[i], -32768, 32767));
}
void from24s32f(const Zep8u* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) {
        const Zep8u* b = x + 3 * i;
        y[i] = static_cast<Zep32f>(b[0] | b[1] << 8 | static_cast<Zep8s>(b[2]) << 16);
    }
}

void from32f8s(const Zep32f* x, Zep8s* __restrict y, int n, Zep32f f) {
    round(x, y, n, f, -128.0f, 127.0f);
}
void from32f16s(const Zep32f* x, Zep16s* __restrict y, int n, Zep32f f) {
    round(x, y, n, f, -32768.0f, 32767.0f);
}
void from32f16sAway(const Zep32f* x, Zep16s* __restrict y, int n, Zep32f f) {
    for (int i = 0; i < n; ++i) {
        const Zep32f limited = std::min(std::max(x[i] * f, -32768.0f), 32767.0f);
        const auto v = static_cast<Zep32s>(limited + std::copysign(0.5f, limited));
        y[i] = static_cast<Zep16s>(v);
    }
}
void from32f32s(const Zep32f* x, Zep32s* __restrict y, int n, Zep32f f) {
    round(x, y, n, f, -2147483648.0f, 2147483520.0f);
}
void from32f24s(const Zep32f* x, Zep8u* __restrict y, int n, Zep32f f) {
    for (int i = 0; i < n; ++i) {
        const Zep32f limited = std::min(std::max(x[i] * f, -8388608.0f), 8388607.0f);
        const auto v = static_cast<Zep32s>(std::nearbyint(limited));
        y[3 * i] = static_cast<Zep8u>(v);
        y[3 * i + 1] = static_cast<Zep8u>(v >> 8);
        y[3 * i + 2] = static_cast<Zep8u>(v >> 16);
    }
}

}  // namespace

extern constexpr ConversionPeers conversionLoops{
    from8s16s,        from8s32f,  from8u32f,  from16s32f,     from16u32f, from32s64f,
    from16s32fScaled, from16s32s, from24s32f, from32s16s,     from32s32f, from32f64f,
    from64f32f,       from32f8s,  from32f16s, from32f16sAway, from32f32s, from32f24s};

}  // namespace zep::bench::ZEP_PEER_LEVEL
