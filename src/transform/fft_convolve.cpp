// The sweeps of a circular convolution.
//
// After the first pass the rows are convolutions of their own, each finished before the next is
// begun: however long the whole, the passes within stay in the nearest cache. A block of four or
// eight vectors needs no pass across rows at all.
#include "transform/fft_convolve.h"

#include "transform/fft_convolve_passes.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

// Of a block that the middle does alone.
template <class T>
constexpr bool isMiddle(int order) {
    return order <= kLogLanes<T> + 3;
}

// Calls f with the radix as a constant.
template <class F>
[[gnu::always_inline]] inline void withRadix(int radixOrder, F f) {
    if (radixOrder == 2)
        f(std::integral_constant<int, 4>{});
    else
        f(std::integral_constant<int, 8>{});
}

template <int R, class T>
[[gnu::noinline]] void middlesForward(T* work, std::ptrdiff_t blocks, const T* twiddles) {
    constexpr int N = R < kSideBySide ? kSideBySide : R;
    constexpr std::ptrdiff_t kGroup = kLanes<T>, kStep = 2 * N * kGroup;
    for (std::ptrdiff_t b = 0; b < blocks; b += N / R, work += kStep)
        middleForward<R, N>(SplitRows<T>{work, kGroup}, work, twiddles);
}
template <int R, class T>
[[gnu::noinline]] void middlesInverse(T* work, std::ptrdiff_t blocks, const T* twiddles,
                                      const T* spectrum) {
    constexpr int N = R < kSideBySide ? kSideBySide : R;
    constexpr std::ptrdiff_t kGroup = kLanes<T>, kStep = 2 * N * kGroup;
    for (std::ptrdiff_t b = 0; b < blocks; b += N / R, work += kStep, spectrum += kStep)
        middleInverse<R, N>(work, SplitRows<T>{work, kGroup}, twiddles, spectrum);
}

enum class Half { Both, Forward };

// `blocks` blocks of 2^order elements, in place.
template <Half kHalf, class T>
void inside(T* work, std::ptrdiff_t blocks, int order, const T* twiddles, const T* spectrum) {
    withRadix(radixOrderOf<T>(order), [&](auto radix) {
        constexpr int R = radix;
        if (isMiddle<T>(order)) {
            middlesForward<R>(work, blocks, twiddles);
            if constexpr (kHalf == Half::Both) middlesInverse<R>(work, blocks, twiddles, spectrum);
            return;
        }
        const int groupOrder = order - logOf(R);
        const std::ptrdiff_t group = std::ptrdiff_t{1} << groupOrder, block = 2 * R * group;
        const T* own = twiddles + passTwiddles<T>(groupOrder);
        for (std::ptrdiff_t b = 0; b < blocks; ++b, work += block, spectrum += block) {
            const SplitRows<T> rows{work, group};
            forwardPass<R>(rows, work, group, own);
            inside<kHalf>(work, R, groupOrder, twiddles, spectrum);
            if constexpr (kHalf == Half::Both) inversePass<R>(work, rows, group, own);
        }
    });
}

// Where the last pass puts its rows of `group` elements of kParts scalars: rows in front of `skip`
// go where nobody looks. What the row that `skip` divides has in front of it goes to places that are
// written later, or, given an edge, nowhere.
template <int R, int kParts, class T>
class Rows {
public:
    Rows(T* y, std::ptrdiff_t group, std::ptrdiff_t skip, T* nowhere, T* edge)
        : edge_(edge), y_(y), behind_(skip % group), group_(group) {
        const std::ptrdiff_t whole = skip / group;
#pragma GCC unroll 16
        for (int r = 0; r < R; ++r)
            at[r] = r < whole ? nowhere + 2 * r * group : y + kParts * (r * group - skip);
        if (behind_ == 0) edge_ = nullptr;
        if (edge_ != nullptr) at[whole] = edge_;
    }
    void finish() const {
        if (edge_ != nullptr)
            __builtin_memcpy(y_, edge_ + kParts * behind_,
                             static_cast<std::size_t>(kParts * (group_ - behind_)) * sizeof(T));
    }

