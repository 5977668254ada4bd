#include "support/guarded_buffer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <vector>

namespace zep::test {
namespace {

// Mapping and protecting pages is what a sweep of thousands of buffers spends its time on, hence the cache by size.
std::map<std::size_t, std::vector<std::byte*>>& freePages() {
    static std::map<std::size_t, std::vector<std::byte*>> cache;
    return cache;
}

std::size_t pageBytes() {
    static const auto bytes = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return bytes;
}

}  // namespace

GuardedPages::GuardedPages(std::size_t bytes) {
    const std::size_t page = pageBytes();
    const std::size_t usable = (bytes + page - 1) / page * page;
    auto& free = freePages()[usable];
    if (!free.empty()) {
        begin_ = free.back();
        free.pop_back();
    } else {
        void* map = mmap(nullptr, usable + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (map == MAP_FAILED) std::abort();
        begin_ = static_cast<std::byte*>(map) + page;
        if (usable != 0 && mprotect(begin_, usable, PROT_READ | PROT_WRITE) != 0) std::abort();
    }
    end_ = begin_ + usable;
}

GuardedPages::~GuardedPages() {
    constexpr std::size_t kKeepBelow = std::size_t{1} << 20;
    const std::size_t usable = static_cast<std::size_t>(end_ - begin_);
    if (usable < kKeepBelow)
        freePages()[usable].push_back(begin_);
    else
        munmap(begin_ - pageBytes(), usable + 2 * pageBytes());
}

}  // namespace zep::test
