// The operations of integer vectors, and the conversions between types, behind plain functions on
// arrays: what lane_kernels.h is for floating lanes.
#pragma once

#include <cstdint>
#include <tuple>

#include "core/columns.h"

namespace zep::test {

enum class IntOp {
    Add,
    Sub,
    Mul,
    Negate,
    And,
    Or,
    Xor,
    Not,
    ClearBits,
    Min,
    Max,
    SelectLess,
    KeepEqual,
    Reverse,
    DupEven,
    DupOdd,
    SwapPairs,
    InterleaveFront,
    InterleaveBack,
    AllEvens,
    AllOdds,
    Broadcast,
    BroadcastPair,
    AddSaturated,  // up to 16 bits
    SubSaturated,
    Abs,  // signed
    Count,
};

enum class IntReduction { Add, Min, Max, First, Count };

// One width of one element type.
template <class T>
struct IntKernels {
    int lanes;
    bool (*apply)(IntOp op, const T* a, const T* b, T* out);  // false where T has no such operation
    void (*shift)(const T* a, int count, T* left, T* right);  // from 16 bits on
    // Bit n for lane n, of ==, !=, <, <=.
    void (*compare)(const T* a, const T* b, std::uint64_t (&bits)[4]);
    T (*reduce)(IntReduction op, const T* a);
    void (*loadPartial)(const T* in, int n, T fill, T* zeroed, T* filled);
    void (*storePartial)(const T* in, int n, T* out);
    bool (*anyAllNone)(std::uint64_t lanes, bool& any, bool& all);  // returns none
};

template <class T>
struct IntWidths {
    IntKernels<T> narrow, native;
};

struct VariantInts {
    std::tuple<IntWidths<std::int8_t>, IntWidths<std::uint8_t>, IntWidths<std::int16_t>,
               IntWidths<std::uint16_t>, IntWidths<std::int32_t>, IntWidths<std::uint32_t>,
               IntWidths<std::int64_t>, IntWidths<std::uint64_t>>
        types;
};

}  // namespace zep::test

#define ZEP_DECLARE(arg, slot, column, ...)     \
    namespace zep::column {                     \
    extern const test::VariantInts variantInts; \
    }
ZEP_COLUMNS(ZEP_DECLARE, )
#undef ZEP_DECLARE
