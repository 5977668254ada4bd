#include "filter/fir_multirate.h"

#include "filter/polyphase_run.h"

namespace zep::ZEP_VARIANT {
namespace filter {
namespace {

template <class T>
const float* scalars(const T* p) {
    return reinterpret_cast<const float*>(p);
}
template <class T>
float* scalars(T* p) {
    return reinterpret_cast<float*>(p);
}

// Another kind of kernel than the three is no state of ours.
bool knownKernel(const ZepFIRState& state) {
    return state.kernelKind >= 1 && state.kernelKind <= 3;
}

}  // namespace

ZepStatus multirate(const Zep32f* src, Zep32f* dst, int numIters, ZepFIRState& state) {
    if (!knownKernel(state)) return zepStsContextMatchErr;
    filterMultirate<RealSums>(state, src, dst, numIters);
    return zepStsNoErr;
}
ZepStatus multirate(const Zep32fc* src, Zep32fc* dst, int numIters, ZepFIRState& state) {
    filterMultirate<ComplexSums>(state, scalars(src), scalars(dst), numIters);
    return zepStsNoErr;
}
ZepStatus multirateInPlace(Zep32f* data, int numIters, ZepFIRState& state) {
    if (!knownKernel(state)) return zepStsContextMatchErr;
    return filterMultirateInPlace<RealSums>(state, data, numIters);
}
ZepStatus multirateInPlace(Zep32fc* data, int numIters, ZepFIRState& state) {
    return filterMultirateInPlace<ComplexSums>(state, scalars(data), numIters);
}

}  // namespace filter

ZepStatus zepsFIRMRInitAlloc_32f(ZepFIRState** ppState, const Zep32f* pTaps, int tapsLen,
                                 int upFactor, int upPhase, int downFactor, int downPhase,
                                 const Zep32f* pDlyLine) {
    if (anyNull(ppState, pTaps)) return zepStsNullPtrErr;
    const filter::Rates rates{tapsLen, upFactor, upPhase, downFactor, downPhase};
    if (const ZepStatus status = filter::checkRates(rates); status != zepStsNoErr) return status;
    if (upFactor == 1 && downFactor == 1)
        return ZEP_VARIANT::zepsFIRInitAlloc_32f(ppState, pTaps, tapsLen, pDlyLine);
    *ppState = filter::createMultirate<filter::RealSums>(
        idFIRMR_32f, filter::kernelKindOf<float>(rates), rates, pTaps, pDlyLine);
    return *ppState == nullptr ? zepStsMemAllocErr : zepStsNoErr;
}

ZepStatus zepsFIRMRInitAlloc_32fc(ZepFIRState** ppState, const Zep32fc* pTaps, int tapsLen,
                                  int upFactor, int upPhase, int downFactor, int downPhase,
                                  const Zep32fc* pDlyLine) {
    if (anyNull(ppState, pTaps)) return zepStsNullPtrErr;
    const filter::Rates rates{tapsLen, upFactor, upPhase, downFactor, downPhase};
    if (const ZepStatus status = filter::checkRates(rates); status != zepStsNoErr) return status;
    ZepFIRState* state = filter::createMultirate<filter::ComplexSums>(
        idFIRMR_32fc, 0, rates, filter::scalars(pTaps), filter::scalars(pDlyLine));
    if (state == nullptr) return zepStsMemAllocErr;
    *ppState = state;
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
