# Turns the comments of a header into those that Doxygen reads; the lines keep their numbers. The
# opening comment describes the file, a comment after a declaration that declaration, and a doc
# comment all declarations up to the next empty line. A line "name  text" describes a parameter.
function release(    start, end, i) {
    start = declarations > 1 ? "/** @{ */ " : ""
    end = declarations > 1 ? " /** @} */" : ""
    for (i = 1; i <= count; ++i) {
        print (i == 1 ? start : "") lines[i] (i == count ? end : "")
    }
    count = declarations = 0
}

NR == 1 && match($0, /^\/[\/*] [^:]*: /) {
    text = toupper(substr($0, RLENGTH + 1, 1)) substr($0, RLENGTH + 2)
    $0 = (/^\/\// ? "/// \\file\n/// " : "/** \\file\n * ") text
    opening = 1
}
opening && /^\/\/( |$)/ { sub(/^/, "/") }
opening && /^$/ { opening = 0; next } # makes up for the line of "\file"

# Comments beside a declaration and, in C, before it.
!/^ *(\/|\*|#include)/ { sub(/ \/\/ /, " ///< ") }
/^ *[A-Z#].*\/\*.*\*\/$/ { sub(/ \/\* /, " /**< ") }
/^ *\/\* [^-]/ { sub(/\/\*/, "/**"); within = 1 }

/^ *(\/\/\/|\/?\*+) / { gsub(/<[a-z]+>/, "\\\\&") }
match($0, /^ *(\/\/\/|\*) [A-Za-z]+(, [A-Za-z]+)*  +/) {
    names = substr($0, 1, RLENGTH)
    gsub(/, /, ",", names)
    sub(/(\/\/\/|\*) /, "&\\param ", names)
    $0 = names substr($0, RLENGTH + 1)
}
/^ *(\/\/\/|\*) Returns / { sub(/Returns/, "\\return") }

within || /^ *\/\/\/ / {
    if (declarations) {
        release()
    }
    lines[++count] = $0
    within = within && !/\*\//
    next
}
count && /^[^{}#]*[,;(]( \/\/.*)?$/ { lines[++count] = $0; declarations += /;/; next }
{ release(); print }
END { release() }
