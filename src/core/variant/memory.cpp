#include <cstdint>

#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT {
namespace {

// Only the low 32 bits of the byte count reach the allocator; the header warns of it.
template <class T>
T* allocate(int len) {
    if (len <= 0) return nullptr;
    const std::int64_t bytes = std::int64_t{len} * std::int64_t{sizeof(T)};
    return static_cast<T*>(zepMalloc(static_cast<std::int32_t>(bytes)));
}

}  // namespace

void zepiFree(void* ptr) { zepFree(ptr); }
void zepsFree(void* ptr) { zepFree(ptr); }

Zep8u* zepsMalloc_8u(int len) { return allocate<Zep8u>(len); }
Zep8s* zepsMalloc_8s(int len) { return allocate<Zep8s>(len); }
Zep16u* zepsMalloc_16u(int len) { return allocate<Zep16u>(len); }
Zep16s* zepsMalloc_16s(int len) { return allocate<Zep16s>(len); }
Zep8sc* zepsMalloc_8sc(int len) { return allocate<Zep8sc>(len); }
Zep32u* zepsMalloc_32u(int len) { return allocate<Zep32u>(len); }
Zep32s* zepsMalloc_32s(int len) { return allocate<Zep32s>(len); }
Zep32f* zepsMalloc_32f(int len) { return allocate<Zep32f>(len); }
Zep16sc* zepsMalloc_16sc(int len) { return allocate<Zep16sc>(len); }
Zep64s* zepsMalloc_64s(int len) { return allocate<Zep64s>(len); }
Zep64f* zepsMalloc_64f(int len) { return allocate<Zep64f>(len); }
Zep32sc* zepsMalloc_32sc(int len) { return allocate<Zep32sc>(len); }
Zep32fc* zepsMalloc_32fc(int len) { return allocate<Zep32fc>(len); }
Zep64sc* zepsMalloc_64sc(int len) { return allocate<Zep64sc>(len); }
Zep64fc* zepsMalloc_64fc(int len) { return allocate<Zep64fc>(len); }

}  // namespace zep::ZEP_VARIANT
