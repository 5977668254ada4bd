# Input filter of Doxygen, for what headers say in a way that is meant for readers of their text. Line numbers stay.
#
# - A comment with @name and @{ describes every member of its group. Doxygen repeats it at each of them if the group is
#   opened before, in comments of their own, and the comment stands on the first member. Not every member has every
#   parameter (the forms with and without _I share a comment), so the parameters become a list.
# - A range, "0 .. N", gets an ellipsis: a dot before a blank would end the summary.
function flush(   i, grouped, name) {
    grouped = title != "" && opens
    for (i = 1; i <= count; ++i) {
        if (grouped && i == 1) sub(/\/\*\*/, "/** @name " title, block[i])
        if (grouped) sub(/ \* @name .*/, " *//** @{ *//**", block[i])
        if (grouped) sub(/ \* @\{ *$/, " *", block[i])
        if (grouped && match(block[i], / \* @param +[A-Za-z0-9_]+ +/)) {
            name = block[i]
            sub(/.* @param +/, "", name)
            sub(/ .*/, "", name)
            block[i] = " * - `" name "` " substr(block[i], RSTART + RLENGTH)
        }
        print block[i]
    }
    count = opens = 0
    title = ""
}
{
    if ($0 ~ /@code/) code = 1
    if (!code && $0 ~ /^ *(\/\*)?\*/) gsub(/ \.\. /, " … ")
    if (!code && $0 ~ /^ *\*/) sub(/ \.\.$/, " …")
    if ($0 ~ /@endcode/) code = 0
}
!inside && /^ *\/\*\* *$/ { inside = 1 }
!inside { print; next }
{
    block[++count] = $0
    if ($0 ~ /^ *\* @name /) {
        title = $0
        sub(/^ *\* @name +/, "", title)
    }
    if ($0 ~ /^ *\* @\{ *$/) opens = 1
    if ($0 ~ /\*\//) {
        inside = 0
        flush()
    }
}
END { flush() }
