#!/bin/bash
# usage: check_variants.sh BUILD [COLUMNS...]
#
# Checks that the objects of each column (all of them by default) in a release build hold that column and nothing else. One source is compiled once for
# each; whatever the linker could merge across the copies, or whatever leaves a copy, would run code of one instruction level
# on a processor of another. The rules:
#   1  no weak or unique symbol without the column's namespace in its name: the linker keeps one copy of such a symbol
#   2  no reference to a dispatched export: the call would leave the column through the stub
#   3  no other reference but to the column itself, to the core, and to a short list of C functions
#   4  no static initialiser: nothing may run before the variant has been selected
# Instructions above a column's level never get that far: the assembler knows the level and refuses them (ZepVariants.cmake).
# Prints one line for each offence and fails if there is any.
set -euo pipefail
export LC_ALL=C
build=${1:?usage: check_variants.sh BUILD [COLUMNS...]}
shift
source=$(cd "$(dirname "$0")/.." && pwd)

# What compilers emit for copies and fills, what set-up computes with, where memory comes from.
permitted="memcpy memmove memset memcmp bcmp malloc calloc realloc free
           sin cos sincos exp log fabs floor sqrt sqrtf _GLOBAL_OFFSET_TABLE_
           __stack_chk_fail __memcpy_chk __memmove_chk __memset_chk"

dispatched=$(sed -nE 's/^ZEP_EXPORT(_N8)?\((\w+)\).*/\2/p' "$source/src/core/exports.def")
core=$(grep -v '^#' "$source/src/core/core_exports.txt")
all=$(sed -nE 's/^ *X\(arg, [0-9], (\w+), .*/\1/p' "$source/src/core/columns.def")
columns=${*:-$all}
# As names of a namespace are written in symbols: 2m7 7e9_avx2.
namespaces=$(for column in $all; do printf '%d%s ' ${#column} "$column"; done)

check_symbols() {  # column objects...
    local column=$1
    shift
    nm -A "$@" | awk -v own="3zep${#column}$column" -v dispatched="$dispatched" -v core="$core" \
        -v permitted="$permitted" -v namespaces="$namespaces" '
        function set(list, into,   words, n) {
            n = split(list, words)
            for (; n > 0; --n) into[words[n]] = 1
        }
        BEGIN {
            set(dispatched, isDispatched)
            set(core " " permitted, isPermitted)
            for (n = split(namespaces, words, " "); n > 0; --n) others = others (others == "" ? "" : "|") words[n]
            others = "^_ZNK?3zep(" others ")"
            start = "^_ZNK?" own
        }
        {
            name = $NF
            type = $(NF - 1)
            object = $1
            sub(/:[^:]*$/, "", object)
            if (type ~ /^[WVu]$/ && index(name, own) == 0)
                print "rule 1: " object ": weak symbol outside the column: " name
            if (type !~ /^[Uwv]$/ || name ~ start) next
            if (name in isDispatched)
                print "rule 2: " object ": calls through the stub: " name
            else if (name in isPermitted)
                next
            else if (name !~ /^_ZNK?3zep[0-9]/ || name ~ others)
                print "rule 3: " object ": refers to " name
        }'
}

check_sections() {  # objects...
    local object
    for object in "$@"; do
        if objdump -h "$object" | grep -E ' \.(init_array|ctors|preinit_array)' > /dev/null; then
            echo "rule 4: $object: static initialiser"
        fi
    done
}

offences=$(mktemp)
trap 'rm -f "$offences"' EXIT
count=0
for column in $columns; do
    # The files of a group stand apart: zep_e9-store_order.
    mapfile -t objects < <(find "$build" \( -path "*/zep_$column.dir/*" -o -path "*/zep_$column-*.dir/*" \) -name '*.o' | sort)
    if [ ${#objects[@]} -eq 0 ]; then
        echo "no objects of column $column below $build"
        exit 2
    fi
    count=$((count + ${#objects[@]}))
    {
        check_symbols "$column" "${objects[@]}"
        check_sections "${objects[@]}"
    } >> "$offences"
done
head -n 60 "$offences"
echo "$count objects of $(wc -w <<< "$columns") columns, $(wc -l < "$offences") offences"
[ ! -s "$offences" ]
