// How the library computes a real transform of N points, told from N alone: zeps/dft.h gives the
// rules, and a test compares them with the library's own decisions.
#pragma once

namespace mozep_program {

enum class DftRoute { PowerOfTwo, SmallFactors, GenericFactors, Chirp };

// An even N that is no power of two runs as N/2 complex points, which decide. There, or for an odd
// N itself:
// - SmallFactors: every prime factor is 13 at most and has code of its own.
// - GenericFactors: some are larger, and run as sums by the definition: primes up to 47, and one up
//   to 149 where 4 divides the points.
// - Chirp: any other number of points, as a convolution with a chirp.
DftRoute dftRoute(int N);

const char* describe(DftRoute route);

}  // namespace mozep_program
