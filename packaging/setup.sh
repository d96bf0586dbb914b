# Functions that ./run and ./test share, which source this from the project's root: installing packages, and building.

say() { printf '%s\n' "$*" >&2; }
die() {
    say "$*"
    exit 1
}

# The packages of the given lists in packaging/debian-packages.
packages_of() { grep -hv '^#' "${@/#/packaging/debian-packages/}"; }

# Those of the given packages that are not installed.
missing_of() {
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || printf '%s\n' "$package"
    done
}

# Installs the packages of the given lists that the machine lacks. Without the right to install it prints the command
# that would, and ends.
require_packages() {
    command -v dpkg-query >/dev/null || {
        say "This machine has no dpkg: taking for granted that the equivalents of these Debian packages are here:"
        say "  $(packages_of "$@" | sort -u | paste -sd ' ')"
        return 0
    }
    local missing as_root=()
    missing=$(missing_of $(packages_of "$@" | sort -u))
    [ -n "$missing" ] || return 0
    missing=$(paste -sd ' ' <<<"$missing")
    if [ "$(id -u)" != 0 ]; then
        # With a terminal sudo may ask for a password; without one it must not.
        if [ -t 2 ] && command -v sudo >/dev/null; then
            as_root=(sudo)
        elif sudo -n true 2>/dev/null; then
            as_root=(sudo -n)
        else
            die "Missing packages, and no right to install them. As root:
  apt-get install $missing"
        fi
    fi
    say "Installing: $missing"
    # Standard input is for the show.
    # An update may fail for reasons that do not matter here, such as an expired repository of another source.
    "${as_root[@]}" apt-get update -qq </dev/null >&2 ||
        say "The package lists could not be updated; trying with those that are here."
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends $missing </dev/null >&2 ||
        die "Installing failed. What is missing: $missing"
}

# Whether a preset's build folder was made for this checkout. After a move or a copy it still names the old place.
is_ours() { grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "build/$1/CMakeCache.txt"; }

# Configures a preset. A build folder that was made for another place is deleted first.
configure() {
    local preset=$1 folder=build/$1 log
    if [ -e "$folder/CMakeCache.txt" ] && ! is_ours "$preset"; then
        say "$folder was not made for $PWD: starting anew."
        rm -rf "$folder"
    fi
    log=$(cmake --preset "$preset" </dev/null 2>&1) || die "$log
Configuring failed (preset $preset)."
}

# Builds targets of a preset, by default all. Configures it first if that has not been done, or was done without these
# targets. Prints nothing if there is nothing to do.
build() {
    local preset=$1 log plan command=(cmake --build --preset "$1")
    shift
    [ $# = 0 ] || command+=(--target "$@")
    if ! is_ours "$preset" || ! plan=$("${command[@]}" -- -n </dev/null 2>&1); then
        configure "$preset"
    elif grep -q '^ninja: no work to do' <<<"$plan"; then
        return
    fi
    say "Building ($preset) ..."
    log=$("${command[@]}" </dev/null 2>&1) || die "$log
Building failed (preset $preset)."
}
