// The filters of order 10 that stand alone: perceptual weighting (block 4) and the inverse filter
// before pitch analysis (block 81).
#include "core/checks.h"
#include "speech/g728_sums.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

using namespace g728;

constexpr int kBytes = 64;

struct State {
    Memory inputs, outputs;
};
static_assert(sizeof(State) <= kBytes);

}  // namespace

ZepStatus zepsIIR16sGetStateSize_G728_16s(Zep32u* pSize) { return reportSize(pSize, kBytes); }
ZepStatus zepsIIR16sInit_G728_16s(ZepIIR16sState* pState) { return clearState(pState, kBytes); }

ZepStatus zepsIIR16s_G728_16s(const Zep16s* pCoeffs, const Zep16s* pSrc, Zep16s* pDst,
                              ZepIIR16sState* pState) {
    if (anyNull(pCoeffs, pSrc, pDst, pState)) return zepStsNullPtrErr;
    auto s = fetch<State>(pState);
    put(fetch<PoleZero>(pCoeffs).filter(fetch<Vector5>(pSrc), s.inputs, s.outputs), pDst);
    put(s, pState);
    return zepStsNoErr;
}

ZepStatus zepsLPCInverseFilter_G728_16s(const Zep16s* pCoeffs, const Zep16s* pSrc, Zep16s* pDst,
                                        Zep16s* pMem) {
    if (anyNull(pCoeffs, pSrc, pDst, pMem)) return zepStsNullPtrErr;
    const PoleZero filter{fetch<Words<kOrder>>(pCoeffs), {}};
    auto memory = fetch<Memory>(pMem);
    Memory outputs{};
    put(filter.filter(fetch<Vector5>(pSrc), memory, outputs), pDst);
    put(memory, pMem);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
