# manual_test.sh PROGRAM PAGE: the program's --help and its manual page have the same options.
set -u
help=$("$1" --help) || { echo "FAILED: $1 --help"; exit 1; }

# Every word of the help that begins as an option does; in the page, the names in the heads of its lists.
in_help=$(grep -oE '(^|[ ,("])--?[a-z][a-z-]*' <<<"$help" | grep -oE -- '-.*' | sort -u)
in_page=$(sed -n 's/^\.It//p' "$2" | grep -oE ' Fl [a-z-]+' | sed 's/ Fl /-/' | sort -u)

[ "$(wc -l <<<"$in_help")" -gt 5 ] || { echo "FAILED: no options found in the help"; exit 1; }
[ "$in_help" = "$in_page" ] ||
    { echo "FAILED: only in --help (-) or only in $2 (+):"; diff -U 0 <(echo "$in_help") <(echo "$in_page") | grep '^[-+]-'; exit 1; }
