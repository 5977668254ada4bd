# Input filter of Doxygen. A comment with @name and @{ describes every member of its group: opened by "/** @{ */" with the
# comment on the first member instead, Doxygen repeats it at each of them. Line numbers stay as they are.
function flush(   i) {
    grouped = named && opens
    for (i = 1; i <= count; ++i) {
        if (grouped && i == 1) sub(/\/\*\*/, "/** @{ */ /**", block[i])
        if (grouped) sub(/ \* @name .*| \* @\{ *$/, " *", block[i])
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
