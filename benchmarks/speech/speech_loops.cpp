#include "speech/speech_loops.h"

#include <algorithm>
#include <cstdlib>

extern "C" {
#include <spandsp.h>
}

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

template <class From, class To, To (*law)(From)>
void each(const From* x, To* y, int n) {
    for (int i = 0; i < n; ++i) y[i] = law(x[i]);
}
std::uint8_t toALaw(std::int16_t x) { return linear_to_alaw(x); }
std::uint8_t toMuLaw(std::int16_t x) { return linear_to_ulaw(x); }
std::int16_t fromALaw(std::uint8_t c) { return alaw_to_linear(c); }
std::int16_t fromMuLaw(std::uint8_t c) { return ulaw_to_linear(c); }

void tableCompress(const std::uint8_t* table, const std::int16_t* x, std::uint8_t* y, int n) {
    for (int i = 0; i < n; ++i) y[i] = table[static_cast<std::uint16_t>(x[i])];
}
void tableExpand(const std::int16_t* table, const std::uint8_t* x, std::int16_t* y, int n) {
    for (int i = 0; i < n; ++i) y[i] = table[x[i]];
}

void energy(const std::int16_t (*shapes)[5], const std::int16_t* h, std::uint16_t* energies) {
    for (int j = 0; j < 128; ++j) {
        std::int64_t sum = 0;
        for (int n = 0; n < 5; ++n) {
            int z = 0;
            for (int k = 0; k <= n; ++k) z += h[k] * shapes[j][n - k];
            z = std::clamp(z >> 14, -32768, 32767);
            sum += z * z;
        }
        energies[j] = static_cast<std::uint16_t>(std::min<std::int64_t>(sum >> 15, 65535));
    }
}

int search(const std::int16_t (*shapes)[5], const std::int16_t* corr,
           const std::uint16_t* energies) {
    constexpr int t[] = {5808, 10164, 17787}, a[] = {-4224, -7392, -12936, -22638},
                  b[] = {545, 1668, 5107, 15640};
    int least = 0x7FFFFFFF, shape = 0, gain = 0;
    for (int j = 0; j < 128; ++j) {
        int p = 0;
        for (int n = 0; n < 5; ++n) p += corr[n] * shapes[j][n];
        const int q = std::abs(p), e = energies[j];
        const int level = (q >= t[0] * e) + (q >= t[1] * e) + (q >= t[2] * e);
        const int d = a[level] * std::min(q >> 14, 32767) + b[level] * e;
        if (d < least) least = d, shape = j, gain = level + (p < 1 ? 4 : 0);
    }
    return 8 * shape + gain;
}

}  // namespace

extern const SpeechLoops speechLoops{each<std::int16_t, std::uint8_t, toALaw>,
                                     each<std::int16_t, std::uint8_t, toMuLaw>,
                                     each<std::uint8_t, std::int16_t, fromALaw>,
                                     each<std::uint8_t, std::int16_t, fromMuLaw>,
                                     tableCompress,
                                     tableExpand,
                                     energy,
                                     search};

}  // namespace zep::bench::ZEP_PEER_LEVEL
