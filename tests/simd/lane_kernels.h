// The vector operations of each variant behind plain functions on arrays, so that one test program
// compares all levels' forms with scalar code.
#pragma once

#include "core/columns.def"

namespace zep::test {

enum class LaneOp {
    Add,
    Sub,
    Mul,
    Div,
    AddScalar,
    SubScalar,
    MulScalar,
    And,
    Or,
    Xor,
    Negate,
    ClearBits,
    Abs,
    Sqrt,
    Min,
    Max,
    SelectLess,
    KeepLess,
    DupEven,
    DupOdd,
    SwapPairs,
    SubAdd,
    ComplexMul,
    LanesFromFirst,
    LanesFromMiddle,
    BroadcastPair,
    Zero,
    AlignedCopy,
    StreamCopy,
    Count,
};

enum class LaneCompare {
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    IsNan,
    EitherNan,
    Both,
    Either,
    Not,
    Count,
};

// One width of one element type. Arrays hold lanes elements and are aligned to the vector.
template <class T>
struct LaneKernels {
    int lanes;
    void (*apply)(LaneOp op, const T* a, const T* b, const T* c, T* out);
    // Bit n for lane n; Both, Either and Not combine a < b and b <= c.
    unsigned (*compare)(LaneCompare op, const T* a, const T* b, const T* c);
    bool (*anyEqual)(const T* a, const T* b);
    bool (*allEqual)(const T* a, const T* b);
    void (*loadPartial)(const T* in, int n, T* out);
    void (*loadPartialFill)(const T* in, int n, T fill, T* out);
    void (*storePartial)(const T* in, int n, T* out);
    void (*firstMask)(int n, T* out);  // 1 in the lanes before n, else 0
    // The even and odd elements of a followed by b, in the width's order, and both put back.
    void (*splitPairs)(const T* a, const T* b, T* even, T* odd, T* lower, T* upper);
    // n pairs: the split parts, and the pairs put back.
    void (*complexPartial)(const T* in, int n, T fill, T* re, T* im, T* out);
};

template <class T>
struct LaneWidths {
    LaneKernels<T> narrow, native;
};

struct VariantLanes {
    LaneWidths<float> floats;
    LaneWidths<double> doubles;
    void (*reciprocal)(const float* in, float* out, int len);  // len a multiple of all widths
    void (*rsqrt)(const float* in, float* out, int len);
};

}  // namespace zep::test

#define ZEP_DECLARE(arg, slot, column, ...)       \
    namespace zep::column {                       \
    extern const test::VariantLanes variantLanes; \
    }
ZEP_COLUMNS(ZEP_DECLARE, )
#undef ZEP_DECLARE
