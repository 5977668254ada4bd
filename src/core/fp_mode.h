// The calling thread's floating-point control and status word (MXCSR).
#pragma once

#include <cstdint>

namespace zep {

namespace mxcsr {
inline constexpr std::uint32_t kDenormalsAreZero = 0x40;
inline constexpr std::uint32_t kUnderflowMask = 0x800;
inline constexpr std::uint32_t kExceptionMasks = 0x1F80;
inline constexpr std::uint32_t kFlushToZero = 0x8000;
}  // namespace mxcsr

std::uint32_t zepFpGetControl();
// Replaces the bits of mask by those of value.
void zepFpSetControl(std::uint32_t value, std::uint32_t mask);

}  // namespace zep
