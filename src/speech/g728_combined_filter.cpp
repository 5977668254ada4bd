// The encoder's cascade of synthesis and weighting filter.
#include "core/checks.h"
#include "speech/g728_synthesis.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

using namespace g728;

constexpr int kBytes = 208;
constexpr int kInitialExponent = 16;  // of the silence before a stream

// Cleared it is silence: exponents are kept as their difference from the initial one.
struct State {
    Vector5 vectors[kVectors];
    Memory weighted;  // past outputs of the weighting filter
    Words<kVectors> exponents;
};
static_assert(sizeof(State) <= kBytes);

SynthesisMemory unpack(const State& s) {
    SynthesisMemory memory;
    for (int j = 0; j < kVectors; ++j) {
        memory.vectors[j] = s.vectors[j];
        memory.exponents[j] = s.exponents[j] + kInitialExponent;
    }
    return memory;
}

void pack(const SynthesisMemory& memory, State& s) {
    for (int j = 0; j < kVectors; ++j) {
        s.vectors[j] = memory.vectors[j];
        s.exponents[j] = sat16(memory.exponents[j] - kInitialExponent);
    }
}

// The newest two vectors, in Q2.
Memory pastSpeech(const SynthesisMemory& memory) {
    Memory past;
    for (int i = 0; i < kOrder; ++i) past[i] = memory.vector(i / 5).inQ2(4 - i % 5);
    return past;
}

Vector5 inQ2(const ScaledVector& v) {
    Vector5 x;
    for (int n = 0; n < 5; ++n) x[n] = v.inQ2(n);
    return x;
}

}  // namespace

ZepStatus zepsCombinedFilterGetStateSize_G728_16s(Zep32u* pSize) {
    return reportSize(pSize, kBytes);
}
ZepStatus zepsCombinedFilterInit_G728_16s(ZepCombinedFilterState* pState) {
    return clearState(pState, kBytes);
}

ZepStatus zepsCombinedFilterZeroInput_G728_16s(const Zep16s* pSyn, const Zep16s* pWeights,
                                               Zep16s* pDst, ZepCombinedFilterState* pState) {
    if (anyNull(pSyn, pWeights, pDst, pState)) return zepStsNullPtrErr;
    auto s = fetch<State>(pState);
    SynthesisMemory memory = unpack(s);
    const ScaledVector z = ringing(fetch<SynthesisCoefficients>(pSyn), memory);
    Memory past = pastSpeech(memory);
    memory.push(z);
    const auto weights = fetch<PoleZero>(pWeights);
    put(weights.filter(inQ2(z), past, s.weighted), pDst);
    pack(memory, s);
    put(s, pState);
    return zepStsNoErr;
}

ZepStatus zepsCombinedFilterZeroState_G728_16s(const Zep16s* pCoeffs, const Zep16s* pWeights,
                                               const Zep16s* pSrc, Zep32s scale,
                                               const Zep16s* pScale1, const Zep16s* pScale2,
                                               ZepCombinedFilterState* pState) {
    if (anyNull(pCoeffs, pWeights, pSrc, pScale1, pScale2, pState)) return zepStsNullPtrErr;
    auto s = fetch<State>(pState);
    SynthesisMemory memory = unpack(s);
    const int exponent =
        sat16(std::int64_t{scale} + fetch<Zep16s>(pScale1) + fetch<Zep16s>(pScale2));
    const ScaledVector u =
        responseFromRest(fetch<SynthesisCoefficients>(pCoeffs), {fetch<Vector5>(pSrc), exponent});
    Memory inputs{}, outputs{};
    const ScaledVector v{fetch<PoleZero>(pWeights).filter(u.x, inputs, outputs), u.exponent};
    for (int n = 0; n < 5; ++n) s.weighted[4 - n] = sat16(s.weighted[4 - n] + v.inQ2(n));
    memory.replaceNewest(quantizedSpeech(memory.vector(0), u));
    pack(memory, s);
    put(s, pState);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
