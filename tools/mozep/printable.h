#pragma once

#include <string>
#include <string_view>

namespace mozep_program {

// The text in one line that is safe to show: control characters and bytes that are not UTF-8 become
// escapes such as \n and \x1b, everything else stays. A file name may hold anything but '/' and NUL.
std::string printable(std::string_view text);

}  // namespace mozep_program
