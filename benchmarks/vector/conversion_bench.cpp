// Sample format conversions beside plain loops and VOLK: families 32f16s, 24s32f ..., over three
// sizes from the first-level cache to the last. Floats are rounded to nearest without a scale.
#include <volk/volk.h>

#include "support/buffers.h"
#include "support/rows.h"
#include "vector/conversion_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {1024, 65536, 1 << 20};

// Runs f(x, y, size) on buffers that live as long as the row. A 24-bit sample is three elements.
template <class S, class D, class F>
Body onSamples(int size, int srcElements, int dstElements, double limit, F f) {
    return [=](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<S> x(n * static_cast<std::size_t>(srcElements));
        AlignedArray<D> y(n * static_cast<std::size_t>(dstElements));
        fillUniform(x, std::is_unsigned_v<S> ? 0.0 : -limit, limit, 1);
        fillUniform(y, 0.0, 1.0, 2);
        for (auto _ : state) {
            f(x.data(), y.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

template <class S, class D>
struct Family {
    const char* name;
    double limit;  // of the samples' magnitude
    int srcElements = 1, dstElements = 1;

    template <class F>
    void ours(F f) const {
        for (const int size : kSizes) addOurs(name, size, body(size, f));
    }
    template <class F>
    void peer(const std::string& peer, F f) const {
        for (const int size : kSizes) addPeer(name, peer, size, body(size, f));
    }
    template <class F>
    Body body(int size, F f) const {
        return onSamples<S, D>(size, srcElements, dstElements, limit, f);
    }
};

// theirs is a function of the peers' table.
template <class S, class D>
void addFamily(const Family<S, D>& family, auto ours, auto theirs) {
    family.ours(ours);
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(conversionLoops)))
        family.peer("loop-" + level, [f = peers->*theirs](const S* x, D* y, int n) {
            if constexpr (requires { f(x, y, n); })
                f(x, y, n);
            else
                f(x, y, n, 1.0f);
        });
}

void registerExact() {
    using Peers = ConversionPeers;
    addFamily<Zep8s, Zep16s>({"8s16s", 127}, zepsConvert_8s16s, &Peers::from8s16s);
    addFamily<Zep8s, Zep32f>({"8s32f", 127}, zepsConvert_8s32f, &Peers::from8s32f);
    addFamily<Zep8u, Zep32f>({"8u32f", 255}, zepsConvert_8u32f, &Peers::from8u32f);
    addFamily<Zep16s, Zep32f>({"16s32f", 32767}, zepsConvert_16s32f, &Peers::from16s32f);
    addFamily<Zep16s, Zep32s>({"16s32s", 32767}, zepsConvert_16s32s, &Peers::from16s32s);
    addFamily<Zep8u, Zep32f>({"24s32f", 255, 3, 1}, zepsConvert_24s32f, &Peers::from24s32f);
    addFamily<Zep32s, Zep16s>({"32s16s", 40000}, zepsConvert_32s16s, &Peers::from32s16s);
    addFamily<Zep32s, Zep32f>({"32s32f", 2.0e9}, zepsConvert_32s32f, &Peers::from32s32f);
    addFamily<Zep32f, Zep64f>({"32f64f", 1}, zepsConvert_32f64f, &Peers::from32f64f);
    addFamily<Zep64f, Zep32f>({"64f32f", 1}, zepsConvert_64f32f, &Peers::from64f32f);
}

void registerRounded() {
    using Peers = ConversionPeers;
    const auto nearest = [](auto f) {
        return [f](auto x, auto y, int n) { f(x, y, n, zepRoundNearest, 0); };
    };
    addFamily<Zep32f, Zep8s>({"32f8s", 130}, nearest(zepsConvert_32f8s_Sfs), &Peers::from32f8s);
    addFamily<Zep32f, Zep16s>({"32f16s", 33000}, nearest(zepsConvert_32f16s_Sfs),
                              &Peers::from32f16s);
    addFamily<Zep32f, Zep32s>({"32f32s", 2.2e9}, nearest(zepsConvert_32f32s_Sfs),
                              &Peers::from32f32s);
    addFamily<Zep32f, Zep8u>(
        {"32f24s", 8.4e6, 1, 3}, [](auto x, auto y, int n) { zepsConvert_32f24s_Sfs(x, y, n, 0); },
        &Peers::from32f24s);
}

void registerVolk() {
    const auto size = [](int n) { return static_cast<unsigned>(n); };
    Family<Zep16s, Zep32f>{"16s32f", 32767}.peer(
        "volk", [=](auto x, auto y, int n) { volk_16i_s32f_convert_32f(y, x, 1.0f, size(n)); });
    Family<Zep8s, Zep32f>{"8s32f", 127}.peer(
        "volk", [=](auto x, auto y, int n) { volk_8i_s32f_convert_32f(y, x, 1.0f, size(n)); });
    Family<Zep32s, Zep32f>{"32s32f", 2.0e9}.peer(
        "volk", [=](auto x, auto y, int n) { volk_32i_s32f_convert_32f(y, x, 1.0f, size(n)); });
    Family<Zep32f, Zep64f>{"32f64f", 1}.peer(
        "volk", [=](auto x, auto y, int n) { volk_32f_convert_64f(y, x, size(n)); });
    Family<Zep64f, Zep32f>{"64f32f", 1}.peer(
        "volk", [=](auto x, auto y, int n) { volk_64f_convert_32f(y, x, size(n)); });
    Family<Zep32f, Zep8s>{"32f8s", 130}.peer(
        "volk", [=](auto x, auto y, int n) { volk_32f_s32f_convert_8i(y, x, 1.0f, size(n)); });
    Family<Zep32f, Zep16s>{"32f16s", 33000}.peer(
        "volk", [=](auto x, auto y, int n) { volk_32f_s32f_convert_16i(y, x, 1.0f, size(n)); });
    Family<Zep32f, Zep32s>{"32f32s", 2.2e9}.peer(
        "volk", [=](auto x, auto y, int n) { volk_32f_s32f_convert_32i(y, x, 1.0f, size(n)); });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerExact();
    zep::bench::registerRounded();
    zep::bench::registerVolk();
    return zep::bench::runAll(argc, argv);
}
