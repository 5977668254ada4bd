#include "speech_codec.h"

#include <algorithm>
#include <stdexcept>

#include "g728_stream.h"
#include "library_status.h"

namespace mozep_program {
namespace {

using Kind = SpeechCodec::Kind;

constexpr SpeechCodec kCodecs[] = {
    {"alaw", Kind::ALaw, 8},
    {"ulaw", Kind::MuLaw, 8},
    {"g726-16", Kind::G726, 2, ZEP_SPCHBR_16000},
    {"g726-24", Kind::G726, 3, ZEP_SPCHBR_24000},
    {"g726-32", Kind::G726, 4, ZEP_SPCHBR_32000},
    {"g726-40", Kind::G726, 5, ZEP_SPCHBR_40000},
    {"g728", Kind::G728, 10, 0, 5, 4, PackingOrder::HighestFirst},
};

constexpr int kBitsBelow14 = 2;  // G.726 takes 14-bit samples

std::vector<Zep8u> stateMemory(ZepStatus (*getSize)(Zep32u*)) {
    Zep32u bytes = 0;
    requireSuccess(getSize(&bytes));
    return std::vector<Zep8u>(bytes);
}

ZepG726State* stateIn(std::vector<Zep8u>& memory) {
    return reinterpret_cast<ZepG726State*>(memory.data());
}

// From elements to as many of the other kind.
template <class To, class From, class Function>
std::vector<To> converted(const std::vector<From>& in, Function function) {
    std::vector<To> out(in.size());
    if (!in.empty()) requireSuccess(function(in.data(), out.data(), static_cast<int>(in.size())));
    return out;
}

// The library's codes are bytes.
template <class Function>
std::vector<Zep16u> coded(const std::vector<Zep16s>& samples, Function function) {
    const auto bytes = converted<Zep8u>(samples, function);
    return {bytes.begin(), bytes.end()};
}
template <class Function>
std::vector<Zep16s> decoded(const std::vector<Zep16u>& codes, Function function) {
    std::vector<Zep8u> bytes(codes.size());
    std::transform(codes.begin(), codes.end(), bytes.begin(),
                   [](Zep16u code) { return static_cast<Zep8u>(code); });
    return converted<Zep16s>(bytes, function);
}

SpeechEncoder makeG726Encoder(Zep32s rate) {
    std::vector<Zep8u> memory = stateMemory(zepsEncodeGetStateSize_G726_16s8u);
    requireSuccess(zepsEncodeInit_G726_16s8u(stateIn(memory), rate));
    return [memory](std::vector<Zep16s> samples) mutable {
        for (Zep16s& x : samples) x = static_cast<Zep16s>(x >> kBitsBelow14);
        return coded(samples, [&](const Zep16s* src, Zep8u* dst, int len) {
            return zepsEncode_G726_16s8u(stateIn(memory), src, dst, len);
        });
    };
}

SpeechDecoder makeG726Decoder(Zep32s rate) {
    std::vector<Zep8u> memory = stateMemory(zepsDecodeGetStateSize_G726_8u16s);
    requireSuccess(zepsDecodeInit_G726_8u16s(stateIn(memory), rate, ZEP_G726_LINEAR));
    return [memory](const std::vector<Zep16u>& codes) mutable {
        auto samples = decoded(codes, [&](const Zep8u* src, Zep16s* dst, int len) {
            return zepsDecode_G726_8u16s(stateIn(memory), src, dst, len);
        });
        for (Zep16s& x : samples) x = static_cast<Zep16s>(x * (1 << kBitsBelow14));
        return samples;
    };
}

}  // namespace

std::vector<std::string> speechCodecNames() {
    std::vector<std::string> names;
    for (const SpeechCodec& codec : kCodecs) names.emplace_back(codec.name);
    return names;
}

const SpeechCodec& speechCodec(const std::string& name) {
    const auto* const found =
        std::find_if(std::begin(kCodecs), std::end(kCodecs),
                     [&](const SpeechCodec& codec) { return codec.name == name; });
    if (found == std::end(kCodecs)) throw std::logic_error(name + ": no codec");
    return *found;
}

SpeechEncoder makeEncoder(const SpeechCodec& codec) {
    const auto compress = [](auto function) {
        return [=](const std::vector<Zep16s>& samples) { return coded(samples, function); };
    };
    switch (codec.kind) {
        case Kind::ALaw:
            return compress(zepsLinToALaw_16s8u);
        case Kind::MuLaw:
            return compress(zepsLinToMuLaw_16s8u);
        case Kind::G726:
            return makeG726Encoder(codec.rate);
        default:
            return makeG728Encoder();
    }
}

SpeechDecoder makeDecoder(const SpeechCodec& codec, bool postfilter) {
    const auto expand = [](auto function) {
        return [=](const std::vector<Zep16u>& codes) { return decoded(codes, function); };
    };
    switch (codec.kind) {
        case Kind::ALaw:
            return expand(zepsALawToLin_8u16s);
        case Kind::MuLaw:
            return expand(zepsMuLawToLin_8u16s);
        case Kind::G726:
            return makeG726Decoder(codec.rate);
        default:
            return makeG728Decoder(postfilter);
    }
}

}  // namespace mozep_program
