// Multi-rate filtering with float taps, for the entries that filter at one rate too.
#pragma once

#include "filter/fir_record.h"

namespace zep::ZEP_VARIANT::filter {

template <class T>
inline constexpr std::uint32_t kMultirateKind = idFIRMR_32f;
template <>
inline constexpr std::uint32_t kMultirateKind<Zep32fc> = idFIRMR_32fc;

template <class T>
inline bool isMultirate(const ZepFIRState& state) {
    return state.idFIR == kMultirateKind<T>;
}

// numIters * downFactor samples to numIters * upFactor samples, numIters at least 1.
ZepStatus multirate(const Zep32f* src, Zep32f* dst, int numIters, ZepFIRState& state);
ZepStatus multirate(const Zep32fc* src, Zep32fc* dst, int numIters, ZepFIRState& state);
ZepStatus multirateInPlace(Zep32f* data, int numIters, ZepFIRState& state);
ZepStatus multirateInPlace(Zep32fc* data, int numIters, ZepFIRState& state);

}  // namespace zep::ZEP_VARIANT::filter
