// FIR filters of float samples with double taps and sums.
#include "filter/fir_wide.h"
#include "filter/polyphase_run.h"

namespace zep::ZEP_VARIANT {

ZepStatus zepsFIRMRInitAlloc64f_32f(ZepFIRState** ppState, const Zep64f* pTaps, int tapsLen,
                                    int upFactor, int upPhase, int downFactor, int downPhase,
                                    const Zep32f* pDlyLine) {
    if (anyNull(ppState, pTaps)) return zepStsNullPtrErr;
    const filter::Rates rates{tapsLen, upFactor, upPhase, downFactor, downPhase};
    if (const ZepStatus status = filter::checkRates(rates); status != zepStsNoErr) return status;
    if (upFactor == 1 && downFactor == 1)
        *ppState = filter::createWide(pTaps, tapsLen, pDlyLine);
    else
        *ppState = filter::createMultirate<filter::DoubleSums>(
            idFIRMR64f_32f, filter::kernelKindOf<double>(rates), rates, pTaps, pDlyLine);
    return *ppState == nullptr ? zepStsMemAllocErr : zepStsNoErr;
}

ZepStatus zepsFIR64f_32f_I(Zep32f* pSrcDst, int numIters, ZepFIRState* pState) {
    if (const ZepStatus status = checkVectors(numIters, pState, pSrcDst); status != zepStsNoErr)
        return status;
    if (pState->idFIR == idFIRMR64f_32f)
        return filter::filterMultirateInPlace<filter::DoubleSums>(*pState, pSrcDst, numIters);
    if (pState->idFIR != idFIR64f_32f) return zepStsContextMatchErr;
    filter::filterWide(*pState, pSrcDst, numIters);
    return zepStsNoErr;
}

// The two kinds of state that it is for have no creator.
ZepStatus zepsFIR64fc_32fc_I(Zep32fc* pSrcDst, int numIters, ZepFIRState* pState) {
    if (const ZepStatus status = checkVectors(numIters, pState, pSrcDst); status != zepStsNoErr)
        return status;
    return zepStsContextMatchErr;
}

}  // namespace zep::ZEP_VARIANT
