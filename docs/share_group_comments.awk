# Input filter of Doxygen. A comment with @name and @{ describes every member of its group: opened by "/** @{ */" with the
# comment on the first member instead, Doxygen repeats it at each of them. Not every member has every parameter (the forms
# with and without _I share a comment), so the parameters become a list. Line numbers stay as they are.
function flush(   i, name) {
    grouped = named && opens
    for (i = 1; i <= count; ++i) {
        if (grouped && i == 1) sub(/\/\*\*/, "/** @{ */ /**", block[i])
        if (grouped) sub(/ \* @name .*| \* @\{ *$/, " *", block[i])
        if (grouped && match(block[i], / \* @param +[A-Za-z0-9_]+ +/)) {
            name = block[i]
            sub(/.* @param +/, "", name)
            sub(/ .*/, "", name)
            block[i] = " * - `" name "` " substr(block[i], RSTART + RLENGTH)
        }
        print block[i]
    }
    count = named = opens = 0
}
!inside && /^ *\/\*\* *$/ { inside = 1 }
!inside { print; next }
{
    block[++count] = $0
    if ($0 ~ /^ *\* @name /) named = 1
    if ($0 ~ /^ *\* @\{ *$/) opens = 1
    if ($0 ~ /\*\//) {
        inside = 0
        flush()
    }
}
END { flush() }
