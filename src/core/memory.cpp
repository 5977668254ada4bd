// 32-byte aligned blocks from the C heap. A block is one heap allocation of length + 40 bytes; the
// word below the returned address holds the heap's pointer.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "zepcore.h"

namespace zep {
namespace {

constexpr std::size_t kAlignment = 32;
constexpr std::size_t kOverhead = kAlignment + sizeof(void*);

// The heap behind the library.
struct Heap {
    void* (*allocate)(std::size_t);
    void* (*allocateCleared)(std::size_t, std::size_t);
    void* (*reallocate)(void*, std::size_t);
    void (*release)(void*);
};
Heap heap{std::malloc, std::calloc, std::realloc, std::free};

}  // namespace
}  // namespace zep

void* zepMalloc(int length) {
    using namespace zep;
    if (length <= 0) return nullptr;
    void* raw = heap.allocate(static_cast<std::size_t>(length) + kOverhead);
    if (raw == nullptr) return nullptr;
    const std::uintptr_t address =
        (reinterpret_cast<std::uintptr_t>(raw) + kOverhead - 1) & ~std::uintptr_t{kAlignment - 1};
    void* aligned = reinterpret_cast<void*>(address);
    std::memcpy(static_cast<void**>(aligned) - 1, &raw, sizeof raw);
    return aligned;
}

void zepFree(void* ptr) {
    if (ptr == nullptr) return;
    void* raw = nullptr;
    std::memcpy(&raw, static_cast<void**>(ptr) - 1, sizeof raw);
    zep::heap.release(raw);
}

void* zepAlignPtr(void* ptr, int alignBytes) {
    const auto address = reinterpret_cast<std::uintptr_t>(ptr);
    const auto below = static_cast<std::uintptr_t>(std::intptr_t{alignBytes} - 1);
    return reinterpret_cast<void*>(address + ((0 - (address & below)) & below));
}
