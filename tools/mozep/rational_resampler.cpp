#include "rational_resampler.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "commands.h"
#include "library_status.h"

namespace mozep_program {
namespace {

// In units of half the lower rate.
constexpr double kPassband = 0.94, kStopband = 1;
constexpr double kRejection = 135;  // dB; sums in single precision leave 130

// J. F. Kaiser, Nonrecursive Digital Filter Design Using the I0-Sinh Window Function, 1974.
constexpr double kShape = 0.1102 * (kRejection - 8.7);
constexpr double kHalfLength = (kRejection - 7.95) / 14.36 / (kStopband - kPassband);

// An odd number of taps, symmetric, with a sum of `up`.
std::vector<float> lowpass(int up, int down) {
    const int factor = std::max(up, down);
    const int half = static_cast<int>(std::ceil(kHalfLength * factor));
    const int length = 2 * half + 1;
    constexpr int kNoWindow = -1, kAsItIs = 0;
    const double cutoff = (kPassband + kStopband) / 4 / factor;
    std::vector<double> taps(static_cast<std::size_t>(length));
    requireSuccess(zepsFIRGenLowpass_64f(cutoff, taps.data(), length, kNoWindow, kAsItIs));
    std::vector<float> windowed(taps.size(), 1.0F);
    requireSuccess(zepsWinKaiser_32f_I(windowed.data(), length, static_cast<float>(kShape / half)));
    double sum = 0;
    for (std::size_t n = 0; n < taps.size(); ++n) {
        taps[n] *= static_cast<double>(windowed[n]);
        sum += taps[n];
    }
    const double gain = up / sum;
    std::transform(taps.begin(), taps.end(), windowed.begin(),
                   [gain](double tap) { return static_cast<float>(tap * gain); });
    return windowed;
}

}  // namespace

RationalResampler::RationalResampler(int fromRate, int toRate) {
    const int common = std::gcd(fromRate, toRate);
    const int up = toRate / common, down = fromRate / common;
    if (std::max(up, down) > kLargestFactor)
        throw Failure("cannot resample " + std::to_string(fromRate) + " Hz to " +
                      std::to_string(toRate) + " Hz: their ratio, " + std::to_string(down) + ':' +
                      std::to_string(up) + ", has a number above " +
                      std::to_string(kLargestFactor));
    if (up == down) return;
    const std::vector<float> taps = lowpass(up, down);
    filter_.emplace(taps, up, down, static_cast<int>(taps.size()) / 2);
}

void RationalResampler::add(std::span<const float> in, std::vector<float>& out) {
    if (filter_)
        filter_->add(in, out);
    else
        out.insert(out.end(), in.begin(), in.end());
}

void RationalResampler::finish(std::vector<float>& out) {
    if (filter_) filter_->finish(out);
}

}  // namespace mozep_program
