#!/bin/bash
# usage: consumer_test.sh STEP SOURCE BUILD WORK; the compilers come from CC and CXX, a compiler launcher from LAUNCHER.
# "install" puts the build into WORK/moved by way of another prefix, so that every later step proves that the tree can be
# moved. Each consumer step builds examples/quickstart.c in one of the ways that the README names, and runs it.
set -euo pipefail
step=$1 source=$2 build=$3 work=$4
quickstart=$source/examples/quickstart.c
prefix=$work/moved

# The consumer's output is compared with that of the first one, built directly on the build tree.
expect_output() {
    local got
    got=$("$@")
    echo "$got"
    [ "$got" = "$(cat "$work/expected.txt")" ] || { echo "$1: not the output of the direct build"; exit 1; }
}
uses_installed_library() {
    local needs
    needs=$(ldd "$1")
    grep -qF "libmozep.so.7 => $prefix/" <<< "$needs" || { echo "$needs"; echo "$1: wrong library"; exit 1; }
}
libdir() { dirname "$(find "$prefix" -name libmozep.so.7)"; }

case $step in
    install)
        rm -rf "$work"
        mkdir -p "$work"
        cmake --install "$build" --prefix "$work/first" > "$work/install.log"
        mv "$work/first" "$prefix"
        ! grep -rIl "$work/first" "$prefix" || { echo "files name the first prefix"; exit 1; }
        lib=$(libdir)
        [ "$(readlink "$lib/libmozep.so")" = libmozep.so.7 ]
        [ "$(readlink "$lib/libmozep.so.7")" = libmozep.so.7.0 ]
        [ -f "$lib/libmozep.a" ]
        [ -f "$prefix/include/mozep/zeps.h" ]
        "$CC" -std=c11 -Wall -Wextra -Wpedantic -Werror "$quickstart" -I"$source/include" \
            -L"$build/src" -lmozep -Wl,-rpath,"$build/src" -o "$work/direct"
        "$work/direct" | tee "$work/expected.txt"
        ;;
    find_package)
        cmake -S "$source/tests/install/find_package" -B "$work/find_package" -G Ninja -DCMAKE_C_COMPILER="$CC" \
            -DCMAKE_PREFIX_PATH="$prefix" -DQUICKSTART="$quickstart"
        cmake --build "$work/find_package"
        uses_installed_library "$work/find_package/with_mozep"
        expect_output "$work/find_package/with_mozep"
        expect_output "$work/find_package/with_mozep_static"
        ;;
    examples)
        cmake -S "$source/examples" -B "$work/examples" -G Ninja -DCMAKE_C_COMPILER="$CC" -DCMAKE_PREFIX_PATH="$prefix"
        cmake --build "$work/examples"
        expect_output "$work/examples/quickstart"
        ;;
    pkg_config)
        export PKG_CONFIG_PATH
        PKG_CONFIG_PATH=$(libdir)/pkgconfig
        # Word splitting is what a caller's shell does with these flags.
        # shellcheck disable=SC2046
        "$CC" "$quickstart" $(pkg-config --cflags --libs mozep) -o "$work/with_pkg_config"
        export LD_LIBRARY_PATH
        LD_LIBRARY_PATH=$(libdir)
        uses_installed_library "$work/with_pkg_config"
        expect_output "$work/with_pkg_config"
        mkdir -p "$work/static_only"
        cp "$(libdir)/libmozep.a" "$work/static_only/"
        # shellcheck disable=SC2046
        "$CC" "$quickstart" -L"$work/static_only" $(pkg-config --static --cflags --libs mozep | sed 's/-L[^ ]*//') \
            -o "$work/with_static_pkg_config"
        expect_output "$work/with_static_pkg_config"
        ;;
    add_subdirectory)
        cmake -S "$source/tests/install/add_subdirectory" -B "$work/add_subdirectory" -G Ninja \
            -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" ${LAUNCHER:+-DCMAKE_CXX_COMPILER_LAUNCHER="$LAUNCHER"} \
            -DMOZEP_SOURCE="$source" -DQUICKSTART="$quickstart"
        cmake --build "$work/add_subdirectory" --target with_mozep
        expect_output "$work/add_subdirectory/with_mozep"
        ;;
    program)
        # No path in the environment: the program finds the library beside itself.
        uses_installed_library "$prefix/bin/mozep"
        "$prefix/bin/mozep" --version
        ;;
    headers)
        # Each header alone, in both languages, as strict as a caller may be.
        find "$prefix/include/mozep" -name '*.h' | while read -r header; do
            echo "${header#"$prefix"/}"
            strict="-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fsyntax-only -I$prefix/include/mozep"
            case $header in
                */mozep.h) ;;  # the wrapper classes are C++
                *) "$CC" -std=c11 -Wstrict-prototypes $strict -x c - <<< "#include \"$header\"" ;;
            esac
            "$CXX" -std=c++20 $strict -x c++ - <<< "#include \"$header\""
        done
        ;;
    *)
        echo "unknown step $step"
        exit 2
        ;;
esac
