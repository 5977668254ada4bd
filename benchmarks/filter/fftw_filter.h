// Convolution and correlation through FFTW's transforms, whole or by overlap-save. Plans are ready
// before the row is timed; the products of the spectra are loops at the machine's own level.
#pragma once

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <vector>

#include "filter/filter_loops.h"
#include "support/buffers.h"
#include "transform/fftw_plan.h"

namespace zep::bench {

// What differs by sample type: N samples have `bins(N)` values in their spectrum.
template <class T>
struct RealSpectra {
    using Plan = FftwPlan<T>;
    using Bin = typename Fftw<T>::Element;
    static constexpr auto forward = Plan::real, inverse = Plan::realInverse;
    static constexpr int bins(int N) { return N / 2 + 1; }
};
template <class T>
struct Spectra;
template <>
struct Spectra<Zep32f> : RealSpectra<Zep32f> {
    static constexpr auto multiply = &FilterLoops::multiply;
};
template <>
struct Spectra<Zep64f> : RealSpectra<Zep64f> {
    static constexpr auto multiply = &FilterLoops::multiplyDouble;
};
template <>
struct Spectra<Zep32fc> {
    using Plan = FftwPlan<Zep32f>;
    using Bin = Zep32fc;
    static constexpr auto forward = Plan::complex, inverse = Plan::complexInverse;
    static constexpr auto multiply = &FilterLoops::multiply;
    static constexpr int bins(int N) { return N; }
};

// Both directions at 2^order points, one pair for all rows.
template <class T>
struct FftwPair {
    using Plan = typename Spectra<T>::Plan;
    Plan forward, inverse;
    explicit FftwPair(int order)
        : forward(Spectra<T>::forward, 1 << order), inverse(Spectra<T>::inverse, 1 << order) {}
    static const FftwPair& of(int order) {
        static std::map<int, FftwPair> all;
        return all.try_emplace(order, order).first->second;
    }
};

inline int orderAtLeast(std::int64_t n) {
    int order = 2;
    while (std::int64_t{1} << order < n) ++order;
    return order;
}

template <class T>
class FftwBlock {
    using Bin = typename Spectra<T>::Bin;
    using Part = decltype(Bin::re);

public:
    explicit FftwBlock(int order)
        : N(1 << order),
          samples(static_cast<std::size_t>(N)),
          plans_(FftwPair<T>::of(order)),
          spectrum_(static_cast<std::size_t>(N) + 1),
          saved_(static_cast<std::size_t>(N) + 1) {}

    // Transforms the first count elements of src and keeps the spectrum, divided by N on request.
    void keep(const T* src, int count, bool divide) {
        load(src, count);
        plans_.forward.run(samples.data(), saved_.data());
        const Part factor = divide ? 1 / static_cast<Part>(N) : 1;
        for (int k = 0; k < bins(); ++k)
            saved_[static_cast<std::size_t>(k)] = {saved_[static_cast<std::size_t>(k)].re * factor,
                                                   saved_[static_cast<std::size_t>(k)].im * factor};
    }
    void load(const T* src, int count, int at = 0) {
        std::fill(samples.begin(), samples.begin() + at, T{});
        std::copy_n(src, count, samples.begin() + at);
        std::fill(samples.begin() + at + count, samples.begin() + N, T{});
    }
    void convolve() { combine(native::filterLoops.*Spectra<T>::multiply, saved_); }
    void correlate() { combine(native::filterLoops.multiplyConjugate, saved_); }
    // With itself; undivided.
    void autocorrelate() {
        plans_.forward.run(samples.data(), spectrum_.data());
        native::filterLoops.multiplyConjugate(spectrum_.data(), spectrum_.data(), bins());
        plans_.inverse.run(spectrum_.data(), samples.data());
    }

    const int N;
    AlignedArray<T> samples;

private:
    int bins() const { return Spectra<T>::bins(N); }
    void combine(void (*multiply)(const Bin*, Bin*, int), AlignedArray<Bin>& h) {
        plans_.forward.run(samples.data(), spectrum_.data());
        multiply(h.data(), spectrum_.data(), bins());
        plans_.inverse.run(spectrum_.data(), samples.data());
    }

    const FftwPair<T>& plans_;
    AlignedArray<Bin> spectrum_, saved_;
};

inline float scaled(float x, float factor) { return factor * x; }
inline Zep32fc scaled(Zep32fc x, float factor) { return {factor * x.re, factor * x.im}; }

// Writes lags 0 .. lags-1 of n elements of a and of b, which may be the same array, to its argument.
template <class T>
auto fftwCorrelation(const T* a, const T* b, int n, int lags) {
    const auto block = std::make_shared<FftwBlock<T>>(orderAtLeast(n + lags));
    return [=](T* y) {
        if (a == b) {
            const float factor = 1.0f / static_cast<float>(block->N);
            block->load(a, n);
            block->autocorrelate();
            for (int k = 0; k < lags; ++k)
                y[k] = scaled(block->samples[static_cast<std::size_t>(k)], factor);
        } else {
            block->keep(a, n, true);
            block->load(b, n);
            block->correlate();
            std::copy_n(block->samples.begin(), lags, y);
        }
    };
}

// y[i] = sum over j of taps[j] * x[i - j], x readable from taps-1 elements before on.
template <class T>
class FftwOverlapSave {
public:
    FftwOverlapSave(const T* taps, int L, int order) : block_(order), taps_(taps), L_(L) {
        prepare();
    }
    void prepare() { block_.keep(taps_, L_, true); }
    void run(const T* x, T* y, int n) {
        const int step = block_.N - L_ + 1;
        for (int i = 0; i < n; i += step) {
            const int count = std::min(step, n - i);
            block_.load(x + i - (L_ - 1), L_ - 1 + count);
            block_.convolve();
            std::copy_n(block_.samples.begin() + (L_ - 1), count, y + i);
        }
    }

    // The fastest block length for n outputs, by trial.
    static int bestOrder(const T* taps, int L, const T* x, int n) {
        std::vector<T> y(static_cast<std::size_t>(n));
        int best = 0;
        double fastest = 1e9;
        const int least = orderAtLeast(2 * L), most = std::min(orderAtLeast(L + n - 1), least + 5);
        for (int order = std::min(least, most); order <= most; ++order) {
            FftwOverlapSave filter(taps, L, order);
            for (int round = 0; round < 5; ++round) {
                const auto begin = std::chrono::steady_clock::now();
                filter.run(x, y.data(), n);
                const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
                if (time.count() < fastest) {
                    fastest = time.count();
                    best = order;
                }
            }
        }
        return best;
    }

private:
    FftwBlock<T> block_;
    const T* taps_;
    int L_;
};

}  // namespace zep::bench
