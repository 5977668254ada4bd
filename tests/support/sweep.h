// How wide the tests sweep. All of it once, in the release build with GCC; a thin selection where instrumented code is an
// order slower, and in further builds of the same sources (ZEP_TEST_THIN), which look for other faults than wrong values.
#pragma once

#include <vector>

namespace zep::test {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kInstrumented = true;
#elif defined(__has_feature)
inline constexpr bool kInstrumented = __has_feature(address_sanitizer) ||
                                      __has_feature(thread_sanitizer) ||
                                      __has_feature(undefined_behavior_sanitizer);
#else
inline constexpr bool kInstrumented = false;
#endif

// True: take few of many like cases.
bool thin();

// Lengths 1 to last; thin: those around every width of vectors and of their fractions.
std::vector<int> sweepLengths(int last = 70);

// For loops: every value, or every `step`-th.
inline int thinStep(int step) { return thin() ? step : 1; }

}  // namespace zep::test
