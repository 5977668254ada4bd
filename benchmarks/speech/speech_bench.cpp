// Speech blocks beside SpanDSP and what the compiler makes of plain loops. Sizes are samples; the
// search and the energies of G.728 count shapes.
#include <cmath>
#include <vector>

extern "C" {
#include <spandsp.h>
}

#include "speech/speech_loops.h"
#include "support/buffers.h"
#include "support/rows.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {160, 1024, 16384};

constexpr std::int16_t kShapes[128][5] = {
#include "speech/g728_shapes.inc"
};

// Two tones of speech-like loudness, and noise.
std::int16_t signal(int n) {
    const double noise = static_cast<double>(static_cast<unsigned>(n) * 2654435761u >> 20) / 4096;
    return static_cast<std::int16_t>(6000 * std::sin(0.05 * n) + 3000 * std::sin(0.31 * n) +
                                     2000 * noise);
}

struct Data {
    AlignedArray<Zep16s> samples;
    AlignedArray<Zep8u> codes;
    explicit Data(int n)
        : samples(static_cast<std::size_t>(n)), codes(static_cast<std::size_t>(n)) {
        for (int i = 0; i < n; ++i) {
            samples.data()[i] = signal(i);
            codes.data()[i] = static_cast<Zep8u>(static_cast<unsigned>(i) * 2654435761u >> 24);
        }
    }
};

