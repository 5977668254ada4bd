#include "speech_codec.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "library_status.h"

namespace mozep_program {
namespace {

constexpr SpeechCodec kCodecs[] = {
    {"alaw", 8},
    {"ulaw", 8},
    {"g726-16", 2, ZEP_SPCHBR_16000},
    {"g726-24", 3, ZEP_SPCHBR_24000},
    {"g726-32", 4, ZEP_SPCHBR_32000},
    {"g726-40", 5, ZEP_SPCHBR_40000},
};

constexpr int kBitsBelow14 = 2;  // G.726 takes 14-bit samples

bool isALaw(const SpeechCodec& codec) { return std::string_view(codec.name) == "alaw"; }

std::vector<Zep8u> stateMemory(ZepStatus (*getSize)(Zep32u*)) {
    Zep32u bytes = 0;
    requireSuccess(getSize(&bytes));
    return std::vector<Zep8u>(bytes);
}

ZepG726State* stateIn(std::vector<Zep8u>& memory) {
    return reinterpret_cast<ZepG726State*>(memory.data());
}

// The same for all of them: from elements to as many of the other kind.
template <class To, class From, class Function>
std::vector<To> converted(const std::vector<From>& in, Function function) {
    std::vector<To> out(in.size());
    if (!in.empty()) requireSuccess(function(in.data(), out.data(), static_cast<int>(in.size())));
    return out;
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
    if (codec.rate == 0) {
        const auto compress = isALaw(codec) ? zepsLinToALaw_16s8u : zepsLinToMuLaw_16s8u;
        return
            [=](const std::vector<Zep16s>& samples) { return converted<Zep8u>(samples, compress); };
    }
    std::vector<Zep8u> memory = stateMemory(zepsEncodeGetStateSize_G726_16s8u);
    requireSuccess(zepsEncodeInit_G726_16s8u(stateIn(memory), codec.rate));
    return [memory](std::vector<Zep16s> samples) mutable {
        for (Zep16s& x : samples) x = static_cast<Zep16s>(x >> kBitsBelow14);
        return converted<Zep8u>(samples, [&](const Zep16s* src, Zep8u* dst, int len) {
            return zepsEncode_G726_16s8u(stateIn(memory), src, dst, len);
        });
    };
}

SpeechDecoder makeDecoder(const SpeechCodec& codec) {
    if (codec.rate == 0) {
        const auto expand = isALaw(codec) ? zepsALawToLin_8u16s : zepsMuLawToLin_8u16s;
        return [=](const std::vector<Zep8u>& codes) { return converted<Zep16s>(codes, expand); };
    }
    std::vector<Zep8u> memory = stateMemory(zepsDecodeGetStateSize_G726_8u16s);
    requireSuccess(zepsDecodeInit_G726_8u16s(stateIn(memory), codec.rate, ZEP_G726_LINEAR));
    return [memory](const std::vector<Zep8u>& codes) mutable {
        auto samples = converted<Zep16s>(codes, [&](const Zep8u* src, Zep16s* dst, int len) {
            return zepsDecode_G726_8u16s(stateIn(memory), src, dst, len);
        });
        for (Zep16s& x : samples) x = static_cast<Zep16s>(x * (1 << kBitsBelow14));
        return samples;
    };
}

}  // namespace mozep_program