    T* at[R];

private:
    T *edge_, *y_;
    std::ptrdiff_t behind_, group_;
};

// The blocks of complex elements, and those of two real signals.
template <class T>
struct PairStream {
    const T* x;
    T* y;
    std::ptrdiff_t skip, step, group;
    template <int R>
    struct Out {
        Rows<R, 2, T> rows;
        PairRowsAt<T> at() const { return {rows.at}; }
        void finish() const { rows.finish(); }
    };
    PairRows<T> in(std::ptrdiff_t b) const { return {x + 2 * b * step, group}; }
    template <int R>
    Out<R> out(std::ptrdiff_t b, T* nowhere, T* edge) const {
        return {{y + 2 * b * step, group, skip, nowhere, edge}};
    }
};
template <class T>
struct TwoStream {
    const T *x1, *x2;
    T *y1, *y2;
    std::ptrdiff_t skip, step, group;
    template <int R>
    struct Out {
        Rows<R, 1, T> first, second;
        TwoRowsAt<T> at() const { return {first.at, second.at}; }
        void finish() const {
            first.finish();
            second.finish();
        }
    };
    TwoRows<T> in(std::ptrdiff_t b) const { return {x1 + b * step, x2 + b * step, group}; }
    template <int R>
    Out<R> out(std::ptrdiff_t b, T* nowhere, T* edge) const {
        return {{y1 + b * step, group, skip, nowhere, edge},
                {y2 + b * step, group, skip, nowhere, edge == nullptr ? edge : edge + group}};
    }
};

template <int R, class T, class In>
[[gnu::noinline]] void firstPass(In in, T* work, std::ptrdiff_t group, const T* twiddles) {
    forwardPass<R>(in, work, group, twiddles);
}
template <int R, class T, class Stream>
[[gnu::noinline]] void lastPass(const Convolver<T>& c, const Stream& stream, std::ptrdiff_t b,
                                T* work, const T* twiddles) {
    const auto out = stream.template out<R>(b, work, b == 0 ? c.edge : nullptr);
    inversePass<R>(work, out.at(), stream.group, twiddles);
    out.finish();
}

// Short blocks, a batch at a time.
template <int R, class T, class Stream>
[[gnu::noinline]] void middleOnly(const Convolver<T>& c, const Stream& stream,
                                  std::ptrdiff_t blocks) {
    constexpr std::ptrdiff_t kBlock = 2 * R * kLanes<T>, kBatch = 1024 / kBlock;
    while (blocks > 0) {
        const std::ptrdiff_t batch = blocks < kBatch ? blocks : kBatch;
        blocks -= batch;
        for (std::ptrdiff_t b = 0; b < batch; ++b)
            middleForward<R, R>(stream.in(blocks + b), c.work + b * kBlock, c.twiddles);
        for (std::ptrdiff_t b = batch; b-- > 0;) {
            T* work = c.work + b * kBlock;
            const auto out =
                stream.template out<R>(blocks + b, work, blocks + b == 0 ? c.edge : nullptr);
            middleInverse<R, R>(work, out.at(), c.twiddles, c.spectrum);
            out.finish();
        }
    }
}

template <int R, class T, class Stream>
void sweeps(const Convolver<T>& c, const Stream& stream, int groupOrder, std::ptrdiff_t blocks) {
    const T* own = c.twiddles + passTwiddles<T>(groupOrder);
    const bool turns = c.order <= kTurnsMaxOrder;
    T* work = c.work;
    T* other = turns ? work + (std::ptrdiff_t{2} << c.order) : work;
    firstPass<R>(stream.in(blocks - 1), work, stream.group, own);
    for (std::ptrdiff_t b = blocks; b-- > 0;) {
        inside<Half::Both>(work, R, groupOrder, c.twiddles, c.spectrum);
        if (turns && b > 0) firstPass<R>(stream.in(b - 1), other, stream.group, own);
        lastPass<R>(c, stream, b, work, own);
        if (!turns && b > 0) firstPass<R>(stream.in(b - 1), work, stream.group, own);
        T* done = work;
        work = other;
        other = done;
    }
}

