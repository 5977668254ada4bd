// Sample format conversions beside plain loops and VOLK: families 32f16s, 24s32f ..., from a short
// call to beyond the second-level cache. Floats are rounded to nearest without a scale.
#include <volk/volk.h>

#include "support/buffers.h"
#include "support/rows.h"
#include "support/volk_level.h"
#include "vector/conversion_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 16384, 1 << 20};

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
            else if constexpr (std::is_integral_v<S>)
                f(x, y, n, 0x1p-15f);
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
    addFamily<Zep16u, Zep32f>({"16u32f", 65535}, zepsConvert_16u32f, &Peers::from16u32f);
    addFamily<Zep32s, Zep64f>({"32s64f", 2.0e9}, zepsConvert_32s64f, &Peers::from32s64f);
    addFamily<Zep16s, Zep32f>(
        {"16s32f_Sfs15", 32767}, [](auto x, auto y, int n) { zepsConvert_16s32f_Sfs(x, y, n, 15); },
        &Peers::from16s32fScaled);
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
    const auto halfAway = [](auto f) {
        return [f](auto x, auto y, int n) { f(x, y, n, zepRoundHalfAway, 0); };
    };
    addFamily<Zep32f, Zep16s>({"32f16s_away", 33000}, halfAway(zepsConvert_32f16s_Sfs),
                              &Peers::from32f16sAway);
    addFamily<Zep32f, Zep32s>({"32f32s", 2.2e9}, nearest(zepsConvert_32f32s_Sfs),
                              &Peers::from32f32s);
    addFamily<Zep32f, Zep8u>(
        {"32f24s", 8.4e6, 1, 3}, [](auto x, auto y, int n) { zepsConvert_32f24s_Sfs(x, y, n, 0); },
        &Peers::from32f24s);
}

// The form that VOLK takes by itself, and where that is above AVX, the best that a processor with AVX runs.
template <class S, class D>
void addVolk(const Family<S, D>& family, const volk_func_desc_t& forms, auto best,
             const char* avxForm, auto byName) {
    const auto size = [](int n) { return static_cast<unsigned>(n); };
    const std::string name = volkPeer(forms);
    family.peer(name, [=](auto x, auto y, int n) { best(y, x, size(n)); });
    if (name != "volk")
        family.peer("volk", [=](auto x, auto y, int n) { byName(y, x, size(n), avxForm); });
}

void registerVolk() {
#define ZEP_SCALED(name)                                                                       \
    volk_##name##_get_func_desc(), [](auto y, auto x, auto n) { volk_##name(y, x, 1.0f, n); }, \
        avx, [](auto y, auto x, auto n, auto form) { volk_##name##_manual(y, x, 1.0f, n, form); }
#define ZEP_PLAIN(name)                                                                       \
    volk_##name##_get_func_desc(), [](auto y, auto x, auto n) { volk_##name(y, x, n); }, avx, \
        [](auto y, auto x, auto n, auto form) { volk_##name##_manual(y, x, n, form); }
    const char* avx = "u_avx";
    addVolk(Family<Zep16s, Zep32f>{"16s32f", 32767}, ZEP_SCALED(16i_s32f_convert_32f));
    addVolk(Family<Zep64f, Zep32f>{"64f32f", 1}, ZEP_PLAIN(64f_convert_32f));
    addVolk(Family<Zep32f, Zep64f>{"32f64f", 1}, ZEP_PLAIN(32f_convert_64f));
    addVolk(Family<Zep32f, Zep16s>{"32f16s", 33000}, ZEP_SCALED(32f_s32f_convert_16i));
    addVolk(Family<Zep32f, Zep32s>{"32f32s", 2.2e9}, ZEP_SCALED(32f_s32f_convert_32i));
    avx = "u_sse4_1";
    addVolk(Family<Zep8s, Zep32f>{"8s32f", 127}, ZEP_SCALED(8i_s32f_convert_32f));
    avx = "u_sse2";
    addVolk(Family<Zep32s, Zep32f>{"32s32f", 2.0e9}, ZEP_SCALED(32i_s32f_convert_32f));
    addVolk(Family<Zep32f, Zep8s>{"32f8s", 130}, ZEP_SCALED(32f_s32f_convert_8i));
#undef ZEP_SCALED
#undef ZEP_PLAIN
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerExact();
    zep::bench::registerRounded();
    zep::bench::registerVolk();
    return zep::bench::runAll(argc, argv);
}
