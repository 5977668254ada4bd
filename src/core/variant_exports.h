// Declares every dispatched export in the variant's own namespace. These declarations hide the public names, so a
// kernel that calls another export stays in its variant. Included by every kernel file.
#pragma once

#include "zepm.h"
#include "zeps.h"

namespace zep::ZEP_VARIANT {
#define ZEP_EXPORT(name) decltype(::name) name;
#include "core/exports.def"
}  // namespace zep::ZEP_VARIANT
