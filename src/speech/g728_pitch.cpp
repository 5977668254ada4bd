// Pitch extraction of the G.728 decoder (Annex G block 82): a search on the residual decimated by
// 4, then around its best lag and around the past period on the residual itself.
#include "core/checks.h"
#include "speech/g728_sums.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

using namespace g728;

constexpr int kBytes = 176;
constexpr int kMinPeriod = 20, kMaxPeriod = 140, kRange = 6, kFirstPeriod = 50;
constexpr int kNew = 20, kWindow = 100, kPast = kMaxPeriod;  // samples of the residual
constexpr int kDecimation = 4, kNewDecimated = kNew / kDecimation;
constexpr int kDecimatedWindow = kWindow / kDecimation, kDecimated = 60;
static_assert(kDecimated == kDecimatedWindow + kMaxPeriod / kDecimation);
constexpr int kTapRatio = 26214;  // 0.4 in 16 bits

constexpr int kLowPassZeros[] = {18721, -3668, -3668, 18721};  // Q19
constexpr int kLowPassPoles[] = {-19172, 16481, -5031};        // Q13, without the leading 1

// Cleared it is silence, with the first period.
struct State {
    Words<kDecimated> decimated;  // oldest first
    std::int16_t periodLessFirst;
    Words<3> lowPassed;  // past outputs, newest first
};
static_assert(sizeof(State) <= kBytes);

// The residual: what the window covers, and before it what the longest period reaches.
using Residual = Words<kPast + kWindow>;

void decimate(const Residual& x, State& s) {
    for (int i = 0; i < kDecimated - kNewDecimated; ++i)
        s.decimated[i] = s.decimated[i + kNewDecimated];
    Words<3>& past = s.lowPassed;
    for (int n = 0; n < kNew; ++n) {
        const int now = kPast + kWindow - kNew + n;
        Accumulator zeros;
        for (int i = 0; i < 4; ++i) zeros.add(kLowPassZeros[i], x[now - i]);
        Accumulator sum(zeros.value() >> 6);
        for (int i = 0; i < 3; ++i) sum.subtract(kLowPassPoles[i], past[i]);
        const std::int16_t y = round16(shiftLeftSat32(sum.value(), 3));
        past = {{y, past[0], past[1]}};
        if (n % kDecimation == kDecimation - 1)
            s.decimated[kDecimated - kNewDecimated + n / kDecimation] = y;
    }
}

// Sum of x[k] * x[k - lag] over the newest samples; `self`: of x[k - lag]^2.
template <int window, int size>
std::int64_t correlation(const Words<size>& x, int lag) {
    std::int64_t sum = 0;
    for (int k = size - window; k < size; ++k) sum += x[k] * x[k - lag];
    return sum;
}
std::int64_t delayedEnergy(const Residual& x, int lag) {
    std::int64_t sum = 0;
    for (int k = kPast - lag; k < kPast - lag + kWindow; ++k) sum += x[k] * x[k];
    return sum;
}

struct Candidate {
    int lag;
    std::int64_t correlation;
};

// The best lag from low to high, the lower one of equals.
template <int window, int size>
Candidate bestLag(const Words<size>& x, int low, int high) {
    Candidate best{low, correlation<window>(x, low)};
    for (int lag = low + 1; lag <= high; ++lag)
        if (const std::int64_t c = correlation<window>(x, lag); c > best.correlation)
            best = {lag, c};
    return best;
}

Candidate bestPeriodAround(const Residual& x, int period) {
    const int low = period - kRange, high = period + kRange;
    return bestLag<kWindow>(x, low < kMinPeriod ? kMinPeriod : low,
                            high > kMaxPeriod ? kMaxPeriod : high);
}

// Whether the tap of `other` exceeds 0.4 times that of `found`: c' / e' > 0.4 * c / e, on the high
// words after normalisation by the larger energy.
bool otherWins(const Residual& x, const Candidate& other, const Candidate& found) {
    const std::int64_t e = sat32(delayedEnergy(x, found.lag)),
                       eOther = sat32(delayedEnergy(x, other.lag));
    const int shift = normShift(e > eOther ? e : eOther, 32);
    const auto top = [=](std::int64_t v) { return shiftLeftSat32(v, shift) >> 16; };
    const auto limited = [](std::int64_t c, std::int64_t energy) {
        return c < 0 ? 0 : c > energy ? energy : c;
    };
    const std::int32_t left = top(limited(other.correlation, eOther)) * top(e),
                       right = top(limited(found.correlation, e)) * top(eOther);
    return left > (right >> 16) * kTapRatio;
}

}  // namespace

ZepStatus zepsPostFilterAdapterGetStateSize_G728(Zep32u* pSize) {
    return reportSize(pSize, kBytes);
}
ZepStatus zepsPostFilterAdapterStateInit_G728(ZepPostFilterAdapterState* pState) {
    return clearState(pState, kBytes);
}

ZepStatus zepsPitchPeriodExtraction_G728_16s(const Zep16s* pSrc, Zep32s* pKp,
                                             ZepPostFilterAdapterState* pState) {
    if (anyNull(pSrc, pKp, pState)) return zepStsNullPtrErr;
    const auto x = fetch<Residual>(pSrc - (kPast + kWindow - kNew));
    auto s = fetch<State>(pState);
    decimate(x, s);
    const Candidate coarse =
        bestLag<kDecimatedWindow>(s.decimated, kMinPeriod / kDecimation, kMaxPeriod / kDecimation);
    const Candidate found = bestPeriodAround(x, coarse.lag * kDecimation);
    const Candidate nearPast = bestPeriodAround(x, s.periodLessFirst + kFirstPeriod);
    const int period = otherWins(x, nearPast, found) ? nearPast.lag : found.lag;
    s.periodLessFirst = static_cast<std::int16_t>(period - kFirstPeriod);
    put(s, pState);
    put(period, pKp);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
