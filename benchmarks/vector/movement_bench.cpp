// Movement, fills and bit operations beside the C library and plain loops. Sizes of copy, zero, set
// and move are bytes, of copy_1u bits, of the others elements (interleave: of the result).
#include <cstring>

#include "support/buffers.h"
#include "support/rows.h"
#include "vector/movement_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kCallSizes[] = {4, 16, 28, 64, 124};
constexpr int kByteSizes[] = {256,    1024,    4096,    16384,    65536,
                              262144, 1 << 20, 4 << 20, 16 << 20, 64 << 20};
constexpr int kSizes[] = {64, 1024, 16384, 1 << 20};

// Runs f(x, y, size): x and y hold capacity elements of random bytes.
template <class T, class F>
Body onTwo(int size, F f) {
    return [size, f](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<T> x(n + 64), y(n + 64);
        std::memset(x.data(), 0x35, (n + 64) * sizeof(T));
        std::memset(y.data(), 0x53, (n + 64) * sizeof(T));
        for (auto _ : state) {
            f(x.data(), y.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

template <class T>
void addFamily(const char* family, const auto& sizes, auto ours, const char* peer, auto theirs) {
    for (const int size : sizes) {
        addOurs(family, size, onTwo<T>(size, ours));
        addPeer(family, peer, size, onTwo<T>(size, theirs));
    }
}

// theirs(peers, x, y, n) runs a function of the table.
template <class T>
void addLoopFamily(const char* family, const auto& sizes, auto ours, auto theirs) {
    for (const int size : sizes) {
        addOurs(family, size, onTwo<T>(size, ours));
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(movementLoops)))
            addPeer(family, "loop-" + level, size,
                    onTwo<T>(size, [=, peers = peers](auto... x) { theirs(*peers, x...); }));
    }
}

// Inlined into the row, like the call of ours: memcpy itself is called, since n is not known.
constexpr auto copyBytes = [](const Zep8u* x, Zep8u* y, int n) {
    std::memcpy(y, x, static_cast<std::size_t>(n));
    benchmark::DoNotOptimize(y);
};

void registerMemory() {
    constexpr auto copy = [](auto x, auto y, int n) { zepsCopy_8u(x, y, n); };
    addFamily<Zep8u>("call_copy_8u", kCallSizes, copy, "memcpy", copyBytes);
    addFamily<Zep8u>("copy_8u", kByteSizes, copy, "memcpy", copyBytes);
    // The source two bytes off the destination's line.
    addFamily<Zep8u>(
        "copy_8u_skewed", kByteSizes, [](auto x, auto y, int n) { zepsCopy_8u(x + 2, y, n); },
        "memcpy", [](auto x, auto y, int n) { copyBytes(x + 2, y, n); });
    constexpr auto zero = [](auto, auto y, int n) { zepsZero_8u(y, n); };
    constexpr auto clear = [](auto, auto y, int n) {
        std::memset(y, 0, static_cast<std::size_t>(n));
    };
    addFamily<Zep8u>("call_zero_8u", kCallSizes, zero, "memset", clear);
    addFamily<Zep8u>("zero_8u", kByteSizes, zero, "memset", clear);
    constexpr auto set = [](auto, auto y, int n) {
        zepsSet_32f(1.25f, reinterpret_cast<Zep32f*>(y), n / 4);
    };
    constexpr auto setLoop = [](auto& p, auto, auto y, int n) {
        p.set(1.25f, reinterpret_cast<Zep32f*>(y), n / 4);
    };
    addLoopFamily<Zep8u>("set_32f", kByteSizes, set, setLoop);
    addLoopFamily<Zep8u>(
        "set_64s", kByteSizes,
        [](auto, auto y, int n) { zepsSet_64s(77, reinterpret_cast<Zep64s*>(y), n / 8); },
        [](auto& p, auto, auto y, int n) { p.set64(77, reinterpret_cast<Zep64s*>(y), n / 8); });
    constexpr int kMoveSizes[] = {64, 1024, 4096, 16384, 65536, 262144, 1 << 20};
    addFamily<Zep8u>(
        "move_up16", kMoveSizes, [](auto x, auto, int n) { zepsMove_8u(x, x + 16, n); }, "memmove",
        [](auto x, auto, int n) { std::memmove(x + 16, x, static_cast<std::size_t>(n)); });
    addFamily<Zep8u>(
        "move_down16", kMoveSizes, [](auto x, auto, int n) { zepsMove_8u(x + 16, x, n); },
        "memmove",
        [](auto x, auto, int n) { std::memmove(x, x + 16, static_cast<std::size_t>(n)); });
}

template <class T>
void addInterleave(const char* family, int ch, auto ours, auto theirs) {
    for (const int size : kSizes) {
        const auto row = [=](auto f) {
            return onTwo<T>(size, [=](T* x, T* y, int n) {
                const T* src[64];
                for (int c = 0; c < ch; ++c) src[c] = x + c * (n / ch);
                f(src, ch, n / ch, y);
            });
        };
        addOurs(family, size, row(ours));
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(movementLoops)))
            addPeer(family, "loop-" + level, size,
                    row([=, peers = peers](auto... x) { theirs(*peers, x...); }));
    }
}

