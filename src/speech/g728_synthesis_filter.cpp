// The decoder's synthesis filter.
#include "core/checks.h"
#include "speech/g728_synthesis.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

using namespace g728;

constexpr int kBytes = 144;

// One exponent more than vectors: the last is that of the vector that left.
struct State {
    Vector5 vectors[kVectors];
    Words<kVectors + 1> exponents;
};
static_assert(sizeof(State) <= kBytes);

}  // namespace

ZepStatus zepsSynthesisFilterGetStateSize_G728_16s(Zep32u* pSize) {
    return reportSize(pSize, kBytes);
}

ZepStatus zepsSynthesisFilterInit_G728_16s(ZepSynthesisFilterState* pState) {
    if (const ZepStatus status = clearState(pState, kBytes); status != zepStsNoErr) return status;
    State s{};
    for (std::int16_t& exponent : s.exponents.at) exponent = 16;
    put(s, pState);
    return zepStsNoErr;
}

ZepStatus zepsSyntesisFilterZeroInput_G728_16s(const Zep16s* pCoeffs, const Zep16s* pSrc,
                                               Zep32s scale, Zep16s* pDst, Zep16s* pExp,
                                               ZepSynthesisFilterState* pState) {
    if (anyNull(pCoeffs, pSrc, pDst, pExp, pState)) return zepStsNullPtrErr;
    auto s = fetch<State>(pState);
    SynthesisMemory memory;
    for (int j = 0; j < kVectors; ++j) {
        memory.vectors[j] = s.vectors[j];
        memory.exponents[j] = s.exponents[j];
    }
    const auto a = fetch<SynthesisCoefficients>(pCoeffs);
    const ScaledVector z = ringing(a, memory);
    const ScaledVector speech =
        quantizedSpeech(z, responseFromRest(a, {fetch<Vector5>(pSrc), sat16(scale)}));
    s.exponents[kVectors] = s.exponents[kVectors - 1];
    memory.push(speech);
    for (int j = 0; j < kVectors; ++j) {
        s.vectors[j] = memory.vectors[j];
        s.exponents[j] = sat16(memory.exponents[j]);
    }
    put(s, pState);
    put(speech.x, pDst);
    put(s.exponents[0], pExp);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
