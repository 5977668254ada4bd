// ADPCM of ITU-T G.726: sizes, initialisation, coding and decoding.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "speech/g711.h"
#include "speech/g726_channel.h"

namespace zep::ZEP_VARIANT {
namespace {

int rateIndex(Zep32s rate) {
    switch (rate) {
        case ZEP_SPCHBR_16000:
            return 0;
        case ZEP_SPCHBR_24000:
            return 1;
        case ZEP_SPCHBR_32000:
            return 2;
        case ZEP_SPCHBR_40000:
            return 3;
        default:
            return -1;
    }
}

void start(ZepG726State* pState, int bytes, int rate, int law) {
    g726::StateWords s;
    s.rateIndex = static_cast<Zep16s>(rate);
    s.lawMode = static_cast<Zep16s>(law);
    clearState(pState, bytes);
    put(s, pState);
}

// A zero count is an error and a negative one is nothing to do.
ZepStatus checkStream(const void* pState, const void* pSrc, const void* pDst, Zep32s len) {
    if (anyNull(pState, pSrc, pDst)) return zepStsNullPtrErr;
    return len == 0 ? zepStsSizeErr : zepStsNoErr;
}

// The laws as the decoder needs them. Compression takes the 14-bit signal with two more bits;
// lower and higher are the neighbours of a code in the order of values.
struct MuLaw {
    static std::uint8_t compress(int sr) {
        if (sr == -32768) sr = 0;
        // The law complements negative values, which the 1 undoes. The lowest value stays in range.
        const int x = 4 * limit(sr);
        return g711::compressMuLaw(static_cast<std::int16_t>(x < 0 && x != -32768 ? x - 1 : x));
    }
    static int expand(std::uint8_t code) { return g711::expandMuLaw(code) >> 2; }
    // Codes of positive values fall, the others rise; the negative zero, 127, is passed downwards.
    static std::uint8_t higher(std::uint8_t c) {
        return static_cast<std::uint8_t>(c == 128 ? 128 : c == 127 ? 255 : c > 128 ? c - 1 : c + 1);
    }
    static std::uint8_t lower(std::uint8_t c) {
        return static_cast<std::uint8_t>(c == 0 ? 0 : c == 255 ? 126 : c > 127 ? c + 1 : c - 1);
    }
    static int limit(int sr) { return sr < -8192 ? -8192 : sr > 8191 ? 8191 : sr; }
};

struct ALaw {
    static std::uint8_t compress(int sr) {
        if (sr == -32768) sr = -2;
        return g711::compressALaw(static_cast<std::int16_t>(4 * MuLaw::limit(sr)));
    }
    static int expand(std::uint8_t code) { return g711::expandALaw(code) >> 2; }
    // With the even bits put right the codes of positive values rise from 128, the others fall
    // from 127.
    static std::uint8_t higher(std::uint8_t code) {
        const int c = code ^ 0x55;
        return flipped(c == 255 ? 255 : c == 0 ? 128 : c > 127 ? c + 1 : c - 1);
    }
    static std::uint8_t lower(std::uint8_t code) {
        const int c = code ^ 0x55;
        return flipped(c == 127 ? 127 : c == 128 ? 0 : c > 127 ? c - 1 : c + 1);
    }
    static std::uint8_t flipped(int c) { return static_cast<std::uint8_t>(c ^ 0x55); }
};

// Synchronous adjustment: a code that would be coded otherwise by the next ADPCM stage moves by
// one step towards the code received (block SYNC). Codes compare with their sign bit inverted.
template <class Law, int rateIndex>
std::uint8_t tandemCode(const g726::Channel<rateIndex>& channel, int code) {
    const std::uint8_t pcm = Law::compress(channel.reconstruct(code));
    const int again = channel.quantize(Law::expand(pcm) - channel.estimate());
    constexpr int sign = g726::kRates[rateIndex].signBit();
    const int found = again ^ sign, received = code ^ sign;
    return found > received ? Law::lower(pcm) : found < received ? Law::higher(pcm) : pcm;
}

}  // namespace

ZepStatus zepsEncodeGetStateSize_G726_16s8u(Zep32u* pSize) {
    return reportSize(pSize, g726::kEncoderBytes);
}
ZepStatus zepsDecodeGetStateSize_G726_8u16s(Zep32u* pSize) {
    return reportSize(pSize, g726::kDecoderBytes);
}

ZepStatus zepsEncodeInit_G726_16s8u(ZepG726State* pState, Zep32s rate) {
    if (pState == nullptr) return zepStsNullPtrErr;
    const int index = rateIndex(rate);
    if (index < 0) return zepStsRangeErr;
    start(pState, g726::kEncoderBytes, index, 0);
    return zepStsNoErr;
}

ZepStatus zepsDecodeInit_G726_8u16s(ZepG726State* pState, Zep32s rate, Zep32s law) {
    if (pState == nullptr) return zepStsNullPtrErr;
    const int index = rateIndex(rate);
    if (index < 0 || law < ZEP_G726_MULAW || law > ZEP_G726_LINEAR) return zepStsRangeErr;
    start(pState, g726::kDecoderBytes, index, law);
    return zepStsNoErr;
}

ZepStatus zepsEncode_G726_16s8u(ZepG726State* pState, const Zep16s* pSrc, Zep8u* pDst, Zep32s len) {
    if (const ZepStatus s = checkStream(pState, pSrc, pDst, len); s != zepStsNoErr) return s;
    g726::withChannel(pState, [=](auto& channel, const g726::StateWords&) {
        for (std::ptrdiff_t n = 0; n < len; ++n) {
            const int code = channel.quantize(fetch<Zep16s>(pSrc + n) - channel.estimate());
            channel.advance(code);
            pDst[n] = static_cast<Zep8u>(code);
        }
    });
    return zepStsNoErr;
}

ZepStatus zepsDecode_G726_8u16s(ZepG726State* pState, const Zep8u* pSrc, Zep16s* pDst, Zep32s len) {
    if (const ZepStatus s = checkStream(pState, pSrc, pDst, len); s != zepStsNoErr) return s;
    g726::withChannel(pState, [=](auto& channel, const g726::StateWords& state) {
        for (std::ptrdiff_t n = 0; n < len; ++n) {
            const int code = pSrc[n] & channel.kRate.codeMask();
            const int y = state.lawMode == ZEP_G726_MULAW ? tandemCode<MuLaw>(channel, code)
                          : state.lawMode == ZEP_G726_ALAW
                              ? tandemCode<ALaw>(channel, code)
                              : MuLaw::limit(channel.reconstruct(code));
            channel.advance(code);
            put(static_cast<Zep16s>(y), pDst + n);
        }
    });
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
