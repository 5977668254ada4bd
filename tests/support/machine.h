// Which columns of the library are compiled, and which of them this machine can run.
#pragma once

#include <vector>

#include "core/columns.h"

namespace zep::test {

// All of them, or what MOZEP_COLUMNS says.
std::vector<Column> builtColumns();

// As the operating system tells it in /proc/cpuinfo; the library's own detection has no part in it.
bool runsHere(const Column& column);

}  // namespace zep::test
