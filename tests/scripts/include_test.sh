# include_test.sh SOURCES: includes go down only, and no two files need each other.
set -u
cd "$1" || exit 1

# From the top to the bottom: a file may include its own folder and what stands to the right of it.
floors='show/driver show/scenes show/stage show/text show/image
show/driver show/fmod_ex.h
hosts/desktop hosts/common show/fmod_ex.h
hosts/offscreen hosts/common show/fmod_ex.h
hosts/page hosts/common show/fmod_ex.h'

# "FILE INCLUDED" for each include of a file of the project.
includes=$(grep -roE '^ *# *include *"[^"]+"' --include=*.h --include=*.cpp . | sed -E 's|^\./([^:]+):.*"(.*)"|\1 \2|')
[ "$(wc -l <<<"$includes")" -gt 100 ] || { echo "FAILED: no includes found in $1"; exit 1; }

climbing=$(awk '
    NR == FNR { for (i = 1; i <= NF; ++i) floor[NR, i] = $i; rows = NR; next }
    {
        allowed = 0
        for (row = 1; row <= rows; ++row) {
            inside = 0
            for (i = 1; (row, i) in floor; ++i) {
                inside = inside || index($1 "/", floor[row, i] "/") == 1
                allowed = allowed || inside && index($2 "/", floor[row, i] "/") == 1
            }
        }
        if (!allowed) print "  " $1 " includes " $2
    }' <(echo "$floors") - <<<"$includes")
[ -z "$climbing" ] || { echo "FAILED: includes that do not go down:"; echo "$climbing"; exit 1; }

# A header and the source of the same name are one unit.
circle=$(sed -E 's/\.(h|cpp)( |$)/\2/g' <<<"$includes" | awk '$1 != $2' | tsort 2>&1 >/dev/null) ||
    { echo "FAILED: files that need each other:"; sed -n 's/^tsort: \([^-]\)/  \1/p' <<<"$circle"; exit 1; }
