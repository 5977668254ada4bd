// What the functions should give: in double precision, from SLEEF, whose bound is one unit in the last place (2^-52 of
// the result), and from MPFR with as many bits as asked for.
#pragma once

namespace zep::bench {

enum class Exact { Exp, Ln, Log10, SinCos };

inline constexpr int kChunk = 8192;

// For count elements, a multiple of 16. second: the cosine. An exponential's argument is taken as 130 or -130 beyond
// them: no result of single precision differs.
void reference(Exact f, const float* x, double* first, double* second, int count);
void referencePower(const float* x, const float* b, double* y, int count);

// Differences in units of single precision's last place of the exact value, denormals counted in their common one.
// Returns false where a result or the exact value is beyond the range of single precision: then nothing counts.
bool unitsOff(const float* y, const double* exact, double* error, double* relative, int count);

// The same for one pair, of any kind; 1e9 if y should be another infinity or NaN.
double unitsOff(float y, double exact);

// The correctly rounded double.
double exactly(Exact f, float x, bool second);

}  // namespace zep::bench
