// Hybrid window of G.728 (Annex G blocks 36, 43 and 49): autocorrelation of a windowed past, of
// which the older part is kept in recursive form.
//
// The history holds T = M + N + L samples, oldest first. Windowed, those from M to M + L - 1 add
// to the recursive components R, which decay with each update, and those from M + L to T - 1 are
// summed afresh. R has 16 bits and one exponent E; the windowed samples have the exponent A / 2,
// their products A. Two sums of different exponents meet after the one of larger exponent has been
// shifted right; one more place on both sides keeps the sum in 32 bits.
#include <cstddef>

#include "core/checks.h"
#include "speech/fixed_point.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr int kMaxExponent = 41;  // of R; silence lets it grow
constexpr int kMaxSamples = 32767;

// At the head of the object. The words follow it at a multiple of 16 bytes: R, E, the history and,
// in block form, the exponents of its sub-blocks.
struct Header {
    const Zep16s* pWindow;
    Zep16s order, nonRecursive, block;  // M, N, L
    Zep16s subBlockOfN, subBlockOfL, subBlockAll;
    Zep16s decayShift;
    Zep16s* work;
};
constexpr int kAlignment = 16, kHeaderBytes = 32;
static_assert(sizeof(Header) == kHeaderBytes);

bool sizesAreValid(Zep32s M, Zep32s N, Zep32s L) {
    return M >= 1 && N >= 1 && L >= 1 && std::int64_t{M} + N + L <= kMaxSamples;
}

Zep16s subBlocks(Zep32s samples, Zep32s div) {
    return static_cast<Zep16s>(div < 1 ? 0 : samples / div);
}

// A state at work.
class Window {
public:
    explicit Window(const Header& h)
        : m_(h.order),
          n_(h.nonRecursive),
          l_(h.block),
          total_(m_ + n_ + l_),
          subBlocks_(h.subBlockAll),
          decayShift_(h.decayShift),
          window_(h.pWindow),
          recursive_(h.work),
          history_(h.work + m_ + 2) {}

    void takeSamples(const Zep16s* pSrc) { shiftIn(history_, total_, pSrc, l_); }

    // The exponents behind the samples.
    void takeExponents(const Zep16s* pSrc) {
        shiftIn(history_ + total_, subBlocks_, pSrc + l_, l_ / samplesPerExponent());
    }

    bool hasExponents() const { return subBlocks_ > 0; }

    // All samples share a scale, found here.
    void windowPlain() {
        Extremes e;
        for (int k = 0; k < total_; ++k) e.take(history_[k]);
        const int q = normShift(e.peak(), 15);
        for (int k = 0; k < total_; ++k) windowed_[k] = round16(shiftLeftSat32(weighted(k), q));
        exponent_ = 2 * q;
    }

    void windowBlocks() {
        const Zep16s* const exponents = history_ + total_;
        int q = exponents[0];
        for (int j = 1; j < subBlocks_; ++j)
            if (exponents[j] < q) q = exponents[j];
        const int div = samplesPerExponent();
        for (int k = 0; k < total_; ++k) {
            const int j = k / div < subBlocks_ ? k / div : subBlocks_ - 1;
            windowed_[k] = round16(shiftLeftSat32(weighted(k), q + 1 - exponents[j]));
        }
        exponent_ = 2 * q;
    }

    ZepStatus update(Zep16s* pDst) {
        const int a = exponent_, e = recursive_[m_ + 1];
        const Meeting first = meet(e, a);
        const std::int64_t v0 = recursivePart(0, first);
        const int n = normShift(v0, 32), e1 = first.exponent + n - 1;
        const Meeting second = meet(e1, a);
        recursive_[0] = round16(shiftLeftSat32(v0, n));
        std::int64_t s0 = sum(0, second);
        s0 = sat32(s0 + (s0 >> 8));  // white noise correction
        const int n2 = normShift(s0, 32);
        put(round16(shiftLeftSat32(s0, n2)), pDst);
        std::int32_t last = 0;
        for (int i = 1; i <= m_; ++i) {
            recursive_[i] = round16(shiftLeftSat32(recursivePart(i, first), n));
            last = shiftLeftSat32(sum(i, second), n2);
            put(round16(last), pDst + i);
        }
        recursive_[m_ + 1] = sat16(e1 < kMaxExponent ? e1 : kMaxExponent);
        return last == 0 ? zepStsUnderflow : zepStsNoErr;
    }

private:
    // How a sum of the one exponent and a sum of the other come together.
    struct Meeting {
        int exponent, keptShift, newShift;
    };
    static Meeting meet(int kept, int fresh) {
        return kept > fresh ? Meeting{fresh, clip(1 + kept - fresh), 1}
                            : Meeting{kept, 1, clip(1 + fresh - kept)};
    }
    static int clip(int shift) { return shift < 31 ? shift : 31; }

