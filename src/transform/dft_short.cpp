// Vectors of the first pass run over the groups, those of the second one over the bins; a
// transposition in registers is between them. What the second pass loads is what the first one
// stored, so neither waits for the other's stores.
#include "transform/dft_short.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

// Elements of a row of bins.
template <class T>
constexpr int pitchOf(int s) {
    constexpr int L = ShortVector<T>::lanes;
    return static_cast<int>(vectorsOf(s, L)) * L;
}

constexpr int roundedUp(int n, int powerOfTwo) {
    return (n + powerOfTwo - 1) / powerOfTwo * powerOfTwo;
}
constexpr int powerFrom(int n) {
    int p = 1;
    while (p < n) p *= 2;
    return p;
}

// Bins `from` on of each group to its row.
template <int from, int R, class C>
[[gnu::always_inline]] inline void storeBins(const C (&x)[R], typename C::Scalar* rows) {
    constexpr int L = C::lanes, pitch = roundedUp(R, L);
    constexpr int width = R - from < L ? powerFrom(R - from) : L;
    C y[width];
#pragma GCC unroll 16
    for (int k = 0; k < width; ++k) y[k] = x[from + k < R ? from + k : from];
    transposeSquares(y);
    simd::unroll<L>([&](auto group) __attribute__((always_inline)) {
        constexpr int first = group / width * width;
        simd::shiftedDown<first, width>(y[group % width])
            .storeAligned(rows + 2 * (from + group * pitch));
    });
    if constexpr (from + L < R) storeBins<from + L>(x, rows);
}

// Point k of a group is at in + 2 * k * groups; step is that of the points as they are read.
template <int R, class T>
void firstPass(const T* in, T* rows, int groups, Direction direction) {
    using C = ShortVector<T>;
    constexpr int L = C::lanes, pitch = roundedUp(R, L);
    const bool forward = direction == Direction::Forward;
    const std::ptrdiff_t step = forward ? 2 * groups : -2 * groups;
    const std::ptrdiff_t end = forward ? 0 : 2 * R * groups;
    for (int g = 0; g < groups; g += L) {
        const T* p = in + 2 * g;
        C x[R];
        const auto load = [&](auto one) __attribute__((always_inline)) {
            x[0] = one(p);
            p += end;
#pragma GCC unroll 16
            for (int k = 1; k < R; ++k) {
                p = simd::madeHere(p + step);
                x[k] = one(p);
            }
        };
        if (groups - g >= L)
            load([](const T* q) __attribute__((always_inline)) { return C::load(q); });
        else
            load([&](const T* q)
                     __attribute__((always_inline)) { return C::loadPartial(q, groups - g); });
        butterfly<Direction::Forward, R>(x);
        storeBins<0>(x, rows + 2 * g * pitch);
    }
}

// Vectors in descending order: one that the columns do not fill reaches into the next row of bins,
// whose first vector is still to come. Only the last row has none behind it.
template <int R, class T>
void secondPass(const T* rows, T* out, int s, Direction direction, const T* factors) {
    using C = ShortVector<T>;
    using Turn = typename C::Turn;
    constexpr int L = C::lanes;
    const std::ptrdiff_t pitch = 2 * pitchOf<T>(s);
    const bool forward = direction == Direction::Forward;
    const std::ptrdiff_t step = forward ? pitch : -pitch;
    const std::ptrdiff_t end = forward ? 0 : R * pitch;
    if (!forward) factors += shortFactorScalars<T>(R, s);
    const auto scale = C::Part::loadAligned(factors);
    for (int v = static_cast<int>(vectorsOf(s, L)) - 1; v >= 0; --v) {
        const T* w = factors + 2 * L + v * (R - 1) * 4 * L;
        const T* p = rows + 2 * v * L;
        C x[R];
        x[0] = C::loadAligned(p) * scale;
        p += end;
#pragma GCC unroll 16
        for (int k = 1; k < R; ++k) {
            p = simd::madeHere(p + step);
            x[k] =
                fft::rotate<Direction::Forward>(C::loadAligned(p), Turn::load(w + (k - 1) * 4 * L));
        }
        butterfly<Direction::Forward, R>(x);
        T* to = out + 2 * v * L;
#pragma GCC unroll 16
        for (int j = 0; j < R - 1; ++j) {
            x[j].store(to);
            to = simd::madeHere(to + 2 * s);
        }
        const int columns = s - v * L;
        if (columns >= L)
            x[R - 1].store(to);
        else
            x[R - 1].storePartial(to, columns);
    }
}

template <class T>
struct Kernels {
    void (*first)(const T*, T*, int, Direction);
    void (*second)(const T*, T*, int, Direction, const T*);
};
template <class T, int... R>
constexpr Kernels<T> kernelOf(int radix, std::integer_sequence<int, R...>) {
    Kernels<T> k{};
    ((R + 2 == radix ? void(k = {firstPass<R + 2, T>, secondPass<R + 2, T>}) : void()), ...);
    return k;
}
template <class T>
struct Table {
    Kernels<T> of[kMaxShortRadix + 1];
};
template <class T>
constexpr Table<T> makeTable() {
    Table<T> t{};
    for (int r = 2; r <= kMaxShortRadix; ++r)
        t.of[r] = kernelOf<T>(r, std::make_integer_sequence<int, kMaxShortRadix - 1>{});
    return t;
}
template <class T>
constexpr Table<T> kTable = makeTable<T>();

}  // namespace

template <class T>
void runShort(const T* src, T* dst, int radix, int s, Direction direction, const T* table) {
    constexpr int L = ShortVector<T>::lanes;
    alignas(64) T rows[2 * roundedUp(kMaxShortRadix, L) * roundedUp(kMaxShortRadix, L)];
    kTable<T>.of[s].first(src, rows, radix, direction);
    kTable<T>.of[radix].second(rows, dst, s, direction, shortFactors(table));
}

template void runShort<float>(const float*, float*, int, int, Direction, const float*);
template void runShort<double>(const double*, double*, int, int, Direction, const double*);

}  // namespace zep::ZEP_VARIANT::dft
