// Averaged power spectrum of a long signal, by Welch's method: blocks of N samples, any number, that
// overlap by half (rounded down for an odd N), a Hann window, the mean of the squared magnitudes (P. D. Welch, "The use of fast Fourier
// transform for the estimation of power spectra", IEEE Trans. Audio Electroacoust. 15, 1967).
//
// Levels refer to a full-scale sine: an amplitude of 1 reads 0 dBFS. Memory is fixed by N, whatever
// the signal's length.
#pragma once

#include <zeps.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace mozep_program {

class Welch {
public:
    explicit Welch(int N);  // at least 4

    // Any number of samples at a time.
    void add(std::span<const float> samples);

    // Samples behind the last whole block make one more, filled up with zeros. It counts by the part
    // of the window that they fill, so that a steady tone keeps its level. A signal that is shorter
    // than a block counts as a whole one, and reads lower.
    void finish();

    long long blocks() const { return blocks_; }
    // Whether the last block was filled up with zeros.
    bool filledUp() const { return filledUp_; }
    // Mean power of bins 0 .. N/2 (rounded down), relative to a full-scale sine.
    std::vector<double> power() const;

private:
    struct ReleaseSpec {
        void operator()(DFTSpecR32f* spec) const { zepsDFTFree_R_32f(spec); }
    };
    struct ReleaseBlock {
        void operator()(float* block) const { zepsFree(block); }
    };
    using Block = std::unique_ptr<float, ReleaseBlock>;

    void transformBlock(double windowSum);
    void flush();

    int N_;
    std::unique_ptr<DFTSpecR32f, ReleaseSpec> spec_;
    Block window_, samples_, spectrum_, squares_, scratch_;
    int filled_ = 0;     // samples in the block
    int unseen_ = 0;     // of these, the ones that no earlier block had
    int unflushed_ = 0;  // blocks whose squares are in squares_
    long long blocks_ = 0;
    bool filledUp_ = false;
    double windowSum_ = 0;
    double weight_ = 0;         // squares of the blocks' window sums
    std::vector<double> sums_;  // squares of earlier blocks, packed as the spectrum is
};

struct Peak {
    double bin;    // position in bins, between them too
    double level;  // power, relative to a full-scale sine
};

// The strongest local maxima, strongest first. A steady tone between two bins is found where it is:
// position and level follow from the main lobe of the window.
std::vector<Peak> strongestPeaks(const std::vector<double>& power, std::size_t count);

// 10 * log10(power), not below -200.
double decibel(double power);

}  // namespace mozep_program