    int samplesPerExponent() const { return total_ / subBlocks_; }

    static void shiftIn(Zep16s* to, int size, const Zep16s* from, int count) {
        std::memmove(to, to + count, bytes(size - count));
        std::memcpy(to + size - count, from, bytes(count));
    }
    static std::size_t bytes(int words) { return static_cast<std::size_t>(words) * sizeof(Zep16s); }

    std::int32_t weighted(int k) const {
        return history_[k] * fetch<Zep16s>(window_ + (total_ - 1 - k));
    }

    std::int64_t lag(int i, int from, int count) const {
        std::int64_t sum = 0;
        for (int k = from; k < from + count; ++k) sum += windowed_[k] * windowed_[k - i];
        return sum;
    }

    std::int64_t recursivePart(int i, const Meeting& m) const {
        const std::int64_t r = recursive_[i];
        const std::int64_t decayed = r * 65536 - r * (std::int64_t{1} << decayShift_);
        return (decayed >> m.keptShift) + (lag(i, m_, l_) >> m.newShift);
    }

    std::int64_t sum(int i, const Meeting& m) const {
        const std::int64_t r = recursive_[i];
        return (r * 65536 >> m.keptShift) + (lag(i, m_ + l_, n_) >> m.newShift);
    }

    int m_, n_, l_, total_, subBlocks_, decayShift_;
    const Zep16s* window_;
    Zep16s* recursive_;  // M + 1 components, then their exponent
    Zep16s* history_;
    int exponent_ = 0;  // of products of windowed samples
    Zep16s windowed_[kMaxSamples];
};

}  // namespace

ZepStatus zepsWinHybridGetStateSize_G728_16s(Zep32s M, Zep32s N, Zep32s L, Zep32s div,
                                             Zep32u* pSize) {
    if (pSize == nullptr) return zepStsNullPtrErr;
    if (!sizesAreValid(M, N, L)) return zepStsSizeErr;
    const int words = 2 * M + N + L + 2 + subBlocks(M + N + L, div);
    return reportSize(pSize, kHeaderBytes + 2 * words + kAlignment);
}

ZepStatus zepsWinHybridInit_G728_16s(const Zep16s* pWindow, Zep32s M, Zep32s N, Zep32s L,
                                     Zep32s div, Zep16s decay, ZepWinHybridState* pState) {
    if (anyNull(pWindow, pState)) return zepStsNullPtrErr;
    if (!sizesAreValid(M, N, L)) return zepStsSizeErr;
    const auto narrow = [](Zep32s v) { return static_cast<Zep16s>(v); };
    const auto address = reinterpret_cast<std::uintptr_t>(pState) + kHeaderBytes;
    auto* const work =
        reinterpret_cast<Zep16s*>((address + (kAlignment - 1)) & ~std::uintptr_t{kAlignment - 1});
    const Header h{pWindow,
                   narrow(M),
                   narrow(N),
                   narrow(L),
                   subBlocks(N, div),
                   subBlocks(L + M, div),
                   subBlocks(M + N + L, div),
                   narrow(decay == 0x3000   ? 14
                          : decay == 0x2000 ? 15
                                            : 0),
                   work};
    put(h, pState);
    zepsZero_16s(work, 2 * M + N + L + 2);
    work[M + 1] = 31;  // the exponent of zero
    if (h.subBlockAll > 0) zepsSet_16s(16, work + 2 * M + N + L + 2, h.subBlockAll);
    return zepStsNoErr;
}

ZepStatus zepsWinHybrid_G728_16s(Zep32s, const Zep16s* pSrc, Zep16s* pDst,
                                 ZepWinHybridState* pState) {
    if (anyNull(pSrc, pDst, pState)) return zepStsNullPtrErr;
    Window w(fetch<Header>(pState));
    w.takeSamples(pSrc);
    w.windowPlain();
    return w.update(pDst);
}

ZepStatus zepsWinHybridBlock_G728_16s(Zep32s, const Zep16s* pSrc, Zep16s* pDst,
                                      ZepWinHybridState* pState) {
    if (anyNull(pSrc, pDst, pState)) return zepStsNullPtrErr;
    Window w(fetch<Header>(pState));
    w.takeSamples(pSrc);
    if (w.hasExponents()) {
        w.takeExponents(pSrc);
        w.windowBlocks();
    } else {
        w.windowPlain();
    }
    return w.update(pDst);
}

}  // namespace zep::ZEP_VARIANT