// Runs f(samples, codes, size).
template <class F>
Body onData(int size, F f) {
    return [size, f](benchmark::State& state) {
        Data data(size);
        for (auto _ : state) {
            f(data.samples.data(), data.codes.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

struct Tables {
    std::vector<Zep8u> alaw = std::vector<Zep8u>(65536), mulaw = alaw;
    std::vector<Zep16s> fromALaw = std::vector<Zep16s>(256), fromMuLaw = fromALaw;
    Tables() {
        std::vector<Zep16s> samples(65536);
        std::vector<Zep8u> codes(256);
        for (std::size_t i = 0; i < 65536; ++i) samples[i] = static_cast<Zep16s>(i);
        for (std::size_t i = 0; i < 256; ++i) codes[i] = static_cast<Zep8u>(i);
        zepsLinToALaw_16s8u(samples.data(), alaw.data(), 65536);
        zepsLinToMuLaw_16s8u(samples.data(), mulaw.data(), 65536);
        zepsALawToLin_8u16s(codes.data(), fromALaw.data(), 256);
        zepsMuLawToLin_8u16s(codes.data(), fromMuLaw.data(), 256);
    }
};
const Tables& tables() {
    static const Tables t;
    return t;
}

void registerCompanding() {
    for (const int size : kSizes) {
        addOurs("alaw_compress", size,
                onData(size, [](auto x, auto c, int n) { zepsLinToALaw_16s8u(x, c, n); }));
        addOurs("mulaw_compress", size,
                onData(size, [](auto x, auto c, int n) { zepsLinToMuLaw_16s8u(x, c, n); }));
        addOurs("alaw_expand", size,
                onData(size, [](auto x, auto c, int n) { zepsALawToLin_8u16s(c, x, n); }));
        addOurs("mulaw_expand", size,
                onData(size, [](auto x, auto c, int n) { zepsMuLawToLin_8u16s(c, x, n); }));
        for (const auto& [level, loops] : peerLevels(ZEP_PEERS(speechLoops))) {
            const SpeechLoops* const p = loops;
            const auto add = [&, name = level](const char* family, const char* peer, auto f) {
                addPeer(family, peer + name, size, onData(size, f));
            };
            add("alaw_compress", "spandsp-",
                [p](auto x, auto c, int n) { p->alawCompress(x, c, n); });
            add("mulaw_compress", "spandsp-",
                [p](auto x, auto c, int n) { p->mulawCompress(x, c, n); });
            add("alaw_expand", "spandsp-", [p](auto x, auto c, int n) { p->alawExpand(c, x, n); });
            add("mulaw_expand", "spandsp-",
                [p](auto x, auto c, int n) { p->mulawExpand(c, x, n); });
            add("alaw_compress", "table-",
                [p](auto x, auto c, int n) { p->tableCompress(tables().alaw.data(), x, c, n); });
            add("mulaw_compress", "table-",
                [p](auto x, auto c, int n) { p->tableCompress(tables().mulaw.data(), x, c, n); });
            add("alaw_expand", "table-",
                [p](auto x, auto c, int n) { p->tableExpand(tables().fromALaw.data(), c, x, n); });
            add("mulaw_expand", "table-",
                [p](auto x, auto c, int n) { p->tableExpand(tables().fromMuLaw.data(), c, x, n); });
        }
    }
}

struct Rate {
    int argument, kbits;
};
constexpr Rate kRates[] = {{17, 16}, {22, 24}, {23, 32}, {24, 40}};

// Codes of the signal, so that a decoder adapts as it does in use.
std::vector<Zep8u> codesOf(const Rate& rate, int size) {
    std::vector<Zep16s> x(static_cast<std::size_t>(size));
    std::vector<Zep8u> codes(x.size());
    for (int i = 0; i < size; ++i)
        x[static_cast<std::size_t>(i)] = static_cast<Zep16s>(signal(i) >> 2);
    alignas(16) unsigned char state[88];
    auto* const s = reinterpret_cast<ZepG726State*>(state);
    zepsEncodeInit_G726_16s8u(s, rate.argument);
    zepsEncode_G726_16s8u(s, x.data(), codes.data(), size);
    return codes;
}

void registerG726() {
    constexpr int kSize = 16384;
    for (const Rate& rate : kRates) {
        const std::string name = std::to_string(rate.kbits);
        addOurs("g726_encode_" + name, kSize, [rate](benchmark::State& state) {
            Data data(kSize);
            for (int i = 0; i < kSize; ++i)
                data.samples.data()[i] = static_cast<Zep16s>(signal(i) >> 2);
            alignas(16) unsigned char memory[88];
            auto* const s = reinterpret_cast<ZepG726State*>(memory);
            zepsEncodeInit_G726_16s8u(s, rate.argument);
            for (auto _ : state)
                zepsEncode_G726_16s8u(s, data.samples.data(), data.codes.data(), kSize);
            state.SetItemsProcessed(state.iterations() * kSize);
        });
        addPeer("g726_encode_" + name, "spandsp", kSize, [rate](benchmark::State& state) {
            Data data(kSize);
            g726_state_t* const s =
                g726_init(nullptr, rate.kbits * 1000, G726_ENCODING_LINEAR, G726_PACKING_NONE);
            for (auto _ : state) g726_encode(s, data.codes.data(), data.samples.data(), kSize);
            state.SetItemsProcessed(state.iterations() * kSize);
            g726_free(s);
        });
        const auto decode = [rate](int law) {
            return [rate, law](benchmark::State& state) {
                const std::vector<Zep8u> codes = codesOf(rate, kSize);
                std::vector<Zep16s> y(kSize);
                alignas(16) unsigned char memory[92];
                auto* const s = reinterpret_cast<ZepG726State*>(memory);
                zepsDecodeInit_G726_8u16s(s, rate.argument, law);
                for (auto _ : state) zepsDecode_G726_8u16s(s, codes.data(), y.data(), kSize);
                state.SetItemsProcessed(state.iterations() * kSize);
            };
        };
        addOurs("g726_decode_" + name, kSize, decode(ZEP_G726_LINEAR));
        addOurs("g726_decode_alaw_" + name, kSize, decode(ZEP_G726_ALAW));
        const auto decodePeer = [rate](int encoding) {
            return [rate, encoding](benchmark::State& state) {
                const std::vector<Zep8u> codes = codesOf(rate, kSize);
                std::vector<Zep16s> y(kSize);
                g726_state_t* const s =
                    g726_init(nullptr, rate.kbits * 1000, encoding, G726_PACKING_NONE);
                for (auto _ : state) g726_decode(s, y.data(), codes.data(), kSize);
                state.SetItemsProcessed(state.iterations() * kSize);
                g726_free(s);
            };
        };
        addPeer("g726_decode_" + name, "spandsp", kSize, decodePeer(G726_ENCODING_LINEAR));
        addPeer("g726_decode_alaw_" + name, "spandsp", kSize, decodePeer(G726_ENCODING_ALAW));
    }
}

constexpr Zep16s kImpulse[] = {8192, 3000, -2000, 500, 77}, kCorr[] = {-1152, -320, 192, -192, 384};

void registerG728() {
    addOurs("g728_energy", 128, [](benchmark::State& state) {
        AlignedArray<Zep16s> energies(128);
        for (auto _ : state) {
            zepsImpulseResponseEnergy_G728_16s(kImpulse, energies.data());
            benchmark::ClobberMemory();
        }
    });
    addOurs("g728_search", 128, [](benchmark::State& state) {
        AlignedArray<Zep16s> energies(128);
        zepsImpulseResponseEnergy_G728_16s(kImpulse, energies.data());
        Zep32s shape, gain;
        Zep16s code;
        for (auto _ : state) {
            zepsCodebookSearch_G728_16s(kCorr, energies.data(), &shape, &gain, &code,
                                        ZEP_SPCHBR_16000);
            benchmark::DoNotOptimize(code);
        }
    });
    for (const auto& [level, loops] : peerLevels(ZEP_PEERS(speechLoops))) {
        const SpeechLoops* const p = loops;
        addPeer("g728_energy", "loop-" + level, 128, [p](benchmark::State& state) {
            AlignedArray<std::uint16_t> energies(128);
            for (auto _ : state) {
                p->energy(kShapes, kImpulse, energies.data());
                benchmark::ClobberMemory();
            }
        });
        addPeer("g728_search", "loop-" + level, 128, [p](benchmark::State& state) {
            AlignedArray<std::uint16_t> energies(128);
            p->energy(kShapes, kImpulse, energies.data());
            for (auto _ : state)
                benchmark::DoNotOptimize(p->search(kShapes, kCorr, energies.data()));
        });
    }
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerCompanding();
    zep::bench::registerG726();
    zep::bench::registerG728();
    return zep::bench::runAll(argc, argv);
}
