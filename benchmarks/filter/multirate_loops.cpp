#include "filter/multirate_loops.h"

#include "filter/multirate_phases.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

template <int kLanes>
struct Vector {
    using V [[gnu::vector_size(4 * kLanes), gnu::aligned(4), gnu::may_alias]] = float;
};
#ifdef __AVX512F__
constexpr int kNative = 16;
#else
constexpr int kNative = 8;
#endif
using N = Vector<kNative>::V;

N load(const void* p) { return *static_cast<const N*>(p); }

// By reference: a level may have no registers of this width to pass it in.
template <int kLanes, class V>
float total(const V& sum) {
    float lanes[kLanes];
    __builtin_memcpy(lanes, &sum, sizeof lanes);
    for (int half = kLanes / 2; half > 0; half /= 2)
        for (int k = 0; k < half; ++k) lanes[k] += lanes[k + half];
    return lanes[0];
}

template <int kLanes>
void dots(const Polyphase& f, const Zep32f* x, Zep32f* __restrict y, int periods) {
    using V = typename Vector<kLanes>::V;
    const int begin = (f.rowLen - f.K) / kLanes * kLanes;
    for (int m = 0; m < periods; ++m, x += f.down)
        for (int p = 0; p < f.up; ++p) {
            const float* row = f.rows + p * f.rowLen;
            const float* from = x + p * f.down / f.up - f.rowLen + 1;
            V sum{};
            for (int k = begin; k < f.rowLen; k += kLanes)
                sum += *reinterpret_cast<const V*>(row + k) * *reinterpret_cast<const V*>(from + k);
            *y++ = total<kLanes>(sum);
        }
}

// With the parts of the taps as they are, and with those of the samples exchanged.
void dotsComplex(const PolyphaseOf<Zep32fc>& f, const Zep32fc* x, Zep32fc* __restrict y,
                 int periods) {
    using Order [[gnu::vector_size(4 * kNative)]] = int;
    Order other;
    N sign;
    for (int k = 0; k < kNative; ++k) other[k] = k ^ 1, sign[k] = k % 2 == 0 ? 1.0f : -1.0f;
    constexpr int kStep = kNative / 2;
    const int begin = (f.rowLen - f.K) / kStep * kStep;
    for (int m = 0; m < periods; ++m, x += f.down)
        for (int p = 0; p < f.up; ++p) {
            const Zep32fc* row = f.rows + p * f.rowLen;
            const Zep32fc* from = x + p * f.down / f.up - f.rowLen + 1;
            N straight{}, crossed{};
            for (int k = begin; k < f.rowLen; k += kStep) {
                const N h = load(row + k), v = load(from + k);
                straight += h * v;
                crossed += h * __builtin_shuffle(v, other);
            }
            *y++ = {total<kNative>(straight * sign), total<kNative>(crossed)};
        }
}

void phases(const Polyphase& f, const Zep32f* x, Zep32f* __restrict y, int periods,
            Zep32f* __restrict room) {
    constexpr int R = 4, B = R * kNative;
    const PhaseStreams streams(f, periods, B);
    sortPhases(streams, x, room);
    for (int p = 0; p < f.up; ++p) {
        const float* row = f.rows + p * f.rowLen + f.rowLen - 1;
        for (int m = 0; m < periods; m += B) {
            N sum[R] = {};
            for (int k = 0; k < f.K; ++k) {
                const float* from = room + streams.place(p, k) + m;
                for (int r = 0; r < R; ++r) sum[r] += row[-k] * load(from + r * kNative);
            }
            float out[B];
            __builtin_memcpy(out, sum, sizeof out);
            const int count = periods - m < B ? periods - m : B;
            for (int i = 0; i < count; ++i) y[(m + i) * f.up + p] = out[i];
        }
    }
}

void phasesComplex(const PolyphaseOf<Zep32fc>& f, const Zep32fc* x, Zep32fc* __restrict y,
                   int periods, Zep32fc* __restrict room) {
    constexpr int R = 4, B = R * kNative / 2;
    const PhaseStreams streams(f, periods, B);
    sortPhases(streams, x, room);
    for (int p = 0; p < f.up; ++p) {
        const Zep32fc* row = f.rows + p * f.rowLen + f.rowLen - 1;
        for (int m = 0; m < periods; m += B) {
            N byRe[R] = {}, byIm[R] = {};
            for (int k = 0; k < f.K; ++k) {
                const Zep32fc* from = room + streams.place(p, k) + m;
                for (int r = 0; r < R; ++r) {
                    const N v = load(from + r * kNative / 2);
                    byRe[r] += row[-k].re * v;
                    byIm[r] += row[-k].im * v;
                }
            }
            Zep32fc straight[B], crossed[B];
            __builtin_memcpy(straight, byRe, sizeof straight);
            __builtin_memcpy(crossed, byIm, sizeof crossed);
            const int count = periods - m < B ? periods - m : B;
            for (int i = 0; i < count; ++i)
                y[(m + i) * f.up + p] = {straight[i].re - crossed[i].im,
                                         straight[i].im + crossed[i].re};
        }
    }
}

}  // namespace

extern constexpr MultirateLoops multirateLoops{dots<4>, dots<8>,     dots<16>,
                                               phases,  dotsComplex, phasesComplex};

}  // namespace zep::bench::ZEP_PEER_LEVEL
