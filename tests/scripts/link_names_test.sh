# link_names_test.sh LIBRARY COMPILER: what the show leaves to a host must be GL, GLU, GLUT and FMOD Ex names; all
# else comes from FreeType and the C and C++ libraries.
set -u
library=$1
compiler=$2
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT

names() { sort -u; }
undefined=$(nm -u "$library" | awk '$1 == "U" { print $2 }' | names)
defined=$(nm --defined-only "$library" | awk 'NF == 3 { print $3 }' | names)
for name in libc.so.6 libm.so.6 libstdc++.so.6 libgcc_s.so.1; do
    nm -D --defined-only "$("$compiler" -print-file-name=$name)" | awk '{ sub(/@.*/, "", $3); print $3 }'
done | names >"$work/system"

foreign=$(comm -23 <(comm -23 <(echo "$undefined") <(echo "$defined")) "$work/system")
host=$(grep -E '^(gl|glu|glut)[A-Z]|^FMOD_' <<<"$foreign")
other=$(grep -vE '^(gl|glu|glut)[A-Z]|^FMOD_|^FT_|^_GLOBAL_OFFSET_TABLE_$' <<<"$foreign")

for name in glBegin gluPerspective glutDisplayFunc FMOD_System_PlaySound; do
    grep -qx "$name" <<<"$host" || { echo "FAILED: $name should be left to the host"; exit 1; }
done
[ -z "$other" ] || { echo "FAILED: the show also needs: $other"; exit 1; }
