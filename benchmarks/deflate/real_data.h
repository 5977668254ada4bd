// What people compress, gathered on the machine itself when the benchmark runs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zep::bench {

using Bytes = std::vector<std::uint8_t>;

Bytes cHeaders(std::size_t bytes);        // files of /usr/include, one after the other
Bytes executables(std::size_t bytes);     // files of /usr/bin
Bytes recordedSpeech(std::size_t bytes);  // 16-bit WAV files of /usr/share/sounds/alsa; a synthetic
                                          // voice without them
Bytes packageLog(
    std::size_t bytes);  // lines as the package manager logs them, over this machine's packages

}  // namespace zep::bench