void registerReordering() {
    addLoopFamily<Zep32f>(
        "flip_32f", kSizes, [](auto x, auto y, int n) { zepsFlip_32f(x, y, n); },
        [](auto& p, auto... x) { p.flip(x...); });
    addLoopFamily<Zep64f>(
        "flip_64f", kSizes, [](auto x, auto y, int n) { zepsFlip_64f(x, y, n); },
        [](auto& p, auto... x) { p.flipDouble(x...); });
    addLoopFamily<Zep32f>(
        "flip_32f_I", kSizes, [](auto x, auto, int n) { zepsFlip_32f_I(x, n); },
        [](auto& p, auto x, auto, int n) { p.flipInPlace(x, n); });
    addLoopFamily<Zep8u>(
        "flip_8u_I", kSizes, [](auto x, auto, int n) { zepsFlip_8u_I(x, n); },
        [](auto& p, auto x, auto, int n) { p.flipBytes(x, n); });
    addLoopFamily<Zep16u>(
        "swapbytes_16u_I", kSizes, [](auto x, auto, int n) { zepsSwapBytes_16u_I(x, n); },
        [](auto& p, auto x, auto, int n) { p.swapBytes16(x, n); });
    addLoopFamily<Zep32u>(
        "swapbytes_32u_I", kSizes, [](auto x, auto, int n) { zepsSwapBytes_32u_I(x, n); },
        [](auto& p, auto x, auto, int n) { p.swapBytes32(x, n); });
    addLoopFamily<Zep64u>(
        "swapbytes_64u_I", kSizes, [](auto x, auto, int n) { zepsSwapBytes_64u_I(x, n); },
        [](auto& p, auto x, auto, int n) { p.swapBytes64(x, n); });

    constexpr auto ours32f = [](auto src, int ch, int n, auto y) {
        zepsInterleave_32f(src, ch, n, y);
    };
    constexpr auto ours16s = [](auto src, int ch, int n, auto y) {
        zepsInterleave_16s(src, ch, n, y);
    };
    addInterleave<Zep32f>("interleave_32f_x2", 2, ours32f,
                          [](auto& p, auto src, int, int n, auto y) { p.interleave2(src, n, y); });
    addInterleave<Zep16s>(
        "interleave_16s_x2", 2, ours16s,
        [](auto& p, auto src, int, int n, auto y) { p.interleave2Short(src, n, y); });
    addInterleave<Zep32f>("interleave_32f_x6", 6, ours32f,
                          [](auto& p, auto... x) { p.interleave(x...); });
    addInterleave<Zep32f>("interleave_32f_x8", 8, ours32f,
                          [](auto& p, auto... x) { p.interleave(x...); });
    addInterleave<Zep16s>("interleave_16s_x8", 8, ours16s,
                          [](auto& p, auto... x) { p.interleaveShort(x...); });
    addInterleave<Zep32f>("interleave_32f_x64", 64, ours32f,
                          [](auto& p, auto... x) { p.interleave(x...); });
}

void registerBits() {
    addLoopFamily<Zep8u>(
        "xor_8u_I", kSizes, [](auto x, auto y, int n) { zepsXor_8u_I(x, y, n); },
        [](auto& p, auto... x) { p.xorBytes(x...); });
    addLoopFamily<Zep16u>(
        "andc_16u", kSizes, [](auto x, auto y, int n) { zepsAndC_16u(x, 0x5AF1, y, n); },
        [](auto& p, auto x, auto y, int n) { p.andConstant(x, 0x5AF1, y, n); });
    addLoopFamily<Zep32u>(
        "not_32u_I", kSizes, [](auto x, auto, int n) { zepsNot_32u_I(x, n); },
        [](auto& p, auto x, auto, int n) { p.complement(x, n); });
    addLoopFamily<Zep32s>(
        "lshiftc_32s", kSizes, [](auto x, auto y, int n) { zepsLShiftC_32s(x, 5, y, n); },
        [](auto& p, auto x, auto y, int n) { p.shiftLeft(x, 5, y, n); });
    constexpr int kBitSizes[] = {512, 8192, 131072, 1 << 23};
    for (const int bits : kBitSizes) {
        addOurs("copy_1u", bits, onTwo<Zep8u>(bits / 8, [](auto x, auto y, int n) {
                    zepsCopy_1u(x, 3, y, 0, 8 * n);
                }));
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(movementLoops)))
            addPeer("copy_1u", "loop-" + level, bits,
                    onTwo<Zep8u>(bits / 8, [peers = peers](auto x, auto y, int n) {
                        peers->copyBits(x, 3, y, n);
                    }));
    }
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerMemory();
    zep::bench::registerReordering();
    zep::bench::registerBits();
    return zep::bench::runAll(argc, argv);
}
