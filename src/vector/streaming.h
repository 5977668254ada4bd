// When large results are stored around the cache: about 1 MiB of total traffic, in variants whose
// processors gain by it. A destination that is also a source is in the cache already, so in-place
// forms never stream.
#pragma once

#include "core/variant/tag.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {

template <class Tag>
struct StreamLimits {
    using TwoSources = StreamAbove<0x2AAA>;
    using OneSource = StreamAbove<0x4000>;
};

template <>
struct StreamLimits<tag::e9> {
    using TwoSources = NeverStream;
    using OneSource = NeverStream;
};

using StreamTwoSources = StreamLimits<VariantTag>::TwoSources;
using StreamOneSource = StreamLimits<VariantTag>::OneSource;

}  // namespace zep::ZEP_VARIANT
