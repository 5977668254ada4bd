#!/bin/bash
# usage: consumer_test.sh STEP SOURCE BUILD WORK; the compilers come from CC and CXX, a compiler launcher from LAUNCHER,
# what was built from TOOLS; SAME_BUILD tells whether the build is one with the default options.
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
        # What the manual says that they print.
        for expected in "$source"/examples/*.txt; do
            example=$(basename "$expected" .txt)
            [ "$example" != CMakeLists ] || continue
            diff "$expected" <("$work/examples/$example")
        done
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
        # Beside the shared library too, -static takes the archive.
        # shellcheck disable=SC2046
        "$CC" -static "$quickstart" $(pkg-config --static --cflags --libs mozep) -o "$work/with_static_pkg_config"
        ! readelf -d "$work/with_static_pkg_config" | grep NEEDED || { echo "not a static program"; exit 1; }
        expect_output "$work/with_static_pkg_config"
        ;;
    components)
        # Each component holds its own files; the CMake package offers the libraries that are there.
        only() {  # COMPONENT PATTERN: all files of the component match the pattern, and there are some
            local got
            cmake --install "$build" --prefix "$work/$1" --component "mozep_$1" > /dev/null
            got=$(cd "$work/$1" && find . -type f -o -type l)
            [ -n "$got" ] || { echo "mozep_$1 is empty"; exit 1; }
            ! grep -vE "$2" <<< "$got" || { echo "mozep_$1 holds the files above"; exit 1; }
        }
        find_package() {  # NAME PREFIX COMPONENTS KINDS
            cmake -S "$source/tests/install/find_package" -B "$work/find_$1" -G Ninja -DCMAKE_C_COMPILER="$CC" \
                -DCMAKE_PREFIX_PATH="$work/$2" -DQUICKSTART="$quickstart" -DCOMPONENTS="$3" -DKINDS="$4"
        }
        only runtime '/libmozep\.so\.7(\.0)?$'
        only development '/(include/mozep/.*\.h|lib[^/]*/.*(libmozep\.so|mozep\.pc|\.cmake))$'
        only static '/(libmozep\.a|mozepStaticTargets(-[a-z]+)?\.cmake)$'
        only documentation '/share/doc/'
        if find_package nothing development "" mozep 2> "$work/nothing.log"; then echo "no library, and found"; exit 1; fi
        grep -q 'neither libmozep.so nor libmozep.a' "$work/nothing.log" || { cat "$work/nothing.log"; exit 1; }

        cp -a "$work/runtime/." "$work/development/"
        find_package shared development shared mozep
        cmake --build "$work/find_shared"
        expect_output "$work/find_shared/with_mozep"
        if find_package no_static development static "" 2> "$work/no_static.log"; then echo "static found"; exit 1; fi
        grep -q 'component static is not installed' "$work/no_static.log" || { cat "$work/no_static.log"; exit 1; }

        # As distributions pack it: everything, and then without the archive.
        cp -a "$prefix" "$work/without_archive"
        rm "$(find "$work/without_archive" -name libmozep.a)"
        find_package without_archive without_archive "" mozep

        cp -a "$work/static/." "$work/development/"
        find "$work/development" -name 'libmozep.so*' -delete
        find_package static development static mozep_static
        cmake --build "$work/find_static"
        expect_output "$work/find_static/with_mozep_static"
        ;;
    usr)
        # Below /usr: pkg-config knows the paths as those that the compiler searches, the program needs no run path.
        rm -rf "$work/stage"
        DESTDIR=$work/stage cmake --install "$build" --prefix /usr > /dev/null
        pc=$(find "$work/stage" -name mozep.pc)
        grep -qx 'prefix=/usr' "$pc"
        directory=$(PKG_CONFIG_LIBDIR=$(dirname "$pc") pkg-config --variable=libdir mozep)
        [ -f "$work/stage$directory/libmozep.so.7" ] || { echo "wrong libdir $directory"; exit 1; }
        flags=$(PKG_CONFIG_LIBDIR=$(dirname "$pc") PKG_CONFIG_SYSTEM_LIBRARY_PATH=$directory pkg-config --cflags --libs mozep)
        echo "$flags"
        [ "$(tr -s ' ' <<< "$flags" | sed 's/ $//')" = "-I/usr/include/mozep -lmozep" ]
        if [ -f "$work/stage/usr/bin/mozep" ]; then
            ! readelf -d "$work/stage/usr/bin/mozep" | grep -E 'R(UN)?PATH' || { echo "a run path below /usr"; exit 1; }
            [ -f "$work/stage/usr/share/man/man1/mozep.1" ]
        fi
        ;;
    add_subdirectory)
        # The library in a project of its own folder, with an absolute library directory and without the archive; the
        # program too where it was built here.
        tree=$work/add_subdirectory host=$work/host
        rm -rf "$host"
        cmake -S "$source/tests/install/add_subdirectory" -B "$tree" -G Ninja \
            -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" ${LAUNCHER:+-DCMAKE_CXX_COMPILER_LAUNCHER="$LAUNCHER"} \
            -DMOZEP_SOURCE="$source" -DQUICKSTART="$quickstart" -DMOZEP_STATIC=OFF -DMOZEP_INSTALL=ON \
            -DMOZEP_TOOLS="$TOOLS" -DMOZEP_COLUMNS=m7 \
            -DCMAKE_INSTALL_PREFIX="$host" -DCMAKE_INSTALL_LIBDIR="$host/elsewhere/lib"
        cmake --build "$tree"
        expect_output "$tree/with_mozep"
        [ ! -e "$tree/mozep/src/libmozep.a" ] || { echo "MOZEP_STATIC=OFF built the archive"; exit 1; }

        # It is installed with its host, in its own places.
        cmake --install "$tree" > /dev/null
        expect_output "$host/bin/with_mozep"
        [ -f "$host/share/doc/mozep/LICENSE" ]
        [ -z "$(find "$host" -name 'libmozep.a' -o -name '*Static*')" ] || { echo "a static library"; exit 1; }
        cmake -S "$source/tests/install/find_package" -B "$work/find_absolute" -G Ninja -DCMAKE_C_COMPILER="$CC" \
            -Dmozep_DIR="$host/elsewhere/lib/cmake/mozep" -DQUICKSTART="$quickstart" -DKINDS=mozep
        [ "$(PKG_CONFIG_PATH=$host/elsewhere/lib/pkgconfig pkg-config --variable=libdir mozep)" = "$host/elsewhere/lib" ]
        if [ "$TOOLS" = ON ]; then
            ldd "$host/bin/mozep" | grep -F "libmozep.so.7 => $host/elsewhere/lib/" ||
                { ldd "$host/bin/mozep"; echo "wrong run path"; exit 1; }
        fi

        # Built twice, in different folders: the same bytes. One column stands for all, at a seventh of the time.
        if [ "$SAME_BUILD" = ON ]; then
            cmake -S "$source" -B "$work/again" -G Ninja -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" \
                ${LAUNCHER:+-DCMAKE_CXX_COMPILER_LAUNCHER="$LAUNCHER"} -DCMAKE_BUILD_TYPE=Release -DMOZEP_STATIC=OFF \
                -DMOZEP_TOOLS="$TOOLS" -DMOZEP_COLUMNS=m7 -DCMAKE_INSTALL_LIBDIR="$host/elsewhere/lib" > /dev/null
            cmake --build "$work/again" > /dev/null
            cmp "$work/again/src/libmozep.so.7.0" "$tree/mozep/src/libmozep.so.7.0"
        fi

        # Unless its host does not want it.
        cmake -DMOZEP_INSTALL=OFF "$tree" > /dev/null
        DESTDIR=$work/alone cmake --install "$tree" > /dev/null
        [ "$(find "$work/alone" -type f | wc -l)" = 1 ] || { find "$work/alone"; echo "MOZEP_INSTALL=OFF installs"; exit 1; }
        ;;
    program)
        # No path in the environment: the program finds the library beside itself.
        uses_installed_library "$prefix/bin/mozep"
        "$prefix/bin/mozep" --version
        page=$prefix/share/man/man1/mozep.1
        [ -f "$page" ]
        ! command -v groff > /dev/null || [ -z "$(groff -man -Tutf8 -ww -z "$page" 2>&1)" ] ||
            { groff -man -Tutf8 -ww -z "$page"; echo "the manual page has faults"; exit 1; }
        ;;
    headers)
        # Each header alone, in both languages, as strict as a caller may be.
        find "$prefix/include/mozep" -name '*.h' | while read -r header; do
            echo "${header#"$prefix"/}"
            strict="-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fsyntax-only -I$prefix/include/mozep"
            case $header in
                */mozep.h)  # the wrapper classes are C++, and it says so, without a second complaint
                    "$CC" -std=c11 -fsyntax-only -I"$prefix/include/mozep" -x c - <<< "#include \"$header\"" \
                        2> "$work/c.log" && exit 1
                    grep -q 'error:.*mozep.h is for C++' "$work/c.log"
                    [ "$(grep -c 'error:' "$work/c.log")" = 1 ] || { cat "$work/c.log"; exit 1; }
                    ;;
                *) "$CC" -std=c11 -Wstrict-prototypes $strict -x c - <<< "#include \"$header\"" ;;
            esac
            "$CXX" -std=c++20 $strict -x c++ - <<< "#include \"$header\""
        done
        # The allocator class in use, made and deleted, draws no warning on its user.
        "$CXX" -std=c++20 -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Wdelete-non-virtual-dtor -Weffc++ -Werror -fsyntax-only \
            -I"$prefix/include/mozep" -x c++ - << 'END'
#include <memory>
#include <mozep.h>
void use() {
    MOZEP::MOZEPMemoryAllocator one, two(one);
    auto* heap = new MOZEP::MOZEPMemoryAllocator;
    two = *heap;
    Interfaces::IQMOMemoryAllocator& host = two;
    host.freeMemory(host.allocateMemory(8));
    delete heap;
    std::make_unique<MOZEP::MOZEPMemoryAllocator>()->freeMemory(nullptr);
}
END
        ;;
    *)
        echo "unknown step $step"
        exit 2
        ;;
esac
