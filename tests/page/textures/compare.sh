#!/bin/bash
# Usage: compare.sh COMMAND COMMAND
# Whether both print the same list of textures in either language, and the languages differ.
set -euo pipefail

for typed in e d; do
    declare "first_$typed=$($1 <<<"$typed" | grep '^texture')"
    declare "second_$typed=$($2 <<<"$typed" | grep '^texture')"
done
diff <(echo "$first_e") <(echo "$second_e")
diff <(echo "$first_d") <(echo "$second_d")
[ "$first_e" != "$first_d" ]
