#include <cstddef>
#include <cstdint>

#include "inflate_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zep::fuzz::checkInflate({data, size});
    return 0;
}
