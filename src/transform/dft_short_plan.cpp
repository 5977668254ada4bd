// Which radices a short length takes, and its twiddles.
#include "transform/dft_short.h"
#include "transform/dft_tables.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

// Nanoseconds of a pass for each vector, by radix: fitted to whole transforms on Zen 5, where vectors
// of 32 and of 64 bytes take the same. 11 and 13 by their operations.
constexpr float kFirstCosts[kMaxShortRadix + 1] = {0,    0,    0.3f,  0.6f,  1.0f, 2.0f,
                                                   2.3f, 4.0f, 3.9f,  7.3f,  6.0f, 9.0f,
                                                   6.7f, 14,   11.2f, 12.8f, 11.7f};
constexpr float kSecondCosts[kMaxShortRadix + 1] = {0,    0,    0.3f,  1.1f,  1.4f, 3.0f,
                                                    3.5f, 5.6f, 5.1f,  9.0f,  8.0f, 11.0f,
                                                    9.1f, 16,   13.2f, 14.8f, 14.2f};

}  // namespace

template <class T>
Schedule shortSchedule(int len) {
    constexpr int L = ShortVector<T>::lanes;
    Schedule schedule;
    float best = 0;
    for (int s = 2; s <= kMaxShortRadix; ++s) {
        const int r = len / s;
        if (s * r != len || r < 2 || r > kMaxShortRadix || !isShortColumns<T>(s)) continue;
        const float cost = kFirstCosts[s] * static_cast<float>(vectorsOf(r, L)) +
                           kSecondCosts[r] * static_cast<float>(vectorsOf(s, L));
        if (schedule.count > 0 && cost >= best) continue;
        best = cost;
        schedule.count = 2;
        schedule.radix[0] = s;
        schedule.radix[1] = r;
    }
    return schedule;
}

template <class T>
bool buildShortFactors(T*& table, int radix, int s, T scaleForward, T scaleInverse,
                       const Roots<T>& roots) {
    constexpr int L = ShortVector<T>::lanes;
    const std::int64_t points = std::int64_t{radix} * s, step = roots.length() / points;
    table =
        allocate<T>(static_cast<std::size_t>(2 * shortFactorScalars<T>(radix, s)) + 64 / sizeof(T));
    if (table == nullptr) return false;
    T* out = shortFactors(table);
    for (const bool forward : {true, false}) {
        const T scale = forward ? scaleForward : scaleInverse;
        for (int i = 0; i < 2 * L; ++i) *out++ = scale;
        for (int v = 0; v < vectorsOf(s, L); ++v)
            for (int k = 1; k < radix; ++k, out += 4 * L)
                for (int lane = 0; lane < L; ++lane) {
                    const int column = v * L + lane, q = column < s ? column : s - 1;
                    const std::int64_t root = (forward ? k : radix - k) * q * step;
                    const T im = scale * (forward ? roots.im(root) : -roots.im(root));
                    out[2 * lane] = out[2 * lane + 1] = scale * roots.re(root);
                    out[2 * (lane + L)] = -im;
                    out[2 * (lane + L) + 1] = im;
                }
    }
    return true;
}

template Schedule shortSchedule<float>(int);
template Schedule shortSchedule<double>(int);
template bool buildShortFactors(float*&, int, int, float, float, const Roots<float>&);
template bool buildShortFactors(double*&, int, int, double, double, const Roots<double>&);

}  // namespace zep::ZEP_VARIANT::dft
