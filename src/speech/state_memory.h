// Access to what the caller keeps: states and vectors at any address, moved as bytes.
#pragma once

#include <cstdint>
#include <cstring>

#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT {

template <class T>
inline T fetch(const void* p) {
    T value;
    std::memcpy(static_cast<void*>(&value), p, sizeof value);
    return value;
}

template <class T>
inline void put(const T& value, void* p) {
    std::memcpy(p, &value, sizeof value);
}

// n words.
template <int n>
struct Words {
    std::int16_t at[n];

    constexpr std::int16_t& operator[](int i) { return at[i]; }
    constexpr std::int16_t operator[](int i) const { return at[i]; }
};
using Vector5 = Words<5>;

// Moves the words of a memory that begins with its newest, and puts v, oldest first, in front.
template <int n>
inline void pushVector(Words<n>& memory, const Vector5& v) {
    for (int i = n - 1; i >= 5; --i) memory[i] = memory[i - 5];
    for (int i = 0; i < 5; ++i) memory[i] = v[4 - i];
}

inline ZepStatus reportSize(Zep32u* pSize, int bytes) {
    if (pSize == nullptr) return zepStsNullPtrErr;
    put(static_cast<Zep32u>(bytes), pSize);
    return zepStsNoErr;
}

inline ZepStatus clearState(void* pState, int bytes) {
    if (pState == nullptr) return zepStsNullPtrErr;
    return zepsZero_8u(static_cast<Zep8u*>(pState), bytes);
}

}  // namespace zep::ZEP_VARIANT
