// The level that VOLK runs a function at on this machine, as the name of its row: of all its forms it takes
// the one with the highest requirement. Rows are named as those of our own peers (support/peer_levels.h),
// and plain `volk` is what a processor with AVX runs.
#pragma once

#include <volk/volk.h>

#include <cstddef>
#include <string>

namespace zep::bench {

inline std::string volkPeer(const volk_func_desc_t& forms) {
    std::size_t best = 0;
    for (std::size_t k = 1; k < forms.n_impls; ++k)
        if (forms.impl_deps[k] > forms.impl_deps[best]) best = k;
    const std::string name = forms.impl_names[best];
    const auto has = [&](const char* part) { return name.find(part) != std::string::npos; };
    return has("avx512") ? "volk-native" : has("avx2") || has("fma") ? "volk-v3" : "volk";
}

}  // namespace zep::bench
