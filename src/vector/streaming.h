// When large results are stored around the cache: about 1 MiB of total traffic, in variants whose
// processors gain by it. A destination that is also a source is in the cache already, so in-place
// forms never stream.
#pragma once

#include "core/variant/tag.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {

struct StreamLarge {
    using TwoSources = StreamAbove<0x2AAA>;
    using OneSource = StreamAbove<0x4000>;
};

template <class Tag>
struct StreamLimits;

template <>
struct StreamLimits<tag::m7> : StreamLarge {};
template <>
struct StreamLimits<tag::u8> : StreamLarge {};
template <>
struct StreamLimits<tag::n8> : StreamLarge {};
template <>
struct StreamLimits<tag::y8> : StreamLarge {};

template <>
struct StreamLimits<tag::e9> {
    using TwoSources = NeverStream;
    using OneSource = NeverStream;
};

using StreamTwoSources = Tuned<StreamLimits>::TwoSources;
using StreamOneSource = Tuned<StreamLimits>::OneSource;

}  // namespace zep::ZEP_VARIANT
