// Square tiles of a matrix, transposed on their way through registers: as many rows and columns as V
// has lanes.
//
// A register collects 16-byte pieces, of rows Q apart where a piece has Q elements: what stands in
// its j-th 16 bytes ends in the j-th 16 bytes of a row of the result. What remains is to transpose Q
// by Q elements within each 16 bytes, by dealing log2(Q) times.
#pragma once

#include <cstddef>

#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::simd {

// A matrix with rows of neighbouring elements, `stride` bytes apart.
template <class T>
struct Rows {
    T* first;
    std::ptrdiff_t stride;

    [[gnu::always_inline]] T* at(std::ptrdiff_t row, std::ptrdiff_t column) const {
        using Byte = std::conditional_t<std::is_const_v<T>, const char, char>;
        return reinterpret_cast<T*>(reinterpret_cast<Byte*>(first) + row * stride) + column;
    }
    [[gnu::always_inline]] Rows from(std::ptrdiff_t row, std::ptrdiff_t column) const {
        return {at(row, column), stride};
    }
};

namespace detail {

// The matrix from a row on, its address being made here: left to itself the compiler keeps every
// multiple of the stride, and spills them.
template <class T>
[[gnu::always_inline]] inline Rows<T> startingAt(Rows<T> m, std::ptrdiff_t row) {
    return {madeHere(m.at(row, 0)), m.stride};
}

// Pieces from `column` on of row `row` of parts[first], parts[first + 1] ...
template <class V, int first, class T>
[[gnu::always_inline]] inline V collect(const Rows<const T>* parts, std::ptrdiff_t row,
                                        std::ptrdiff_t column) {
    if constexpr (V::bytes == 16) {
        return V::load(parts[first].at(row, column));
    } else {
        using H = Vec<T, V::lanes / 2>;
        return join(collect<H, first>(parts, row, column),
                    collect<H, first + V::bytes / 32>(parts, row, column));
    }
}

template <class V>
struct Four {
    V a, b, c, d;
    [[gnu::always_inline]] Four deal() const {
        return {zipLow(a, c), zipHigh(a, c), zipLow(b, d), zipHigh(b, d)};
    }
};

}  // namespace detail

namespace detail {

// Q registers of pieces into Q rows of the result.
template <class V, class T, class Put>
[[gnu::always_inline]] inline void finishRows(const V* x, Rows<T> dst, Put put) {
    if constexpr (sizeof(typename V::Scalar) == 4) {
        const auto y = Four<V>{x[0], x[1], x[2], x[3]}.deal().deal();
        put(y.a, dst.at(0, 0));
        put(y.b, dst.at(1, 0));
        put(y.c, dst.at(2, 0));
        put(y.d, dst.at(3, 0));
    } else {
        put(zipLow(x[0], x[1]), dst.at(0, 0));
        put(zipHigh(x[0], x[1]), dst.at(1, 0));
    }
}

// Four vectors of 64 bytes as a 4 by 4 matrix of 16-byte pieces, transposed.
template <class V>
[[gnu::always_inline]] inline void transposePieces(V& a, V& b, V& c, V& d) {
    using P = Vec<double, 8>;  // a piece is two of them
    const auto lower = [](P x, P y) {
        return shuffle(x, y, [](int k) { return k < 4 ? k : k + 4; });
    };
    const auto upper = [](P x, P y) {
        return shuffle(x, y, [](int k) { return k < 4 ? k + 4 : k + 8; });
    };
    const auto even = [](P x, P y) {
        return shuffle(x, y, [](int k) { return k / 2 * 4 + k % 2; });
    };
    const auto odd = [](P x, P y) {
        return shuffle(x, y, [](int k) { return k / 2 * 4 + k % 2 + 2; });
    };
    const P pa = bitsIn<double>(a), pb = bitsIn<double>(b);
    const P pc = bitsIn<double>(c), pd = bitsIn<double>(d);
    const P abLow = lower(pa, pb), cdLow = lower(pc, pd);
    const P abHigh = upper(pa, pb), cdHigh = upper(pc, pd);
    using T = typename V::Scalar;
    a = bitsIn<T>(even(abLow, cdLow)), b = bitsIn<T>(odd(abLow, cdLow));
    c = bitsIn<T>(even(abHigh, cdHigh)), d = bitsIn<T>(odd(abHigh, cdHigh));
}

}  // namespace detail

// The first 16 bytes of as many rows as V has lanes, into as many rows of one vector as there are
// elements in them. put(vector, address) stores a row of the result.
template <class V, class T, class To, class Put>
[[gnu::always_inline]] inline void transposeStrip(Rows<const T> src, Rows<To> dst, Put put) {
    constexpr int Q = 16 / int{sizeof(T)}, kPieces = V::bytes / 16;
    Rows<const T> parts[kPieces];
    unroll<kPieces>([&](auto k) __attribute__((always_inline)) {
        parts[k] = detail::startingAt(src, k * Q);
    });
    V x[Q];
    unroll<Q>([&](auto row) __attribute__((always_inline)) {
        x[row] = detail::collect<V, 0>(parts, row, 0);
    });
    detail::finishRows(x, dst, put);
}

// put(vector, address) stores a row of the result.
template <class V, class T, class Put>
[[gnu::always_inline]] inline void transposeTile(Rows<const T> src, Rows<T> dst, Put put) {
    constexpr int Q = 16 / int{sizeof(T)}, kPieces = V::bytes / 16;
    Rows<const T> parts[kPieces];
    unroll<kPieces>([&](auto k) __attribute__((always_inline)) {
        parts[k] = detail::startingAt(src, k * Q);
    });
    const auto finish = [&](auto group, const V* x) __attribute__((always_inline)) {
        detail::finishRows(x, detail::startingAt(dst, group * Q), put);
    };
    if constexpr (V::bytes == 64) {
        // Rows are loaded whole: four times as many loads of pieces would take longer than shuffles.
        V x[4][Q];
        unroll<Q>([&](auto row) __attribute__((always_inline)) {
            unroll<4>([&](auto piece) __attribute__((always_inline)) {
                x[piece][row] = V::load(parts[piece].at(row, 0));
            });
            detail::transposePieces(x[0][row], x[1][row], x[2][row], x[3][row]);
        });
        unroll<4>([&](auto group) __attribute__((always_inline)) { finish(group, x[group]); });
    } else {
        unroll<V::lanes / Q>([&](auto group) __attribute__((always_inline)) {
            V x[Q];
            unroll<Q>([&](auto row) __attribute__((always_inline)) {
                x[row] = detail::collect<V, 0>(parts, row, group * Q);
            });
            finish(group, x);
        });
    }
}

}  // namespace zep::ZEP_VARIANT::simd