template <class T, class Stream>
void run(const Convolver<T>& c, Stream stream, std::ptrdiff_t blocks) {
    const int radixOrder = radixOrderOf<T>(c.order), groupOrder = c.order - radixOrder;
    stream.group = std::ptrdiff_t{1} << groupOrder;
    withRadix(radixOrder, [&](auto radix) {
        constexpr int R = radix;
        if (isMiddle<T>(c.order))
            middleOnly<R>(c, stream, blocks);
        else
            sweeps<R>(c, stream, groupOrder, blocks);
    });
}

// From the interleaved taps that stand in the place of their spectrum.
template <class T>
void transformTaps(const Convolver<T>& c) {
    const int radixOrder = radixOrderOf<T>(c.order), groupOrder = c.order - radixOrder;
    const std::ptrdiff_t group = std::ptrdiff_t{1} << groupOrder;
    withRadix(radixOrder, [&](auto radix) {
        constexpr int R = radix;
        const PairRows<T> in{c.spectrum, group};
        if (isMiddle<T>(c.order)) {
            middleForward<R, R>(in, c.work, c.twiddles);
        } else {
            forwardPass<R>(in, c.work, group, c.twiddles + passTwiddles<T>(groupOrder));
            inside<Half::Forward>(c.work, R, groupOrder, c.twiddles, c.spectrum);
        }
    });
    const T scale = T{1} / static_cast<T>(std::ptrdiff_t{1} << c.order);
    for (std::ptrdiff_t n = 0; n >> (c.order + 1) == 0; n += kLanes<T>)
        (Real<T>::load(c.work + n) * scale).store(c.spectrum + n);
}

}  // namespace

template <class T>
void setTaps(const Convolver<T>& c, const T* taps, std::ptrdiff_t count) {
    __builtin_memset(c.spectrum, 0, sizeof(T) << (c.order + 1));
    for (std::ptrdiff_t n = 0; n < count; ++n) c.spectrum[2 * n] = simd::readAny(taps + n);
    transformTaps(c);
}

template <class T>
void setComplexTaps(const Convolver<T>& c, const T* taps, std::ptrdiff_t count) {
    const std::size_t bytes = static_cast<std::size_t>(2 * count) * sizeof(T);
    __builtin_memcpy(c.spectrum, taps, bytes);
    __builtin_memset(c.spectrum + 2 * count, 0, (sizeof(T) << (c.order + 1)) - bytes);
    transformTaps(c);
}

template <class T>
void convolve(const Convolver<T>& c, const T* x, T* y, std::ptrdiff_t skip, std::ptrdiff_t step,
              std::ptrdiff_t blocks) {
    run(c, PairStream<T>{x, y, skip, step, 0}, blocks);
}

template <class T>
void convolvePair(const Convolver<T>& c, const T* const (&x)[2], T* const (&y)[2],
                  std::ptrdiff_t skip, std::ptrdiff_t step, std::ptrdiff_t blocks) {
    run(c, TwoStream<T>{x[0], x[1], y[0], y[1], skip, step, 0}, blocks);
}

template void setTaps(const Convolver<float>&, const float*, std::ptrdiff_t);
template void setComplexTaps(const Convolver<float>&, const float*, std::ptrdiff_t);
template void convolve(const Convolver<float>&, const float*, float*, std::ptrdiff_t,
                       std::ptrdiff_t, std::ptrdiff_t);
template void convolvePair(const Convolver<float>&, const float* const (&)[2], float* const (&)[2],
                           std::ptrdiff_t, std::ptrdiff_t, std::ptrdiff_t);

}  // namespace zep::ZEP_VARIANT::fft
