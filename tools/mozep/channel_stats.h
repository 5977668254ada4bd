#pragma once

#include <cstddef>
#include <vector>

namespace mozep_program {

// A sum that keeps what each addition rounds off: its error does not grow with their number.
// (Neumaier, Rundungsfehleranalyse einiger Verfahren zur Summation endlicher Summen, ZAMM 54, 1974.)
class CompensatedSum {
public:
    void add(double x);
    double value() const { return sum_ + lost_; }

private:
    double sum_ = 0, lost_ = 0;
};

// Peak, mean and mean square of a channel that is given block by block. Infinities and
// not-a-numbers are left out and counted. The sums of a block are the library's, in double
// precision.
class ChannelStats {
public:
    // At least one sample. The block is overwritten.
    void add(std::vector<float>& block);

    // Samples that the figures are of; without any there are no figures.
    long long counted() const { return counted_; }
    long long leftOut() const { return seen_ - counted_; }
    double peak() const { return static_cast<double>(peak_); }  // largest magnitude
    long long peakIndex() const { return peakIndex_; }  // of the first such sample, from 0 on
    double mean() const { return sum_.value() / static_cast<double>(counted_); }
    double meanSquare() const { return squares_.value() / static_cast<double>(counted_); }

private:
    double sumOfSquares(const std::vector<float>& block);
    void dropOthers(std::vector<float>& block);
    void takePeak(const std::vector<float>& block);

    std::vector<double> exact_;      // the block
    std::vector<long long> places_;  // of the samples of a block that has lost some
    long long seen_ = 0, counted_ = 0, peakIndex_ = 0;
    float peak_ = 0;
    CompensatedSum sum_, squares_;
};

}  // namespace mozep_program
