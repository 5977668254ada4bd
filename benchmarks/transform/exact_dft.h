// Transforms of any length in extended precision, what errors are measured against.
#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <vector>

namespace zep::bench {

using Extended = std::complex<long double>;

// Forward, unscaled: a prime factor after the other, each by the definition, and a chirp where one
// is large. Its error is some units of 2^-64.
class ExactDft {
public:
    explicit ExactDft(std::size_t N);
    ~ExactDft();
    ExactDft(const ExactDft&) = delete;
    ExactDft& operator=(const ExactDft&) = delete;

    void run(const Extended* x, Extended* X) const;

private:
    struct Chirp;

    void points(std::size_t n, const Extended* x, std::size_t stride, Extended* X) const;
    void join(std::size_t factor, std::size_t n, Extended* X) const;

    std::vector<Extended> roots_;
    std::unique_ptr<Chirp> chirp_;  // of all N points
};

}  // namespace zep::bench
