// Energies of the shape codevectors after the impulse response of the cascade (G.728 block 15), as
// many shapes side by side as there are lanes.
#include "core/checks.h"
#include "simd/vec.h"
#include "speech/fixed_point.h"
#include "speech/g728_codebook.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {

using namespace g728;

namespace {

// The impulse response as pairs that run backwards from each sample.
struct Response {
    Words16 at[5];  // (h[n], h[n-1])

    [[gnu::always_inline]] explicit Response(const Vector5& h) {
        at[0] = Words16::broadcastPair(h[0], 0);
        for (int n = 1; n < 5; ++n) at[n] = Words16::broadcastPair(h[n], h[n - 1]);
    }
};

// Sample n of the shapes' responses, limited to 16 bits.
template <int n>
[[gnu::always_inline]] inline Words32 response(const Shapes& y, const Response& h) {
    Words32 sum = simd::mulAddPairs(y.pairs[0], h.at[n]);
    if constexpr (n >= 2) sum = sum + simd::mulAddPairs(y.pairs[1], h.at[n - 2]);
    if constexpr (n >= 4) sum = sum + simd::mulAddPairs(y.pairs[2], h.at[n - 4]);
    return simd::min(simd::max(sum >> 14, Words32::broadcast(-32768)), Words32::broadcast(32767));
}

// a * a + b * b of words in 32 bits, modulo 2^32.
[[gnu::always_inline]] inline Words32 squares(Words32 a, Words32 b) {
    const auto words = simd::bitsIn<std::int16_t>((a & Words32::broadcast(0xFFFF)) | (b << 16));
    return simd::mulAddPairs(words, words);
}

[[gnu::always_inline]] inline Words32 energies(int j, const Response& h) {
    const Shapes y = Shapes::load(j);
    const Words32 first = squares(response<0>(y, h), response<1>(y, h));
    const Words32 four = first + squares(response<2>(y, h), response<3>(y, h));
    const Words32 all = four + squares(response<4>(y, h), Words32::zero());
    // A sum that has reached 2^31 on the way shows it in one of the three: a pair is at most 2^31,
    // the last square 2^30.
    const Words32 over = (first | four | all) >> 31;
    const Words32 energy = simd::lanesAs<std::int32_t>(simd::lanesAs<std::uint32_t>(all) >> 15);
    return (energy | over) & Words32::broadcast(0xFFFF);
}

}  // namespace

ZepStatus zepsImpulseResponseEnergy_G728_16s(const Zep16s* pImpulse, Zep16s* pEnergy) {
    if (anyNull(pImpulse, pEnergy)) return zepStsNullPtrErr;
    const Response h(fetch<Vector5>(pImpulse));
    for (int j = 0; j < kShapes; j += 2 * Words32::lanes) {
        const auto packed =
            simd::narrowSaturated<std::uint16_t>(energies(j, h), energies(j + Words32::lanes, h));
        simd::lanesAs<std::int16_t>(packed).store(pEnergy + j);
    }
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
