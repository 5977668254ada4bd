# Input filter of Doxygen, for what headers say in a way that is meant for readers of their text. Line numbers stay.
#
# - A comment with @name and @{ describes every member of its group. Doxygen repeats it at each of them if the group is
#   opened before, in comments of their own, and the comment stands on the first member. Not every member has every
#   parameter (the forms with and without _I share a comment), so the parameters become a list.
# - A range, "0 .. N", gets an ellipsis: a dot before a blank would end the summary.
# - What a pointer points to, "*pSum", is no beginning of italics.
function flush(   i, grouped, name) {
    grouped = title != "" && opens
    for (i = 1; i <= count; ++i) {
        if (grouped) {
            # The title opens the group in the first two lines; "@name" stands in one of them.
            sub(/ @name .*/, "", block[i])
            sub(/ \* @\{ *$/, " *", block[i])
            if (i == 1) sub(/\/\*\*/, "/** @name " title, block[i])
            if (i == 2) sub(/^ *\*/, " *//** @{ *//**", block[i])
            if (match(block[i], / \* @param +[A-Za-z0-9_]+ +/)) {
                name = block[i]
                sub(/.* @param +/, "", name)
                sub(/ .*/, "", name)
                block[i] = " * - `" name "` " substr(block[i], RSTART + RLENGTH)
            }
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
    if (!code && $0 ~ /^ *(\/\*)?\*/) gsub(/\*p[A-Z]/, "\\\\&")
    if ($0 ~ /@endcode/) code = 0
}
!inside && /^ *\/\*\* *(@name .*)?$/ { inside = 1 }
!inside { print; next }
{
    block[++count] = $0
    if (match($0, /@name +/)) title = substr($0, RSTART + RLENGTH)
    if ($0 ~ /^ *\* @\{ *$/) opens = 1
    if ($0 ~ /\*\//) {
        inside = 0
        flush()
    }
}
END { flush() }
