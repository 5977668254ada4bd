#include "filter/multirate_loops.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

template <int kLanes>
struct Vector {
    using V [[gnu::vector_size(4 * kLanes), gnu::aligned(4), gnu::may_alias]] = float;
};

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
            float total[kLanes];
            __builtin_memcpy(total, &sum, sizeof total);
            for (int half = kLanes / 2; half > 0; half /= 2)
                for (int k = 0; k < half; ++k) total[k] += total[k + half];
            *y++ = total[0];
        }
}

int floorDiv(int a, int b) { return a >= 0 ? a / b : -((b - 1 - a) / b); }

void phases(const Polyphase& f, const Zep32f* x, Zep32f* __restrict y, int periods,
            Zep32f* __restrict room) {
#ifdef __AVX512F__
    constexpr int kLanes = 16;
#else
    constexpr int kLanes = 8;
#endif
    using V = typename Vector<kLanes>::V;
    constexpr int R = 4, B = R * kLanes;
    // Stream d at m is x[m*down + d]; what lies before x[0] belongs to it too.
    const int before = (f.K + f.down - 1) / f.down, stride = before + periods + B;
    for (int d = 0; d < f.down; ++d)
        for (int m = -before; m < periods; ++m) room[d * stride + before + m] = x[m * f.down + d];
    for (int p = 0; p < f.up; ++p) {
        const float* row = f.rows + p * f.rowLen + f.rowLen - 1;
        const int newest = p * f.down / f.up;
        for (int m = 0; m < periods; m += B) {
            V sum[R] = {};
            for (int k = 0; k < f.K; ++k) {
                const int turn = floorDiv(newest - k, f.down), d = newest - k - turn * f.down;
                const float* from = room + d * stride + before + m + turn;
                for (int r = 0; r < R; ++r)
                    sum[r] += row[-k] * *reinterpret_cast<const V*>(from + r * kLanes);
            }
            float out[B];
            __builtin_memcpy(out, sum, sizeof out);
            const int count = periods - m < B ? periods - m : B;
            for (int i = 0; i < count; ++i) y[(m + i) * f.up + p] = out[i];
        }
    }
}

}  // namespace

extern constexpr MultirateLoops multirateLoops{dots<4>, dots<8>, dots<16>, phases};

}  // namespace zep::bench::ZEP_PEER_LEVEL
