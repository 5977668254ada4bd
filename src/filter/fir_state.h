// What single-rate filters keep in their record.
//
// The delay buffer begins with the last dlyLineLen inputs, oldest first; behind them is room for all
// samples of a short call, or for those that the first outputs of a longer one meet, so that outputs
// which need both are sums over one array. All routes leave the same history, so they may change from
// call to call.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/variant/tag.h"
#include "core/variant_exports.h"
#include "filter/fir_record.h"
#include "filter/spectrum.h"

namespace zep::ZEP_VARIANT::filter {

enum class FirKind : std::uint32_t { Real = 0x46493031, Complex = 0x46493032 };

// Samples that an in-place call filters at a time, into scratch of the state.
template <class Tag>
struct FirTuning;
template <>
struct FirTuning<tag::m7> {
    static constexpr int inPlaceBlock = 4096;
};
template <>
struct FirTuning<tag::u8> : FirTuning<tag::m7> {};
template <>
struct FirTuning<tag::n8> : FirTuning<tag::m7> {};
template <>
struct FirTuning<tag::y8> : FirTuning<tag::m7> {};
template <>
struct FirTuning<tag::e9> {
    static constexpr int inPlaceBlock = 4224;
};

// What differs by sample type.
template <class T>
struct FirTraits;
template <>
struct FirTraits<Zep32f> {
    static constexpr FirKind kind = FirKind::Real;
    static constexpr int transformFromTaps = 64, transformFromSamples = 512;
    static constexpr std::int64_t splitCount(std::int64_t L) { return ((L + 3) & ~3) + 1; }
};
template <>
struct FirTraits<Zep32fc> {
    static constexpr FirKind kind = FirKind::Complex;
    static constexpr int transformFromTaps = 16, transformFromSamples = 256;
    static constexpr std::int64_t splitCount(std::int64_t L) { return (L + 3) & ~3; }
};

// Outputs that meet samples of the past, in whole vectors of any variant.
template <class T>
constexpr std::int64_t headOutputs(std::int64_t L) {
    constexpr std::int64_t kVector = 64 / sizeof(T);
    return (L - 1 + kVector - 1) & -kVector;
}

// Whether a call passes through the delay buffer as a whole: two runs of sums take longer than one
// until they are much longer than what is copied. Behind the samples a vector may be read.
constexpr int kShortCall = 512;
template <class T>
constexpr std::int64_t kDelaySlack = 64 / sizeof(T);
template <class T>
constexpr std::int64_t shortest(std::int64_t L) {
    return 2 * headOutputs<T>(L) + kDelaySlack<T>;
}
template <class T>
constexpr bool isShortCall(std::int64_t L, std::int64_t n) {
    return n < shortest<T>(L) || (n <= kShortCall && n < 6 * headOutputs<T>(L));
}
template <class T>
constexpr std::int64_t delayLength(std::int64_t L) {
    const std::int64_t most = shortest<T>(L) < kShortCall ? kShortCall : shortest<T>(L);
    return L + most + kDelaySlack<T>;
}

template <class T>
bool isSingleRate(const ZepFIRState& state) {
    return state.idFIR == static_cast<std::uint32_t>(FirTraits<T>::kind);
}

}  // namespace zep::ZEP_VARIANT::filter
