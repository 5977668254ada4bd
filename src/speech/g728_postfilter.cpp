// Postfilter of the G.728 decoder (Annex G blocks 71 to 77) on one vector.
#include "core/checks.h"
#include "speech/g728_sums.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

using namespace g728;

constexpr int kBytes = 64;
constexpr int kUnity = 16384;           // Q14
constexpr int kGainMemory = 16220;      // 0.99, Q14
constexpr int kGainInnovation = 20972;  // 0.01, Q21

// Cleared it has unity gain.
struct State {
    Memory inputs, outputs;      // of the short-term filter
    std::int16_t gainLessUnity;  // Q14
};
static_assert(sizeof(State) <= kBytes);

int sumOfMagnitudes(const Vector5& v) {
    int sum = 0;
    for (const int x : v.at) sum += x < 0 ? -x : x;
    return sum;
}

// What the gain gains of the ratio of the magnitudes with each sample, Q28.
std::int32_t gainStep(const Vector5& input, const Vector5& output) {
    const int in = sumOfMagnitudes(input), out = sumOfMagnitudes(output);
    Quotient ratio{kUnity, 14};
    if (out > 4) {
        const int inShift = normShift(in, 32), outShift = normShift(out, 32);
        ratio = divideNormalised(round16(shiftLeftSat32(in, inShift)), inShift - 16,
                                 round16(shiftLeftSat32(out, outShift)), outShift - 16);
    }
    const int shift = ratio.exponent - 14 + 7;
    return shift > 30 ? 0 : shiftLeftSat32(std::int64_t{kGainInnovation} * ratio.word, -shift);
}

constexpr std::int32_t roundedFromQ14(std::int32_t v) {
    return sat32((std::int64_t{v} + 8192) >> 14);
}

}  // namespace

ZepStatus zepsPostFilterGetStateSize_G728_16s(Zep32u* pSize) { return reportSize(pSize, kBytes); }
ZepStatus zepsPostFilterInit_G728_16s(ZepPostFilterState* pState) {
    return clearState(pState, kBytes);
}

ZepStatus zepsPostFilter_G728_16s(Zep16s gl, Zep16s glb, Zep16s kp, Zep16s tiltz,
                                  const Zep16s* pCoeffs, const Zep16s* pSrc, Zep16s* pDst,
                                  ZepPostFilterState* pState) {
    if (anyNull(pCoeffs, pSrc, pDst, pState)) return zepStsNullPtrErr;
    const auto shortTerm = fetch<PoleZero>(pCoeffs);
    const auto x = fetch<Vector5>(pSrc), delayed = fetch<Vector5>(pSrc - kp);
    auto s = fetch<State>(pState);
    Vector5 filtered;
    for (int n = 0; n < 5; ++n) {
        const std::int32_t comb =
            roundedFromQ14(Accumulator(std::int64_t{x[n]} * kUnity).add(glb, delayed[n]).value());
        const std::int16_t u = sat16(roundedFromQ14(Accumulator().add(gl, comb).value()));
        const std::int32_t v = shortTerm.response(u, s.inputs, s.outputs);
        filtered[n] = Accumulator(v).add(tiltz, s.outputs[0]).fromQ14();
        push(s.inputs, u);
        push(s.outputs, sat16(v >> 14));
    }
    const std::int32_t step = gainStep(x, filtered);
    std::int16_t gain = sat16(s.gainLessUnity + kUnity);
    for (std::int16_t& y : filtered.at) {
        gain = round16(sat32((step + std::int64_t{kGainMemory} * gain) * 4));
        y = round16(sat32(std::int64_t{gain} * y * 4));
    }
    s.gainLessUnity = static_cast<std::int16_t>(gain - kUnity);
    put(filtered, pDst);
    put(s, pState);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
