#include "support/failing_heap.h"

#include <cstddef>

// The linker's --wrap option sends calls of malloc and free here and gives the heap's own under
// these names.
extern "C" {
void* __real_malloc(std::size_t bytes);
void __real_free(void* p);
void* __wrap_malloc(std::size_t bytes);
void __wrap_free(void* p);
}

namespace zep::test {
namespace {

struct Counts {
    bool armed;
    int allowed;
    int asked;
    int live;
};
thread_local Counts counts;

}  // namespace

FailingHeap::FailingHeap(int allowed) { counts = {true, allowed, 0, 0}; }
FailingHeap::~FailingHeap() { counts.armed = false; }
int FailingHeap::asked() const { return counts.asked; }
int FailingHeap::live() const { return counts.live; }

}  // namespace zep::test

void* __wrap_malloc(std::size_t bytes) {
    auto& counts = zep::test::counts;
    if (!counts.armed) return __real_malloc(bytes);
    if (counts.asked++ >= counts.allowed) return nullptr;
    void* p = __real_malloc(bytes);
    if (p != nullptr) ++counts.live;
    return p;
}

void __wrap_free(void* p) {
    if (zep::test::counts.armed && p != nullptr) --zep::test::counts.live;
    __real_free(p);
}
