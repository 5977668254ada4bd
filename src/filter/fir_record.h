// The record of every FIR filter: kinds, fields, and how one block of memory is divided among its
// arrays.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/variant_exports.h"
#include "simd/vec.h"

namespace zep {

// What a state filters; every operation tests it first.
enum FirKinds : std::uint32_t {
    idFIRMR_32f = 0x46493033,
    idFIRMR_32fc = 0x46493034,
    idFIR64f_32f = 0x46493137,
    idFIRMR64f_32f = 0x46493139,
};

}  // namespace zep

// The arrays hold samples or taps of the kind's own types. Plain data; the tables are laid out for
// the vectors of the variant that built them.
struct ZepFIRState {
    std::uint32_t idFIR;
    void* pTapsRev;        // pTapsRev[i] = tap L-1-i
    void* pDlyLine;        // dlyLineLen past samples, oldest first, and room for new ones
    std::int32_t tapsLen;  // L
    std::int32_t upFactor;
    std::int32_t splitCount;  // inputs that pass through the delay line at the start of a long call
    std::int32_t downFactor;
    std::int32_t headOutputs;  // outputs made from the delay line in a long call
    void* pFFTSpec;            // null: no FFT path
    void* pFFTTaps;
    std::int32_t fftLen;  // -1: no FFT path
    std::int32_t dlyLineIndex;
    std::int32_t* pPhaseTable;  // first position of each group or row
    void* pTapsTable;           // taps in the order in which the sums read them
    std::int32_t rowLen;        // lines of a group, or taps of a row
    std::int32_t kernelKind;
    std::int32_t dlyLineLen;
    void* pFFTBuf;
    Zep8u* pFFTWork;
    std::int32_t fftWorkSize;
    void* pBlockBuf;
    std::int32_t ownsMemory;
    std::int32_t upPhase;
    std::int32_t downPhase;
    std::int32_t groups;         // groups of a period; 0: one row per output
    void* pSorted;               // inputs by their place in a period; null: they are not sorted
    std::int32_t sortedLen;      // elements of each place
    std::int32_t sortedOutputs;  // made from them
    void* pConvolver;            // single rate: null where the transform object does the blocks
    void* pSecondBuf;            // a second buffer of fftLen samples
};

namespace zep::ZEP_VARIANT::filter {

// Counts the bytes of a block, each array on a cache line; the block begins on one too.
class BlockPlan {
public:
    // Offset of an array of this many elements; its bytes stay clear of any overflow, since a
    // block that no allocator could give is refused before it is used.
    std::size_t add(std::size_t count, std::size_t elementBytes) {
        const std::size_t at = bytes_;
        if (count > kMost / elementBytes)
            tooLarge_ = true;
        else
            bytes_ += (count * elementBytes + 63) & ~std::size_t{63};
        if (bytes_ > kMost) tooLarge_ = true;
        return at;
    }
    // Zeroed; null if memory is short.
    char* allocate() const {
        if (tooLarge_) return nullptr;
        auto* block = reinterpret_cast<char*>(zepsMalloc_8u(static_cast<int>(bytes_)));
        if (block != nullptr) __builtin_memset(block, 0, bytes_);
        return block;
    }

private:
    static constexpr std::size_t kMost = 0x7FFFFF00;
    std::size_t bytes_ = (sizeof(ZepFIRState) + 63) & ~std::size_t{63};
    bool tooLarge_ = false;
};

// For arrays that mostly are a few vectors. `to` may overlap what stands behind it.
template <class T>
[[gnu::always_inline]] inline void copyFew(T* to, const T* from, std::ptrdiff_t n) {
    using V = simd::Native<T>;
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= n; i += V::lanes) V::load(from + i).store(to + i);
    if (i < n)
        V::loadPartial(from + i, static_cast<int>(n - i))
            .storePartial(to + i, static_cast<int>(n - i));
}

// The caller's delay line has its newest sample first, the state's its oldest.
template <int kParts, class To, class From>
inline void storeReversed(To* to, const From* from, std::ptrdiff_t len) {
    for (std::ptrdiff_t n = 0; n < len; ++n)
        for (int part = 0; part < kParts; ++part)
            to[kParts * n + part] =
                static_cast<To>(simd::readAny(from + kParts * (len - 1 - n) + part));
}

}  // namespace zep::ZEP_VARIANT::filter
