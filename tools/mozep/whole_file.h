#pragma once

#include <string>
#include <string_view>

namespace mozep_program {

// Writes a file that is either whole or not touched: the contents go to a temporary name beside it,
// which takes the file's place in the end. An existing file keeps its permissions; a symbolic link
// stays one, its target is written; devices and pipes are written to. Throws Failure with the reason.
void writeWhole(const std::string& name, std::string_view contents);

}  // namespace mozep_program
