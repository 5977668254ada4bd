// How many channels of 8000 samples a second one core carries in real time: packets of 20 ms, 64
// channels in turn, each with a state of its own. The counter `channels` is the answer.
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "g728_codec/codec.h"
#include "support/rows.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kPacket = 160, kVector = 5, kChannels = 64;

struct Packet {
    Zep16s samples[kPacket];
    Zep8u codes[kPacket];
    Zep16s words[kPacket / kVector];
};

// Two tones of speech-like loudness, and noise.
Packet packet() {
    Packet p{};
    for (int n = 0; n < kPacket; ++n) {
        const auto noise = static_cast<double>(static_cast<unsigned>(n) * 2654435761u >> 20) / 4096;
        p.samples[n] =
            static_cast<Zep16s>(1500 * std::sin(0.05 * n) + 750 * std::sin(0.31 * n) + 500 * noise);
    }
    return p;
}

using Channel = std::function<void(Packet&)>;

void addCodec(const std::string& name, std::function<Channel()> open) {
    addOurs(name, kPacket, [open](benchmark::State& state) {
        std::vector<Channel> channels;
        for (int n = 0; n < kChannels; ++n) channels.push_back(open());
        Packet p = packet();
        std::size_t next = 0;
        for (auto _ : state) {
            channels[next](p);
            next = (next + 1) % kChannels;
            benchmark::ClobberMemory();
        }
        state.counters["channels"] = benchmark::Counter(
            static_cast<double>(state.iterations()) * kPacket / 8000, benchmark::Counter::kIsRate);
    });
}

// A channel without a state.
Channel always(Channel f) { return f; }

void registerCompanding() {
    addCodec("alaw_encode", [] {
        return always([](Packet& p) { zepsLinToALaw_16s8u(p.samples, p.codes, kPacket); });
    });
    addCodec("alaw_decode", [] {
        return always([](Packet& p) { zepsALawToLin_8u16s(p.codes, p.samples, kPacket); });
    });
    addCodec("mulaw_encode", [] {
        return always([](Packet& p) { zepsLinToMuLaw_16s8u(p.samples, p.codes, kPacket); });
    });
    addCodec("mulaw_decode", [] {
        return always([](Packet& p) { zepsMuLawToLin_8u16s(p.codes, p.samples, kPacket); });
    });
}

struct Memory {
    alignas(16) unsigned char bytes[92];
    ZepG726State* state() { return reinterpret_cast<ZepG726State*>(bytes); }
};

void registerG726(const char* kbits, int rate) {
    addCodec(std::string("g726_encode_") + kbits, [rate]() -> Channel {
        auto memory = std::make_shared<Memory>();
        zepsEncodeInit_G726_16s8u(memory->state(), rate);
        return [memory](Packet& p) {
            zepsEncode_G726_16s8u(memory->state(), p.samples, p.codes, kPacket);
        };
    });
    addCodec(std::string("g726_decode_") + kbits, [rate]() -> Channel {
        auto coder = std::make_shared<Memory>(), memory = std::make_shared<Memory>();
        Packet coded = packet();
        zepsEncodeInit_G726_16s8u(coder->state(), rate);
        zepsEncode_G726_16s8u(coder->state(), coded.samples, coded.codes, kPacket);
        zepsDecodeInit_G726_8u16s(memory->state(), rate, ZEP_G726_LINEAR);
        return [memory, coded](Packet& p) {
            zepsDecode_G726_8u16s(memory->state(), coded.codes, p.samples, kPacket);
        };
    });
}

void code(G728Encoder* encoder, Packet& p) {
    for (int n = 0; n < kPacket / kVector; ++n)
        p.words[n] = g728Encode(encoder, p.samples + kVector * n);
}

void registerG728() {
    addCodec("g728_encode", []() -> Channel {
        const std::shared_ptr<G728Encoder> encoder(g728EncoderCreate(), g728EncoderFree);
        return [encoder](Packet& p) { code(encoder.get(), p); };
    });
    for (const int postfilter : {0, 1})
        addCodec(
            postfilter != 0 ? "g728_decode_postfilter" : "g728_decode", [postfilter]() -> Channel {
                const std::shared_ptr<G728Encoder> encoder(g728EncoderCreate(), g728EncoderFree);
                Packet coded = packet();
                code(encoder.get(), coded);
                const std::shared_ptr<G728Decoder> decoder(g728DecoderCreate(postfilter),
                                                           g728DecoderFree);
                return [decoder, coded](Packet& p) {
                    for (int n = 0; n < kPacket / kVector; ++n)
                        g728Decode(decoder.get(), coded.words[n], p.samples + kVector * n);
                };
            });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerCompanding();
    zep::bench::registerG726("16", ZEP_SPCHBR_16000);
    zep::bench::registerG726("24", ZEP_SPCHBR_24000);
    zep::bench::registerG726("32", ZEP_SPCHBR_32000);
    zep::bench::registerG726("40", ZEP_SPCHBR_40000);
    zep::bench::registerG728();
    return zep::bench::runAll(argc, argv);
}
