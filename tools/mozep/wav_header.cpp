#include "wav_header.h"

#include <limits>
#include <string_view>

namespace mozep_program {
namespace {

constexpr int kIntegers = 1, kFloats = 3, kExtensible = 0xFFFE;
constexpr int kExtensionBytes = 22;

int bitsOf(WavFormat::Samples samples) {
    switch (samples) {
        case WavFormat::Samples::UInt8:
            return 8;
        case WavFormat::Samples::Int16:
            return 16;
        case WavFormat::Samples::Int24:
            return 24;
        default:
            return 32;
    }
}

bool isFloat(const WavFormat& format) { return format.samples == WavFormat::Samples::Float32; }

// Older readers know the plain form alone.
bool isExtensible(const WavFormat& format) {
    return format.channels > 2 || format.samples == WavFormat::Samples::Int24 ||
           format.samples == WavFormat::Samples::Int32;
}

int formatBytes(const WavFormat& format) {
    constexpr int kPlain = 16, kCountOfMore = 2;
    if (isExtensible(format)) return kPlain + kCountOfMore + kExtensionBytes;
    return isFloat(format) ? kPlain + kCountOfMore : kPlain;
}

class Header {
public:
    void name(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    template <class T>
    void number(long long value) {
        for (std::size_t n = 0; n < sizeof(T); ++n)
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * n)));
    }
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

int bytesBehindSize(const WavFormat& format) {
    return 4 + (8 + formatBytes(format)) + (isFloat(format) ? 8 + 4 : 0) + 8;
}

void addExtension(Header& h, const WavFormat& format, int bits) {
    h.number<std::uint16_t>(kExtensionBytes);
    h.number<std::uint16_t>(bits);  // that are valid
    h.number<std::uint32_t>(format.speakers);
    // KSDATAFORMAT_SUBTYPE_PCM or _IEEE_FLOAT
    h.number<std::uint16_t>(isFloat(format) ? kFloats : kIntegers);
    h.name(std::string_view("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xaa\x00\x38\x9b\x71", 14));
}

}  // namespace

int bytesOfFrame(const WavFormat& format) { return format.channels * bitsOf(format.samples) / 8; }

long long longestWav(const WavFormat& format) {
    constexpr int kPadding = 1;
    const long long room =
        std::numeric_limits<std::uint32_t>::max() - bytesBehindSize(format) - kPadding;
    return room / bytesOfFrame(format);
}

std::vector<std::uint8_t> wavHeader(const WavFormat& format, long long frames) {
    const int bits = bitsOf(format.samples), frameBytes = bytesOfFrame(format);
    const long long data = frames * frameBytes;
    Header h;
    h.name("RIFF");
    h.number<std::uint32_t>(bytesBehindSize(format) + data + data % 2);
    h.name("WAVEfmt ");
    h.number<std::uint32_t>(formatBytes(format));
    h.number<std::uint16_t>(isExtensible(format) ? kExtensible
                            : isFloat(format)    ? kFloats
                                                 : kIntegers);
    h.number<std::uint16_t>(format.channels);
    h.number<std::uint32_t>(format.rate);
    h.number<std::uint32_t>(static_cast<long long>(format.rate) * frameBytes);
    h.number<std::uint16_t>(frameBytes);
    h.number<std::uint16_t>(bits);
    if (isExtensible(format))
        addExtension(h, format, bits);
    else if (isFloat(format))
        h.number<std::uint16_t>(0);  // bytes of the format that follow
    if (isFloat(format)) {
        h.name("fact");
        h.number<std::uint32_t>(4);
        h.number<std::uint32_t>(frames);
    }
    h.name("data");
    h.number<std::uint32_t>(data);
    return h.bytes();
}

}  // namespace mozep_program
