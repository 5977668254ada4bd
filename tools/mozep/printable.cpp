#include "printable.h"

#include <cstddef>
#include <cstdint>

namespace mozep_program {
namespace {

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Bytes of the character that the text begins with, 0 where it is none that can be shown: not UTF-8
// (RFC 3629: no overlong form, no surrogate, nothing above U+10FFFF), a control character, or one of
// the two that no XML file may hold (U+FFFE, U+FFFF).
std::size_t shownBytes(std::string_view text) {
    const auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = at(0);
    if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
    const std::size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < bytes) return 0;
    std::uint32_t code = first & (0x7Fu >> bytes);
    for (std::size_t i = 1; i < bytes; ++i) {
        if (!isContinuation(at(i))) return 0;
        code = code << 6 | (at(i) & 0x3Fu);
    }
    constexpr std::uint32_t kFirstOf[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    const bool control = code < 0xA0;
    if (code < kFirstOf[bytes] || code > 0x10FFFF || surrogate || control) return 0;
    return code == 0xFFFE || code == 0xFFFF ? 0 : bytes;
}

std::string escaped(unsigned char byte) {
    if (byte == '\n') return "\\n";
    if (byte == '\r') return "\\r";
    if (byte == '\t') return "\\t";
    constexpr char kDigits[] = "0123456789abcdef";
    return {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
}

}  // namespace

std::string printable(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::size_t shown = shownBytes(text);
        if (shown > 0)
            out += text.substr(0, shown);
        else
            out += escaped(static_cast<unsigned char>(text.front()));
        text.remove_prefix(shown > 0 ? shown : 1);
    }
    return out;
}

}  // namespace mozep_program
