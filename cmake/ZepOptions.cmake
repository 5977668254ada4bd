# CMake's own -O3 vectorises scalar tails and triples the code; whatever else a caller asks for holds.
foreach(language IN ITEMS C CXX)
  if(CMAKE_${language}_FLAGS_RELEASE STREQUAL "-O3 -DNDEBUG")
    set(CMAKE_${language}_FLAGS_RELEASE "-O2 -DNDEBUG")
  endif()
endforeach()

add_library(zep_warnings INTERFACE)
target_compile_options(zep_warnings INTERFACE -Wall -Wextra -Wshadow -Wpointer-arith -Wcast-align
                       $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
                       # A variant need not use every helper of a file: its tuning leaves some out.
                       $<$<CXX_COMPILER_ID:Clang>:-Wno-unneeded-internal-declaration>)
if(MOZEP_WERROR)
  target_compile_options(zep_warnings INTERFACE -Werror)
endif()

# zep_options: what every translation unit of the library is compiled with.
#
# Contraction stays off so that a * b + c rounds twice wherever the source says so; fused multiply-add appears only
# where a kernel asks for it. Optimising at link time stays off, as distributions ask for it: the stubs name tables and index
# in top-level assembly, which that does not see.
add_library(zep_options INTERFACE)
target_compile_features(zep_options INTERFACE cxx_std_20)
target_compile_options(zep_options INTERFACE
  -fno-lto -ffp-contract=off -fno-exceptions -fvisibility=hidden -fvisibility-inlines-hidden -ffunction-sections
  -fdata-sections -fno-plt -fno-threadsafe-statics)
target_link_libraries(zep_options INTERFACE zep_warnings zep_internals)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION OFF)
