# Fresh Debian systems for trials, in folders of their own. To be sourced, as root. Needs debootstrap, overlayfs, Xvfb.

readonly roots=${SKAV_ROOTS:-/var/tmp/skav-roots} # what is downloaded stays there for the next run
readonly release=bookworm
readonly base=$roots/$release

# Downloads the minimal system, once. Waits while another script uses it.
make_base() {
    mkdir -p "$roots/archives"
    exec {lock}>"$roots/lock"
    flock "$lock"
    [ -e "$base.complete" ] && return
    rm -rf "$base"
    mkdir -p "$base"
    local mirror=http://deb.debian.org
    debootstrap --variant=minbase "$release" "$base" "$mirror/debian" >"$base.log" 2>&1 || {
        tail -n 5 "$base.log" >&2
        return 1
    }
    # The way to the mirror is this machine's: proxies and credentials.
    cp -n /etc/apt/apt.conf.d/* "$base/etc/apt/apt.conf.d/"
    rm -f "$base"/etc/apt/apt.conf.d/*docker*
    cp /etc/resolv.conf "$base/etc/"
    # The sources of an installed system, which is up to date.
    printf 'deb %s main\n' "$mirror/debian $release" "$mirror/debian $release-updates" \
        "$mirror/debian-security $release-security" >"$base/etc/apt/sources.list"
    root=$base in_root sh -c 'apt-get update && DEBIAN_FRONTEND=noninteractive apt-get dist-upgrade -y && apt-get clean' \
        >>"$base.log" 2>&1 </dev/null || {
        tail -n 5 "$base.log" >&2
        return 1
    }
    touch "$base.complete"
}

# open_root NAME: makes $root, a copy-on-write copy of the minimal system with a user `viewer`, who may use sudo where
# that is installed.
open_root() {
    folder=$roots/$1.$$
    root=$folder/root
    mkdir -p "$folder/changes" "$folder/work" "$root"
    mount -t overlay overlay -o "lowerdir=$base,upperdir=$folder/changes,workdir=$folder/work" "$root"
    mount -t proc proc "$root/proc"
    mount -t sysfs -o ro sysfs "$root/sys"
    mount -t tmpfs -o mode=755 tmpfs "$root/dev"
    mkdir "$root/dev/pts" "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=666 devpts "$root/dev/pts"
    mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
    local device
    for device in null zero full random urandom tty; do
        touch "$root/dev/$device"
        mount --bind "/dev/$device" "$root/dev/$device"
    done
    ln -s pts/ptmx "$root/dev/ptmx"
    ln -s /proc/self/fd "$root/dev/fd"
    mount --bind "$roots/archives" "$root/var/cache/apt/archives"
    echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/trial" # no waiting for the disk
    cp /etc/resolv.conf "$root/etc/"
    echo "127.0.0.1 localhost $(hostname)" >"$root/etc/hosts"
    chroot "$root" useradd --create-home viewer
}

# Ends what runs in $root, and deletes it.
close_root() {
    [ -n "${root-}" ] || return 0
    local process
    for process in /proc/[0-9]*; do
        [ "$(readlink "$process/root")" = "$root" ] && kill -KILL "${process#/proc/}"
    done 2>/dev/null
    sleep 0.2
    umount --recursive "$root" || umount --recursive --lazy "$root"
    rm -rf --one-file-system "$folder"
    root=
}

# in_root COMMAND...: runs a command in $root as root, with a clean environment, in which also a script in the background
# can be interrupted. as_viewer: as the user, at home.
in_root() {
    env -i --default-signal=INT PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root chroot "$root" "$@"
}
as_viewer() {
    in_root setpriv --reuid viewer --regid viewer --init-groups env HOME=/home/viewer \
        ${DISPLAY+DISPLAY="$DISPLAY"} bash -euc "cd; $*"
}

# watch COMMAND: runs a command as the user on a virtual display until it has shown 200 different pictures, more than the
# show has while it loads, and then interrupts it as Ctrl-C does. The status is the command's; $pictures counts them.
watch() {
    local number display command status=0
    pictures=0
    screen=$(mktemp -d) || return 1
    exec {number}< <(exec Xvfb -displayfd 1 -screen 0 1280x1024x24 -fbdir "$screen" 2>/dev/null)
    server=$!
    read -r -t 30 display <&"$number" || return 1
    set -m # Ctrl-C is for a process group
    DISPLAY=:$display as_viewer "$1" </dev/null &
    command=$!
    set +m
    touch "$screen/seen"
    while
        pictures=$(sort -u "$screen/seen" | wc -l)
        [ "$pictures" -lt 200 ] && kill -0 $command 2>/dev/null
    do
        cksum <"$screen/Xvfb_screen0" >>"$screen/seen"
        sleep 0.05
    done
    kill -INT -- -$command 2>/dev/null
    wait $command || status=$?
    exec {number}<&-
    close_screen
    return $status
}
# For a trap: ends the display if there is one.
close_screen() {
    [ -z "${server-}" ] || kill "$server"
    [ -z "${screen-}" ] || rm -rf "$screen"
    server=
    screen=
}

# Installs packages in $root.
install_packages() {
    in_root apt-get update -qq
    in_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "$@" >/dev/null 2>&1 </dev/null
}
