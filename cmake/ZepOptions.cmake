# zep_options: what every translation unit of the library is compiled with.
#
# Contraction stays off so that a * b + c rounds twice wherever the source says so; fused multiply-add appears only
# where a kernel asks for it. The optimisation level is fixed here, not by CMake's -O3: -O3 vectorises scalar tails
# and triples the code.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")

add_library(zep_warnings INTERFACE)
target_compile_options(zep_warnings INTERFACE -Wall -Wextra -Wshadow -Wpointer-arith -Wcast-align
                       $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
                       # A variant need not use every helper of a file: its tuning leaves some out.
                       $<$<CXX_COMPILER_ID:Clang>:-Wno-unneeded-internal-declaration>)
if(MOZEP_WERROR)
  target_compile_options(zep_warnings INTERFACE -Werror)
endif()

add_library(zep_options INTERFACE)
target_compile_features(zep_options INTERFACE cxx_std_20)
target_compile_options(zep_options INTERFACE
  -ffp-contract=off -fno-exceptions -fvisibility=hidden -fvisibility-inlines-hidden -ffunction-sections
  -fdata-sections -fno-plt -fno-threadsafe-statics)
target_include_directories(zep_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(zep_options INTERFACE zep_warnings)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
