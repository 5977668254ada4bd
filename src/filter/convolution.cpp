// Linear convolution. A short sequence goes by direct sums, two of like length by one transform
// over everything, a long one against a much shorter by overlap-save (Stockham 1966; Oppenheim and
// Schafer, Discrete-Time Signal Processing, section 8.7): each block of N inputs gives the
// N-S+1 outputs that its circular convolution with the S taps has not wrapped.
#include <type_traits>

#include "core/checks.h"
#include "filter/correlate.h"
#include "filter/spectrum.h"
#include "simd/vec.h"
#include "transform/fft_convolve.h"

namespace zep::ZEP_VARIANT {
namespace {

using filter::TransformOf;

// How samples of the caller's type pass into float buffers and back.
struct FloatSamples {
    using Sample = Zep32f;
    static void in(const Zep32f* src, Zep32f* dst, std::int64_t n) {
        TransformOf<Zep32f>::copy(src, dst, n);
    }
    void out(const Zep32f* src, Zep32f* dst, std::int64_t n) const {
        TransformOf<Zep32f>::copy(src, dst, n);
    }
};
struct ScaledSamples {
    using Sample = Zep16s;
    int scaleFactor;
    static void in(const Zep16s* src, Zep32f* dst, std::int64_t n) {
        if (n > 0) ZEP_VARIANT::zepsConvert_16s32f(src, dst, static_cast<int>(n));
    }
    void out(const Zep32f* src, Zep16s* dst, std::int64_t n) const {
        if (n > 0)
            ZEP_VARIANT::zepsConvert_32f16s_Sfs(src, dst, static_cast<int>(n), zepRoundNearest,
                                                scaleFactor);
    }
};

// T is not the shorter one.
template <class Sample>
struct Pair {
    const Sample* longer;
    const Sample* shorter;
    std::int64_t T, S;
    std::int64_t outputs() const { return T + S - 1; }
};

constexpr std::int64_t kDirectOutputs = 512, kDirectShorter = 64;
// Of a direct convolution: either below kDirectShorter, or S <= T and S + T - 1 < kDirectOutputs.
constexpr std::int64_t kMaxDirectTaps = kDirectOutputs / 2;

void reverse(const Zep32f* src, Zep32f* dst, std::int64_t n) {
    ZEP_VARIANT::zepsFlip_32f(src, dst, static_cast<int>(n));
}

ZepStatus direct(const Pair<Zep32f>& p, Zep32f* dst, FloatSamples) {
    Zep32f taps[kMaxDirectTaps];
    reverse(p.shorter, taps, p.S);
    filter::correlate(taps, p.S, p.longer, p.T, 1 - p.S, dst, p.outputs());
    return zepStsNoErr;
}

// Through float blocks, which keep the last S-1 inputs in front of the next.
ZepStatus direct(const Pair<Zep16s>& p, Zep16s* dst, ScaledSamples samples) {
    constexpr std::int64_t kBlock = 4096;
    const std::int64_t block = p.T < kBlock ? p.T : kBlock, history = p.S - 1;
    filter::Scratch<Zep32f> scratch;
    if (!scratch.allocate(static_cast<std::size_t>(2 * p.S + history + 2 * block)))
        return zepStsMemAllocErr;
    Zep32f *taps = scratch.data(), *forward = taps + p.S, *x = forward + p.S,
           *y = x + history + block;
    samples.in(p.shorter, forward, p.S);
    reverse(forward, taps, p.S);
    TransformOf<Zep32f>::zero(x, history);
    const std::int64_t F = p.outputs();
    for (std::int64_t n = 0; n < F;) {
        const std::int64_t count = F - n < block ? F - n : block;
        const std::int64_t left = p.T - n;
        const std::int64_t fresh = left < 0 ? 0 : left < count ? left : count;
        if (fresh > 0) samples.in(p.longer + n, x + history, fresh);
        TransformOf<Zep32f>::zero(x + history + fresh, count - fresh);
        filter::correlate(taps, p.S, x, history + count, 0, y, count);
        samples.out(y, dst + n, count);
        if (history > 0) ZEP_VARIANT::zepsMove_32f(x + count, x, static_cast<int>(history));
        n += count;
    }
    return zepStsNoErr;
}

template <class Samples>
ZepStatus whole(const Pair<typename Samples::Sample>& p, typename Samples::Sample* dst,
                Samples samples) {
    filter::CallTransform<Zep32f> fft;
    if (const ZepStatus s = fft.create(filter::orderFor(p.outputs(), 2), 2); s != zepStsNoErr)
        return s;
    const int N = fft.length();
    Zep32f *a = fft.buffer(0), *b = fft.buffer(1);
    samples.in(p.longer, a, p.T);
    TransformOf<Zep32f>::zero(a + p.T, N - p.T);
    samples.in(p.shorter, b, p.S);
    TransformOf<Zep32f>::zero(b + p.S, N - p.S);
    if (const ZepStatus s = fft.forward(a); s != zepStsNoErr) return s;
    if (const ZepStatus s = fft.forward(b); s != zepStsNoErr) return s;
    filter::multiplyPacked(b, a, N);
    if (const ZepStatus s = fft.inverse(a); s != zepStsNoErr) return s;
    samples.out(a, dst, p.outputs());
    return zepStsNoErr;
}

// Blocks of up to this order go two at a time through a convolver; beyond, its tables cost what it
// saves.
constexpr int kConvolverMaxOrder = 11;

// Those that need neither zeros nor a part of their results beside those half the blocks further on,
// the others in buffers.
ZepStatus paired(const Pair<Zep32f>& p, Zep32f* dst, int order) {
    constexpr std::size_t kLineFloats = fft::kLine / sizeof(float);
    filter::Scratch<Zep32f> memory;
    const std::size_t tables = fft::convolverScalars<float>(order) + kLineFloats;
    if (!memory.allocate(tables + (std::size_t{2} << order))) return zepStsMemAllocErr;
    const fft::Convolver<float> convolver =
        fft::makeConvolver(order, fft::alignUp(memory.data(), fft::kLine));
    fft::setTaps(convolver, p.shorter, p.S);
    const std::int64_t N = std::int64_t{1} << order, history = p.S - 1, step = N - history;
    const std::int64_t F = p.outputs(), whole = p.T / step - 1, half = whole > 0 ? whole / 2 : 0;
    if (half > 0) {
        const Zep32f* x = p.longer + (step - history);
        Zep32f* y = dst + step;
        fft::convolvePair<float>(convolver, {x, x + half * step}, {y, y + half * step}, history,
                                 step, half);
    }
    Zep32f* const buffer[2] = {memory.data() + tables, memory.data() + tables + N};
    const auto load = [&](std::int64_t done, Zep32f* to) {
        const std::int64_t front = done < history ? history - done : 0,
                           from = done - history + front;
        const std::int64_t left = p.T - from, room = N - front;
        const std::int64_t n = left < 0 ? 0 : left < room ? left : room;
        TransformOf<Zep32f>::zero(to, front);
        TransformOf<Zep32f>::copy(p.longer + from, to + front, n);
        TransformOf<Zep32f>::zero(to + front + n, room - n);
    };
    const auto store = [&](std::int64_t done, const Zep32f* from) {
        TransformOf<Zep32f>::copy(from, dst + done, F - done < step ? F - done : step);
    };
    for (std::int64_t done = 0, next = 0; done < F; done = next + step) {
        next = done == 0 ? (2 * half + 1) * step : done + step;
        load(done, buffer[0]);
        load(next, buffer[1]);
        fft::convolvePair<float>(convolver, {buffer[0], buffer[1]}, buffer, history, step, 1);
        store(done, buffer[0]);
        if (next < F) store(next, buffer[1]);
    }
    return zepStsNoErr;
}

template <class Samples>
ZepStatus blocked(const Pair<typename Samples::Sample>& p, typename Samples::Sample* dst,
                  Samples samples) {
    const int order = filter::orderFor(2 * p.S, 0) + 1;
    if constexpr (std::is_same_v<typename Samples::Sample, Zep32f>)
        if (order <= kConvolverMaxOrder && fft::hasConvolver<float>(order))
            return paired(p, dst, order);
    filter::CallTransform<Zep32f> fft;
    if (const ZepStatus s = fft.create(order, 2); s != zepStsNoErr) return s;
    const std::int64_t N = fft.length(), step = N - p.S + 1, F = p.outputs();
    Zep32f *taps = fft.buffer(0), *x = fft.buffer(1);
    samples.in(p.shorter, taps, p.S);
    TransformOf<Zep32f>::zero(taps + p.S, N - p.S);
    if (const ZepStatus s = fft.forward(taps); s != zepStsNoErr) return s;
    // From the last block to the first: what has wrapped in front of a block's results stands where
    // the block before it writes next.
    for (std::int64_t done = (F - 1) / step * step; done >= 0; done -= step) {
        // The first block has no history in front of its inputs; what wraps there is zero.
        const std::int64_t history = done > 0 ? p.S - 1 : 0;
        const std::int64_t from = done - history, left = p.T - from;
        const std::int64_t n = left < history + step ? left : history + step;
        samples.in(p.longer + from, x, n);
        TransformOf<Zep32f>::zero(x + n, N - n);
        if (const ZepStatus s = fft.forward(x); s != zepStsNoErr) return s;
        filter::multiplyPacked(taps, x, static_cast<int>(N));
        if constexpr (std::is_same_v<typename Samples::Sample, Zep32f>) {
            if (history > 0 && F - done >= step) {
                if (const ZepStatus s = fft.inverse(x, dst + from); s != zepStsNoErr) return s;
                continue;
            }
        }
        if (const ZepStatus s = fft.inverse(x); s != zepStsNoErr) return s;
        samples.out(x + history, dst + done, F - done < step ? F - done : step);
    }
    return zepStsNoErr;
}

template <class Samples, class Sample>
ZepStatus convolve(const Sample* src1, int len1, const Sample* src2, int len2, Sample* dst,
                   Samples samples) {
    if (anyNull(src1, src2, dst)) return zepStsNullPtrErr;
    if (len1 < 1 || len2 < 1) return zepStsSizeErr;
    const Pair<Sample> p =
        len1 < len2 ? Pair<Sample>{src2, src1, len2, len1} : Pair<Sample>{src1, src2, len1, len2};
    if (p.outputs() < kDirectOutputs || p.S < kDirectShorter) return direct(p, dst, samples);
    return p.T < 3 * p.S ? whole(p, dst, samples) : blocked(p, dst, samples);
}

}  // namespace

ZepStatus zepsConv_32f(const Zep32f* pSrc1, int src1Len, const Zep32f* pSrc2, int src2Len,
                       Zep32f* pDst) {
    return convolve(pSrc1, src1Len, pSrc2, src2Len, pDst, FloatSamples{});
}
ZepStatus zepsConv_16s_Sfs(const Zep16s* pSrc1, int src1Len, const Zep16s* pSrc2, int src2Len,
                           Zep16s* pDst, int scaleFactor) {
    return convolve(pSrc1, src1Len, pSrc2, src2Len, pDst, ScaledSamples{scaleFactor});
}

}  // namespace zep::ZEP_VARIANT
