// Partition of an array in place around a pivot, by whole vectors.
//
// kAtOnce vectors are taken from either end into registers; their places are the free room that the
// loop starts with. Each step reads from the side that has less room left before the writes catch
// up, so that afterwards both sides have room for all it has read, whichever side that goes to: the
// room of both sides is 2 * kAtOnce vectors at each step, the reading side gains kAtOnce and the
// other one has at least half of it all. Within a step one vector's room remains on either side
// until the last store, and storePartitioned may write whole vectors.
//
// What does not fill a vector stays aside until the sides have met, and then the vectors of the
// beginning fill the room that is left, which is a whole number of them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "simd/partition_store.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

class Partition {
    using T = std::int32_t;
    using V = simd::Native<T>;
    static constexpr int kLanes = V::lanes;
    static constexpr int kAtOnce = kLanes >= 16 ? 8 : 4;
    static constexpr std::ptrdiff_t kStep = kAtOnce * kLanes;

public:
    static constexpr std::ptrdiff_t kLeast = 2 * kStep;

    // Puts the elements not above the pivot before the others and returns how many they are; len >=
    // kLeast.
    [[gnu::noinline]] static std::ptrdiff_t run(T* p, std::ptrdiff_t len, T pivot) {
        return Partition(p, len, pivot).split();
    }

private:
    Partition(T* p, std::ptrdiff_t len, T pivot)
        : start_(p), rightEnd_(p + len), room_(len), len_(len), pivots_(V::broadcast(pivot)) {}

    // Where the next element not above the pivot goes.
    T* left() const { return rightEnd_ - room_; }

    [[gnu::always_inline]] void put(V x) {
        rightEnd_ -= simd::storePartitioned(x, x > pivots_, left(), rightEnd_);
        room_ -= kLanes;
    }

    // Without a branch: which side it is cannot be foreseen.
    template <int kVectors>
    [[gnu::always_inline]] void step(T*& unread, T*& unreadEnd) {
        constexpr std::ptrdiff_t n = kVectors * kLanes;
        const std::ptrdiff_t roomLeft = unread - left(), roomRight = rightEnd_ - unreadEnd;
        const std::ptrdiff_t fromLeft = roomLeft <= roomRight ? -1 : 0;
        const T* from = unread + (~fromLeft & (unreadEnd - n - unread));
        unread += fromLeft & n;
        unreadEnd -= ~fromLeft & n;
        V x[kVectors];
        simd::unroll<kVectors>([&](auto k) { x[k] = V::load(from + k * kLanes); });
        simd::unroll<kVectors>([&](auto k) { put(x[k]); });
    }

    [[gnu::always_inline]] std::ptrdiff_t split() {
        const auto rest = static_cast<int>(len_ % kLanes);
        T* unread = start_ + kStep;
        T* unreadEnd = start_ + len_ - rest - kStep;
        V first[kAtOnce], last[kAtOnce];
        simd::unroll<kAtOnce>([&](auto k) {
            first[k] = V::load(start_ + k * kLanes);
            last[k] = V::load(unreadEnd + k * kLanes);
        });
        const V aside = V::loadPartial(unreadEnd + kStep, rest);

        while (unreadEnd - unread >= kStep) step<kAtOnce>(unread, unreadEnd);
        while (unread != unreadEnd) step<1>(unread, unreadEnd);
        rightEnd_ -= simd::storePartitioned(aside, rest, aside > pivots_, left(), rightEnd_);
        room_ -= rest;
        simd::unroll<kAtOnce>([&](auto k) {
            put(first[k]);
            put(last[k]);
        });
        return left() - start_;
    }

    T* start_;
    T* rightEnd_;          // behind where the next element above the pivot goes
    std::ptrdiff_t room_;  // elements not written yet
    std::ptrdiff_t len_;
    V pivots_;
};

}  // namespace zep::ZEP_VARIANT
