#include "response_plot.h"

#include <zeps.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <numbers>

#include "library_status.h"
#include "plot.h"

namespace mozep_program {
namespace {

constexpr double kLowestLevel = -200;  // dB
constexpr double kTurn = 2 * std::numbers::pi;

struct FreeSpec {
    void operator()(DFTSpecC64fc* spec) const { zepsDFTFree_C_64fc(spec); }
};

// Bins 0 to N/2 of a transform of N points.
std::vector<Zep64fc> spectrumOf(const std::vector<double>& taps) {
    // Fine enough for the phase to turn by less than a quarter between bins, and for lobes to show.
    constexpr std::size_t kFewest = 8192;
    const std::size_t N = std::bit_ceil(std::max(kFewest, 4 * taps.size()));
    std::vector<Zep64fc> x(N);
    std::transform(taps.begin(), taps.end(), x.begin(), [](double tap) { return Zep64fc{tap, 0}; });
    DFTSpecC64fc* spec = nullptr;
    requireSuccess(
        zepsDFTInitAlloc_C_64fc(&spec, static_cast<int>(N), ZEP_FFT_SCALE_NONE, zepAlgHintNone));
    const std::unique_ptr<DFTSpecC64fc, FreeSpec> release(spec);
    requireSuccess(zepsDFTFwd_CToC_64fc(x.data(), x.data(), spec, nullptr));
    x.resize(N / 2 + 1);
    return x;
}

}  // namespace

void plotResponse(const std::vector<double>& taps, double rate, const std::string& title,
                  const std::string& file) {
    Curve shape{title, "Tap", "Value", {}, taps};
    for (std::size_t k = 0; k < taps.size(); ++k) shape.x.push_back(static_cast<double>(k));

    const std::vector<Zep64fc> bins = spectrumOf(taps);
    Curve magnitude{"Magnitude", "Frequency in Hz", "Level in dB", {}, {}};
    Curve phase{"Phase, without its leaps of whole turns", "Frequency in Hz", "Radians", {}, {}};
    double angle = 0;
    for (std::size_t k = 0; k < bins.size(); ++k) {
        const double Hz = rate / 2 * static_cast<double>(k) / static_cast<double>(bins.size() - 1);
        const double level = 20 * std::log10(std::hypot(bins[k].re, bins[k].im));
        // What is left of a bin below the lowest level is rounding, and has no phase.
        if (level > kLowestLevel) {
            const double next = std::atan2(bins[k].im, bins[k].re);
            angle = next + kTurn * std::round((angle - next) / kTurn);
        }
        magnitude.x.push_back(Hz);
        magnitude.y.push_back(std::max(level, kLowestLevel));
        phase.x.push_back(Hz);
        phase.y.push_back(angle);
    }
    plotSvg({shape, magnitude, phase}, file);
}

}  // namespace mozep_program
