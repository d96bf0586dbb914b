# Shared by ./run and ./test, which source it from the project's root: installing what is missing, and building.

say() { printf '%s\n' "$*" >&2; }
die() {
    say "$*"
    exit 1
}

# The packages that a list in packaging/debian-packages names.
packages_of() { grep -hv '^#' "${@/#/packaging/debian-packages/}"; }

# Of the packages given, those that are not installed.
missing_of() {
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || printf '%s\n' "$package"
    done
}

# Installs whatever the lists given name and the machine lacks. Asks for nothing when nothing is missing. Where it
# may not install, it prints what to install and ends, with nothing done.
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
        # With a terminal sudo may ask for a password there; without one it must not need any.
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
    # Standard input stays the show's.
    "${as_root[@]}" apt-get update -qq </dev/null >&2 &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends $missing </dev/null >&2 ||
        die "Installing failed. What is missing: $missing"
}

# Configures a preset, with further cmake arguments.
configure() {
    local preset=$1 log
    shift
    log=$(cmake --preset "$preset" "$@" </dev/null 2>&1) || die "$log
Configuring failed (preset $preset)."
}

# Builds targets of a configured preset, all of them when none is named. Says so only when there is something to do.
build() {
    local preset=$1 log command=(cmake --build --preset "$1")
    shift
    [ $# = 0 ] || command+=(--target "$@")
    "${command[@]}" -- -n </dev/null 2>&1 | grep -q '^ninja: no work to do' && return
    say "Building ($preset) ..."
    log=$("${command[@]}" </dev/null 2>&1) || die "$log
Building failed (preset $preset)."
}
