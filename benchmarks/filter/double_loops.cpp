#include "filter/double_loops.h"

#include "filter/multirate_phases.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

#ifdef __AVX512F__
constexpr int kLanes = 8;
#else
constexpr int kLanes = 4;
#endif
using V [[gnu::vector_size(8 * kLanes), gnu::aligned(8), gnu::may_alias]] = double;
using F [[gnu::vector_size(4 * kLanes), gnu::aligned(4), gnu::may_alias]] = float;

V load(const double* p) { return *reinterpret_cast<const V*>(p); }
V load(const float* p) { return __builtin_convertvector(*reinterpret_cast<const F*>(p), V); }

template <class Sample>
void block(const Zep64f* h, int taps, const Sample* x, Zep32f* __restrict y, int n) {
    constexpr int R = 4, B = R * kLanes;
    int i = 0;
    for (; i + B <= n; i += B) {
        V sum[R] = {};
        for (int j = 0; j < taps; ++j)
            for (int r = 0; r < R; ++r) sum[r] += h[j] * load(x + i + j + r * kLanes);
        for (int r = 0; r < R; ++r)
            *reinterpret_cast<F*>(y + i + r * kLanes) = __builtin_convertvector(sum[r], F);
    }
    for (; i < n; ++i) {
        double sum = 0;
        for (int j = 0; j < taps; ++j) sum += h[j] * double(x[i + j]);
        y[i] = float(sum);
    }
}

void widen(const Zep32f* x, Zep64f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = double(x[i]);
}
void narrow(const Zep64f* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = float(x[i]);
}

void dots(const PolyphaseOf<Zep64f>& f, const Zep32f* x, Zep32f* __restrict y, int periods) {
    const int begin = (f.rowLen - f.K) / kLanes * kLanes;
    for (int m = 0; m < periods; ++m, x += f.down)
        for (int p = 0; p < f.up; ++p) {
            const double* row = f.rows + p * f.rowLen;
            const float* from = x + p * f.down / f.up - f.rowLen + 1;
            V sum{};
            for (int k = begin; k < f.rowLen; k += kLanes) sum += load(row + k) * load(from + k);
            double total = 0;
            for (int k = 0; k < kLanes; ++k) total += sum[k];
            *y++ = float(total);
        }
}

void phases(const PolyphaseOf<Zep64f>& f, const Zep32f* x, Zep32f* __restrict y, int periods,
            Zep64f* __restrict room) {
    constexpr int R = 4, B = R * kLanes;
    const PhaseStreams streams(f, periods, B);
    sortPhases(streams, x, room);
    for (int p = 0; p < f.up; ++p)
        for (int m = 0; m < periods; m += B) {
            V sum[R] = {};
            for (int k = 0; k < f.K; ++k) {
                const double* from = room + streams.place(p, k) + m;
                for (int r = 0; r < R; ++r)
                    sum[r] += f.rows[(p + 1) * f.rowLen - 1 - k] * load(from + r * kLanes);
            }
            double out[B];
            __builtin_memcpy(out, sum, sizeof out);
            const int count = periods - m < B ? periods - m : B;
            for (int i = 0; i < count; ++i) y[(m + i) * f.up + p] = float(out[i]);
        }
}

}  // namespace

extern constexpr DoubleLoops doubleLoops{block<Zep32f>, block<Zep64f>, widen, narrow, dots, phases};

}  // namespace zep::bench::ZEP_PEER_LEVEL
