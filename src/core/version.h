// The version that all records share.
#pragma once

#include "zepcore.h"

namespace zep::version {

inline constexpr int kMajor = 7;
inline constexpr int kMinor = 0;
inline constexpr int kReleaseBuild = 205;
constexpr char kText[] = "7.0 build 205.58";

}  // namespace zep::version
