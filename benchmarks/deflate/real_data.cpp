#include "deflate/real_data.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace zep::bench {
namespace {

namespace fs = std::filesystem;

void append(Bytes& out, const fs::path& file, std::size_t limit) {
    std::ifstream in(file, std::ios::binary);
    Bytes content((std::istreambuf_iterator<char>(in)), {});
    content.resize(std::min(content.size(), limit - out.size()));
    out.insert(out.end(), content.begin(), content.end());
}

// Regular files below a folder, by name, so that every run takes the same ones.
std::vector<fs::path> filesBelow(const fs::path& folder, const std::string& extension) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::recursive_directory_iterator
             it(folder, fs::directory_options::skip_permission_denied, error),
         end;
         it != end; it.increment(error))
        if (it->is_regular_file(error) && !it->is_symlink(error) &&
            (extension.empty() || it->path().extension() == extension))
            files.push_back(it->path());
    std::sort(files.begin(), files.end());
    return files;
}

Bytes gather(const fs::path& folder, const std::string& extension, std::size_t bytes) {
    Bytes out;
    for (const fs::path& file : filesBelow(folder, extension)) {
        if (out.size() >= bytes) break;
        append(out, file, bytes);
    }
    return out;
}

// Harmonics of a gliding pitch in a breath of noise.
Bytes syntheticVoice(std::size_t bytes) {
    Bytes out;
    std::mt19937 engine{1};
    std::normal_distribution<double> breath{0.0, 60.0};
    double phaseRad = 0;
    for (std::size_t n = 0; 2 * n < bytes; ++n) {
        const double t = static_cast<double>(n) / 48000;
        phaseRad += 2 * 3.14159265358979 * (120 + 30 * std::sin(1.7 * t)) / 48000;
        double x = breath(engine);
        for (int k = 1; k < 12; ++k)
            x += 3000.0 / k * std::sin(k * phaseRad) * std::fabs(std::sin(2.1 * t + k));
        const auto sample = static_cast<std::uint16_t>(static_cast<std::int16_t>(x));
        out.push_back(static_cast<std::uint8_t>(sample));
        out.push_back(static_cast<std::uint8_t>(sample >> 8));
    }
    return out;
}

}  // namespace

Bytes cHeaders(std::size_t bytes) { return gather("/usr/include", ".h", bytes); }

Bytes executables(std::size_t bytes) { return gather("/usr/bin", "", bytes); }

Bytes recordedSpeech(std::size_t bytes) {
    const Bytes once = gather("/usr/share/sounds/alsa", ".wav", bytes);
    if (once.empty()) return syntheticVoice(bytes);
    // A second round is new to a decoder whose history is 32 KiB.
    Bytes out;
    while (out.size() < bytes)
        out.insert(
            out.end(), once.begin(),
            once.begin() + static_cast<std::ptrdiff_t>(std::min(once.size(), bytes - out.size())));
    return out;
}

Bytes packageLog(std::size_t bytes) {
    std::vector<std::string> packages;
    std::ifstream status("/var/lib/dpkg/status");
    std::string line, name;
    while (std::getline(status, line)) {
        if (line.rfind("Package: ", 0) == 0) name = line.substr(9);
        if (line.rfind("Version: ", 0) == 0) packages.push_back(name + ":amd64 " + line.substr(9));
    }
    if (packages.empty())
        packages = {"base-files:amd64 12.4", "libc6:amd64 2.36-9", "zlib1g:amd64 1:1.2.13"};
    static constexpr const char* kActions[] = {
        "status half-configured", "status unpacked", "status installed", "upgrade", "configure",
        "status half-installed",  "install"};
    std::mt19937 engine{2};
    Bytes out;
    long seconds = 1'600'000'000;
    while (out.size() < bytes) {
        seconds += static_cast<long>(engine() % 4);
        char text[512];
        const long day = seconds / 86400;
        const int count = std::snprintf(
            text, sizeof text, "20%02ld-%02ld-%02ld %02ld:%02ld:%02ld %s %s\n", day / 365 % 100,
            day / 31 % 12 + 1, day % 28 + 1, seconds / 3600 % 24, seconds / 60 % 60, seconds % 60,
            kActions[engine() % std::size(kActions)], packages[engine() % packages.size()].c_str());
        out.insert(out.end(), text, text + std::min<int>(count, sizeof text - 1));
    }
    out.resize(bytes);
    return out;
}

}  // namespace zep::bench
