// The object of a transform of any length: which route it takes, and that route's tables. Each table
// is an allocation of its own; the object owns them all.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/variant_exports.h"

namespace zep {

enum class DftKind : std::int32_t { Complex = 13, Real = 15, ComplexDouble = 16 };

// One pass of the mixed-radix route: joins radix transforms of subLength points.
template <class T>
struct DftFactor {
    std::int32_t radix;
    std::int32_t subLength;
    std::int32_t stride;  // product of the radices of all earlier records
    std::int32_t
        blockCount;  // blocks of radix * subLength that fit together into the nearest cache
    T* oddTable;     // of a radix without code of its own; may be the previous record's
    T* twiddles;
};

// Plain data, the same in all variants; the tables are laid out for the vectors of the variant that
// built them.
template <class T>
struct DftObject {
    std::int32_t magic;  // DftKind; 0 once released
    std::int32_t len;
    std::int32_t scaleForward;
    std::int32_t scaleInverse;
    T scale;
    std::int32_t hint;
    std::int32_t workSize;  // bytes of scratch, slack for its alignment included
    std::int32_t usesFFT;
    std::int32_t realOdd;
    std::int32_t convLen;
    T* directTable;
    T* foldTwiddles;
    T* unfoldTwiddles;
    T* chirp;
    T* chirpSpectrum;
    void* fftSpec;
    DftObject* convSpec;
    std::int32_t mixedRadix;
    std::int32_t lastFactor;  // index of the last pass; its subLength is the first stage's
    // The order of the digits: radices of the passes as they run, which join small factors of the
    // records, then 0. The tables of the passes stand in the records from the last one down.
    std::int32_t* digitPermutation;
    DftFactor<T> factors[20];
};

}  // namespace zep

struct DFTSpecC32fc : zep::DftObject<float> {};
struct DFTSpecR32f : zep::DftObject<float> {};
struct DFTSpecC64fc : zep::DftObject<double> {};
