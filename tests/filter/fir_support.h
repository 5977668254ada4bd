// The exports of single-rate filters by sample type, their states, and streams with exact outputs.
#pragma once

#include "filter/filter_support.h"

namespace zep::test {

template <class T>
struct Exports;
template <>
struct Exports<Zep32f> {
    static constexpr auto create = zepsFIRInitAlloc_32f;
    static constexpr auto release = zepsFIRFree_32f;
    static constexpr auto filter = zepsFIR_32f;
    static constexpr auto inPlace = zepsFIR_32f_I;
    static constexpr int transformTaps = 64, transformSamples = 512;
};
template <>
struct Exports<Zep32fc> {
    static constexpr auto create = zepsFIRInitAlloc_32fc;
    static constexpr auto release = zepsFIRFree_32fc;
    static constexpr auto filter = zepsFIR_32fc;
    static constexpr auto inPlace = zepsFIR_32fc_I;
    static constexpr int transformTaps = 16, transformSamples = 256;
};

inline void set(Zep32f& v, float x) { v = x; }
inline void set(Zep32fc& v, float x) { v = {x, 0}; }
template <class T>
T value(float x) {
    T v;
    set(v, x);
    return v;
}

template <class T>
class State {
public:
    State(const std::vector<T>& taps, const T* history) {
        EXPECT_EQ(Exports<T>::create(&state_, taps.data(), static_cast<int>(taps.size()), history),
                  zepStsNoErr);
    }
    ~State() { EXPECT_EQ(Exports<T>::release(state_), zepStsNoErr); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    operator ZepFIRState*() const { return state_; }

private:
    ZepFIRState* state_ = nullptr;
};

// Taps, a stream behind a history, and its exact outputs.
template <class T>
struct Stream {
    std::vector<T> taps, x, history;

    Stream(int L, int length, bool past = true)
        : taps(randomVector<T>(L)), x(randomVector<T>(length)) {
        if (past) {
            history = randomVector<T>(L);
            setNaN(history.back());  // of no effect
        }
    }
    const T* past() const { return history.empty() ? nullptr : history.data(); }
    int length() const { return static_cast<int>(x.size()); }

    Wide sample(std::int64_t n) const {
        if (n >= 0) return wide(x[static_cast<std::size_t>(n)]);
        return history.empty() ? 0.0 : wide(history[static_cast<std::size_t>(-n - 1)]);
    }
    // Every output in front of allUpTo, then every stride-th. Whole call lengths of `direct` say whether a transform may have been used.
    void expect(const T* y, bool direct, int stride = 1, std::int64_t allUpTo = -1) const {
        const auto L = static_cast<std::int64_t>(taps.size());
        // A transform's block is at most 4L samples, of magnitude at most sqrt(2).
        const double spread =
            transformBound(14, std::sqrt(8.0 * static_cast<double>(L)), norm(taps.data(), L));
        if (allUpTo < 0) allUpTo = 2 * L + 20;
        for (std::int64_t n = 0; n < length(); n += n < allUpTo ? 1 : stride) {
            Sum s;
            for (std::int64_t k = 0; k < L; ++k)
                s.add(wide(taps[static_cast<std::size_t>(k)]), sample(n - k));
            ASSERT_LE(std::abs(wide(at(y, n)) - s.value), direct ? directBound(s) : spread)
                << L << " taps, " << length() << " samples, output " << n;
        }
    }

private:
    static void setNaN(Zep32f& v) { v = NAN; }
    static void setNaN(Zep32fc& v) { v = {NAN, NAN}; }
};

}  // namespace zep::test
