#include "core/version.h"

namespace {

constexpr ZepVersionRecord kCore{
    zep::version::kMajor, zep::version::kMinor, zep::version::kReleaseBuild, 1022,
    {'c', 'o', 'r', 'e'}, "zepcore_l.lib",      zep::version::kText,         "Apr 17 2011"};

}  // namespace

const ZepVersionRecord* zepGetLibVersion(void) { return &kCore; }
