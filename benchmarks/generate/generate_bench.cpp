// Generators beside rotations and loops of the compiler, the oscillators of liquid-dsp and VOLK, and
// the standard library's normal distribution. Tones are named fast or accurate by their hint.
#include <liquid/liquid.h>
#include <volk/volk.h>

#include <cmath>
#include <string>
#include <vector>

#include "generate/generate_loops.h"
#include "support/buffers.h"
#include "support/rows.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 65536};
constexpr double kFreq = 0.0371, kPhase = 0.7, kTwoPi = 6.283185307179586;

template <class T, class F>
Body onSamples(int size, F f) {
    return [size, f](benchmark::State& state) {
        AlignedArray<T> y(static_cast<std::size_t>(size));
        for (auto _ : state) {
            f(y.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

// f(peers, y, n).
template <class T, class F>
void addPeers(const std::string& family, const char* peer, int size, F f) {
    for (const auto& [level, loops] : peerLevels(ZEP_PEERS(generateLoops))) {
        const GeneratePeers* const p = loops;
        addPeer(family, peer + level, size, onSamples<T>(size, [=](T* y, int n) { f(*p, y, n); }));
    }
}

template <class T, class Real>
auto tone(ZepStatus (*form)(T*, int, Real, Real, Real*, ZepHintAlgorithm), ZepHintAlgorithm hint) {
    return [=](T* y, int n) {
        Real phase = static_cast<Real>(kPhase);
        form(y, n, Real(1), static_cast<Real>(kFreq), &phase, hint);
    };
}

template <liquid_ncotype type>
void liquidTone(Zep32fc* y, int n) {
    nco_crcf const oscillator = nco_crcf_create(type);
    nco_crcf_set_phase(oscillator, static_cast<float>(kPhase));
    nco_crcf_set_frequency(oscillator, static_cast<float>(kTwoPi * kFreq));
    for (int i = 0; i < n; ++i) {
        liquid_float_complex x;
        nco_crcf_cexpf(oscillator, &x);
        nco_crcf_step(oscillator);
        y[i] = {x.real, x.imag};
    }
    nco_crcf_destroy(oscillator);
}
template <liquid_ncotype type>
void liquidRealTone(Zep32f* y, int n) {
    nco_crcf const oscillator = nco_crcf_create(type);
    nco_crcf_set_phase(oscillator, static_cast<float>(kPhase));
    nco_crcf_set_frequency(oscillator, static_cast<float>(kTwoPi * kFreq));
    for (int i = 0; i < n; ++i) {
        y[i] = nco_crcf_cos(oscillator);
        nco_crcf_step(oscillator);
    }
    nco_crcf_destroy(oscillator);
}
// Turns samples; of ones it makes a tone.
void volkTone(Zep32fc* y, int n) {
    static const std::vector<lv_32fc_t> ones(65536, lv_32fc_t{1, 0});
    const auto turn = static_cast<float>(kTwoPi * kFreq);
    lv_32fc_t phase =
        lv_cmake(std::cos(static_cast<float>(kPhase)), std::sin(static_cast<float>(kPhase)));
    volk_32fc_s32fc_x2_rotator_32fc(reinterpret_cast<lv_32fc_t*>(y), ones.data(),
                                    lv_cmake(std::cos(turn), std::sin(turn)), &phase,
                                    static_cast<unsigned>(n));
}

void registerTones() {
    const auto forBoth = [](auto f) {
        f("_fast", zepAlgHintNone);
        f("_accurate", zepAlgHintFast);
    };
    for (const int size : kSizes)
        forBoth([=](const std::string& name, ZepHintAlgorithm hint) {
            addOurs("tone_32f" + name, size,
                    onSamples<Zep32f>(size, tone(zepsTone_Direct_32f, hint)));
            addPeers<Zep32f>("tone_32f" + name, "rotation-", size,
                             [](auto& p, auto y, int n) { p.rotate(y, n, kFreq, kPhase); });
            addPeer("tone_32f" + name, "liquid-nco", size,
                    onSamples<Zep32f>(size, liquidRealTone<LIQUID_NCO>));
            addPeer("tone_32f" + name, "liquid-vco", size,
                    onSamples<Zep32f>(size, liquidRealTone<LIQUID_VCO>));

            addOurs("tone_32fc" + name, size,
                    onSamples<Zep32fc>(size, tone(zepsTone_Direct_32fc, hint)));
            addPeers<Zep32fc>("tone_32fc" + name, "rotation-", size,
                              [](auto& p, auto y, int n) { p.rotateComplex(y, n, kFreq, kPhase); });
            addPeer("tone_32fc" + name, "liquid-nco", size,
                    onSamples<Zep32fc>(size, liquidTone<LIQUID_NCO>));
            addPeer("tone_32fc" + name, "volk-rotator", size, onSamples<Zep32fc>(size, volkTone));

            addOurs("tone_64f" + name, size,
                    onSamples<Zep64f>(size, tone(zepsTone_Direct_64f, hint)));
            addPeers<Zep64f>("tone_64f" + name, "rotation-", size,
                             [](auto& p, auto y, int n) { p.rotateDouble(y, n, kFreq, kPhase); });

            addOurs("tone_64fc" + name, size,
                    onSamples<Zep64fc>(size, tone(zepsTone_Direct_64fc, hint)));
            addPeers<Zep64fc>("tone_64fc" + name, "rotation-", size, [](auto& p, auto y, int n) {
                p.rotateDoubleComplex(y, n, kFreq, kPhase);
            });
        });
}

void registerLines() {
    for (const int size : kSizes) {
        const auto add = [=]<class T>(const char* family, T*, auto ours, auto theirs) {
            addOurs(family, size, onSamples<T>(size, ours));
            addPeers<T>(family, "loop-", size, theirs);
        };
        const auto ramp = [](auto& p, auto y, int n) { p.ramp(y, n, 3.0f, 0.25f); };
        Zep32f* const f = nullptr;
        Zep32s* const i = nullptr;
        add(
            "vectorramp_32f", f, [](auto y, int n) { zepsVectorRamp_32f(y, n, 3.0f, 0.25f); },
            ramp);
        add(
            "vectorslope_32f", f, [](auto y, int n) { zepsVectorSlope_32f(y, n, 3.0f, 0.25f); },
            ramp);
        add(
            "vectorramp_32s", i, [](auto y, int n) { zepsVectorRamp_32s(y, n, -3.0f, 0.3f); },
            [](auto& p, auto y, int n) { p.rampInteger(y, n, -3.0f, 0.3f); });
        add(
            "vectorslope_32s", i, [](auto y, int n) { zepsVectorSlope_32s(y, n, -3.0, 0.3); },
            [](auto& p, auto y, int n) { p.slopeInteger(y, n, -3.0, 0.3); });
    }
}

void registerNoise() {
    for (const int size : kSizes) {
        addOurs("randgauss_32f", size, [size](benchmark::State& state) {
            AlignedArray<Zep32f> y(static_cast<std::size_t>(size));
            ZepRandGaussState* noise = nullptr;
            zepsRandGaussInitAlloc_32f(&noise, 0.5f, 2.0f, 12345);
            for (auto _ : state) {
                zepsRandGauss_32f(y.data(), size, noise);
                benchmark::ClobberMemory();
            }
            zepsRandGaussFree_32f(noise);
            state.SetItemsProcessed(state.iterations() * size);
        });
        addPeers<Zep32f>("randgauss_32f", "std-", size,
                         [](auto& p, auto y, int n) { p.normal(y, n); });
    }
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerTones();
    zep::bench::registerLines();
    zep::bench::registerNoise();
    return zep::bench::runAll(argc, argv);
}
