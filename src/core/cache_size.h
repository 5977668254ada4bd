// The largest data cache, found once.
#pragma once

namespace zep {

// Forgets what zepGetMaxCacheSizeB found; for tests that change cpuSource.
void resetCacheSize();

}  // namespace zep
