# set_up_test.sh CASE PROJECT: tries ./run, ./test, ./page or packaging/release on a copy of what they need, on a machine whose package manager,
# user and build are made up by stand-ins on the PATH.
set -u
case=$1
project=$2

work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/bin" "$work/tree/data"
cp -r "$project/run" "$project/test" "$project/page" "$project/packaging" "$work/tree/"
for file in zev.mp3 zev_voc.mp3 Vera.ttf Arial; do echo data >"$work/tree/data/$file"; done

# The made-up machine: $work/installed lists its packages, $work/log what was asked of it.
stand_in() {
    cat >"$work/bin/$1"
    chmod +x "$work/bin/$1"
}
stand_in dpkg-query <<'END'
#!/bin/bash
grep -qx "${!#}" "$MACHINE/installed" && printf installed
END
stand_in apt-get <<'END'
#!/bin/bash
echo "apt-get $*" >>"$MACHINE/log"
cat >>"$MACHINE/swallowed"
[ "$1" = install ] || exit 0
for package in "${@:2}"; do case $package in -*) ;; *) echo "$package" >>"$MACHINE/installed" ;; esac; done
END
# Configures and builds as cmake with ninja does, as far as the commands rely on it: `-n` fails in a folder that is not
# configured.
stand_in cmake <<'END'
#!/bin/bash
echo "cmake $*" >>"$MACHINE/log"
cat >>"$MACHINE/swallowed"
folder=build/release
case " $* " in
*" -n "*)
    [ -e $folder/build.ninja ] || { echo "ninja: error: loading 'build.ninja': No such file or directory"; exit 1; }
    [ -e $folder/built ] && echo "ninja: no work to do."
    exit 0
    ;;
*" --build "*)
    mkdir -p $folder/src/hosts/desktop $folder/src/hosts/offscreen
    printf '#!/bin/bash\necho "played in ${PWD##*/} with: $* and $(cat)"\nexit 7\n' >$folder/src/hosts/desktop/skav
    printf '#!/bin/bash\necho "exported from ${PWD##*/} with: $* and $(cat)"\nexit 3\n' \
        >$folder/src/hosts/offscreen/skav-export
    chmod +x $folder/src/hosts/desktop/skav $folder/src/hosts/offscreen/skav-export
    touch $folder/built
    ;;
*)
    mkdir -p $folder
    echo "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" >$folder/CMakeCache.txt
    touch $folder/build.ninja
    ;;
esac
END
stand_in ctest <<'END'
#!/bin/bash
echo "ctest $*" >>"$MACHINE/log"
END
stand_in id <<'END'
#!/bin/bash
echo "$MACHINE_USER"
END
export MACHINE=$work MACHINE_USER=0 DISPLAY=:nowhere PATH=$work/bin:$PATH
unset WAYLAND_DISPLAY
touch "$work/log" "$work/swallowed"
grep -hv '^#' "$work"/tree/packaging/debian-packages/* >"$work/installed"

fail() {
    echo "FAILED: $*"
    echo "--- status ${status:-none}; output:"
    cat "$work/out" "$work/err" 2>/dev/null
    echo "--- asked of the machine:"
    cat "$work/log"
    exit 1
}
call() {
    (cd "$work" && "$work/tree/$@") >"$work/out" 2>"$work/err"
    status=$?
}
expect_status() { [ "$status" = "$1" ] || fail "status $1 expected"; }
expect_in() { grep -qF -- "$2" "$work/$1" || fail "'$2' expected in $1"; }
expect_not_in() { grep -qF -- "$2" "$work/$1" && fail "'$2' not expected in $1"; return 0; }
# A checkout of a version with that heading in its CHANGELOG, and programs that make files with next to nothing in them.
release_of() {
    printf '# Changelog\n\n## %s\n' "$1" >"$work/tree/CHANGELOG.md"
    echo 'project(skav VERSION 2.5.0 LANGUAGES CXX)' >"$work/tree/CMakeLists.txt"
    mkdir -p "$work/tree/docs"
    echo /build/ >"$work/tree/.gitignore"
    printf '#!/bin/bash\necho "make-pictures $*" >>"$MACHINE/log"\necho picture >"$1/cube.png"\n' >"$work/tree/docs/make-pictures"
    printf '#!/bin/bash\necho "page $*" >>"$MACHINE/log"\nmkdir -p build/page/site\necho page >build/page/site/index.html\n' \
        >"$work/tree/page"
    chmod +x "$work/tree/docs/make-pictures" "$work/tree/page"
    stand_in zip <<<$'#!/bin/bash\nls "${!#}" >"$2"'
    stand_in dpkg <<<$'#!/bin/bash\necho amd64'
    stand_in lintian <<<$'#!/bin/bash\necho "lintian $*" >>"$MACHINE/log"'
    stand_in cpack <<'END'
#!/bin/bash
echo "cpack $*" >>"$MACHINE/log"
mkdir -p build/packages
case $* in
*Source*)
    git archive --prefix=skav-2.5.0/ HEAD -o build/packages/skav-2.5.0.tar
    mv build/packages/skav-2.5.0.tar build/packages/skav-2.5.0.tar.xz
    ;;
*) touch build/packages/skav_2.5.0-1_amd64.deb build/packages/skav-data_2.5.0-1_all.deb ;;
esac
END
    mkdir -p "$work/tree/build/package/src/hosts/offscreen"
    cat >"$work/tree/build/package/src/hosts/offscreen/skav-export" <<'END'
#!/bin/bash
echo "skav-export $*" >>"$MACHINE/log"
echo video >"${!#}"
[ ! -e "$MACHINE/interrupted" ]
END
    chmod +x "$work/tree/build/package/src/hosts/offscreen/skav-export"
    export GIT_CONFIG_GLOBAL=$work/gitconfig GIT_CONFIG_NOSYSTEM=1
    git config --global user.name Tester
    git config --global user.email tester@example.org
    (cd "$work/tree" && git init -q && git add -A && git commit -qm Version)
}
without_package() { sed -i "/^$1\$/d" "$work/installed"; }

case $case in
run_help)
    call run --help
    expect_status 0
    for word in --window --help flashing; do expect_in out "$word"; done
    expect_not_in log cmake
    ;;
run_unknown_option)
    call run --fullscreen
    expect_status 2
    expect_in err --fullscreen
    [ "$(wc -l <"$work/err")" = 1 ] || fail "one line expected"
    expect_not_in log cmake
    ;;
run_installs_what_is_missing_as_root)
    without_package libcubeb-dev
    without_package ninja-build
    call run </dev/null
    expect_in log "apt-get update"
    expect_in log "install -y -qq --no-install-recommends libcubeb-dev ninja-build"
    expect_status 7
    ;;
run_leaves_the_package_manager_alone_when_nothing_is_missing)
    call run --window </dev/null
    expect_status 7
    expect_in out "played in data with: --strict --window"
    expect_not_in log apt-get
    : >"$work/log"
    call run </dev/null
    expect_status 7
    [ "$(cat "$work/log")" = "cmake --build --preset release --target skav -- -n" ] || fail "only a check expected"
    [ ! -s "$work/err" ] || fail "nothing to say"
    ;;
run_prints_the_list_without_the_right_to_install)
    stand_in sudo <<<$'#!/bin/bash\nexit 1'
    MACHINE_USER=1000
    without_package libmpg123-dev
    without_package cmake
    call run </dev/null
    expect_status 1
    expect_in err "apt-get install cmake libmpg123-dev"
    [ ! -s "$work/log" ] || fail "nothing should have been done"
    ;;
test_quick_tests_one_build_without_real_time)
    call test --quick -R Timeline </dev/null
    expect_status 0
    expect_in log "ctest --preset ci"
    expect_in log "--label-exclude realtime|show|long --parallel $(($(nproc) + 1)) -R Timeline"
    expect_not_in log sanitize
    ;;
test_runs_long_tests_only_without_the_sanitizers)
    call test </dev/null
    expect_status 0
    for preset in ci sanitize; do expect_in log "ctest --preset $preset --label-regex realtime --parallel 4"; done
    expect_in log "ctest --preset ci --label-regex show"
    expect_in log "ctest --preset ci --label-exclude realtime|show --parallel $(($(nproc) + 1))"
    expect_in log "ctest --preset sanitize --label-exclude realtime|long --parallel $(($(nproc) + 1))"
    ;;
test_fails_where_the_second_build_does)
    mv "$work/bin/cmake" "$work/bin/working-cmake"
    stand_in cmake <<'END'
#!/bin/bash
[[ "$*" != *"--build --preset sanitize"* ]] || { echo "a broken compiler"; exit 1; }
exec working-cmake "$@"
END
    call test </dev/null
    expect_status 1
    expect_in err "a broken compiler"
    expect_in log "ctest --preset ci"
    expect_not_in log "ctest --preset sanitize"
    ;;
test_prints_the_list_without_the_right_to_install)
    stand_in sudo <<<$'#!/bin/bash\nexit 1'
    MACHINE_USER=1000
    without_package libgtest-dev
    call test </dev/null
    expect_status 1
    expect_in err "apt-get install libgtest-dev"
    [ ! -s "$work/log" ] || fail "nothing should have been done"
    ;;
test_installs_with_sudo)
    stand_in sudo <<<$'#!/bin/bash\n[ "$1" = -n ] && shift\necho "sudo $*" >>"$MACHINE/log"\nexec "$@"'
    MACHINE_USER=1000
    without_package libgtest-dev
    call test </dev/null
    expect_status 0
    expect_in log "sudo apt-get update"
    expect_in log "libgtest-dev"
    expect_in log "ctest --preset ci"
    expect_in log "ctest --preset sanitize"
    ;;
run_passes_its_options_on)
    call run --language auto --from 1:14 </dev/null
    expect_status 7
    expect_in out "played in data with: --strict --language auto --from 1:14 and "
    call run --keep-mode --scale 2 --smooth --stats </dev/null
    expect_in out "played in data with: --strict --keep-mode --scale 2 --smooth --stats and "
    unset DISPLAY
    call run --from 12 </dev/null
    expect_status 3
    expect_in out "--force -o skav.mp4 --from 12 and "
    call run --language </dev/null
    expect_status 2
    expect_in err "--language needs a value"
    ;;
run_keeps_standard_input_for_the_show)
    without_package ninja-build
    call run <<<"e of the user"
    expect_in out "and e of the user"
    [ ! -s "$work/swallowed" ] || fail "standard input was swallowed by the set-up"
    ;;
run_writes_a_video_where_there_is_no_display)
    unset DISPLAY
    without_package libavformat-dev
    call run <<<"e of the user"
    expect_status 3
    expect_in out "exported from tree with: --data data --fps 30 --force -o skav.mp4 and e of the user"
    expect_in log "install -y -qq --no-install-recommends libavformat-dev"
    expect_in err "No display"
    expect_in err "30 frames a second take about 150 s; ./run --fps 60 takes twice as long"
    expect_in err "--play"
    call run --fps 60 <<<"e of the user"
    expect_status 3
    expect_in out "--fps 60 --force -o skav.mp4"
    call run --fps </dev/null
    expect_status 2
    expect_in err "--fps needs a number"
    ;;
run_takes_a_frame_rate_only_for_a_video)
    call run --fps 60 </dev/null
    expect_status 1
    expect_in err "--fps is for the video"
    unset DISPLAY
    call run --play --fps 60 </dev/null
    expect_status 1
    expect_in err "--fps is for the video"
    [ ! -s "$work/log" ] || fail "nothing should have been done"
    ;;
run_works_through_a_symbolic_link_and_in_a_folder_with_blanks)
    mv "$work/tree" "$work/ein schöner Ort"
    ln -s "$work/ein schöner Ort/run" "$work/play"
    (cd / && "$work/play") </dev/null >"$work/out" 2>"$work/err"
    status=$?
    expect_status 7
    expect_in out "played in data"
    ;;
run_builds_anew_in_a_moved_checkout)
    call run </dev/null
    mv "$work/tree" "$work/moved"
    : >"$work/log"
    (cd / && "$work/moved/run") </dev/null >"$work/out" 2>"$work/err"
    status=$?
    expect_status 7
    expect_in err "starting anew"
    expect_in log "cmake --preset release"
    expect_in moved/build/release/CMakeCache.txt "=$work/moved"
    ;;
run_configures_where_that_was_left_unfinished)
    call run </dev/null
    rm "$work/tree/build/release/build.ninja"
    : >"$work/log"
    call run </dev/null
    expect_status 7
    expect_in log "cmake --preset release"
    ;;
run_installs_although_the_package_lists_cannot_be_updated)
    stand_in apt-get <<<$'#!/bin/bash\necho "apt-get $*" >>"$MACHINE/log"\n[ "$1" = install ]'
    without_package ninja-build
    call run </dev/null
    expect_status 7
    expect_in log "install -y -qq --no-install-recommends ninja-build"
    expect_in err "could not be updated"
    ;;
run_plays_without_a_display_when_told_to)
    unset DISPLAY
    stand_in Xvfb <<<$'#!/bin/bash\necho "Xvfb $*" >>"$MACHINE/log"\necho 77\nexec sleep 60'
    without_package libavformat-dev
    call run --play </dev/null
    expect_status 7
    expect_in out "played in data with: --strict and "
    expect_in err "Xvfb :77"
    expect_not_in log apt-get
    ;;
run_opens_no_window_where_there_is_no_display)
    unset DISPLAY
    call run --window </dev/null
    expect_status 1
    expect_in err "no display"
    [ ! -s "$work/log" ] || fail "nothing should have been done"
    ;;
run_says_what_a_wayland_session_lacks)
    unset DISPLAY
    export WAYLAND_DISPLAY=wayland-0
    call run </dev/null
    expect_status 1
    expect_in err "Install Xwayland"
    [ ! -s "$work/log" ] || fail "nothing should have been done"
    WAYLAND_DISPLAY= call run </dev/null
    expect_status 3
    ;;
release_makes_everything_with_its_checksums)
    release_of '2.5.0, 2030-01-31'
    call packaging/release "$work/released files" </dev/null
    expect_status 0
    cd "$work/released files" || fail "no folder"
    [ "$(find . -type f ! -path './.*' | sort | paste -sd ' ')" = "./SHA256SUMS ./skav-2.5.0-de.mp4 ./skav-2.5.0-en.mp4 \
./skav-2.5.0-page.zip ./skav-2.5.0.tar.xz ./skav-data_2.5.0-1_all.deb ./skav_2.5.0-1_amd64.deb ./stills/cube.png" ] || fail "$(find .)"
    sha256sum --check --quiet SHA256SUMS || fail "wrong checksums"
    [ "$(wc -l <SHA256SUMS)" = 7 ] || fail "$(cat SHA256SUMS)"
    [ "$(cat skav-2.5.0-page.zip)" = index.html ] || fail "the page is not in its archive"
    expect_in log "page --build"
    expect_in log "lintian --allow-root --fail-on error,warning"
    ;;
release_takes_a_folder_that_is_no_source)
    release_of '2.5.0, 2030-01-31'
    call packaging/release --trial tree/published </dev/null
    expect_status 1
    expect_in err "lies among the sources"
    call packaging/release --trial published </dev/null
    expect_status 0
    [ -s "$work/published/SHA256SUMS" ] || fail "not in the folder that was named"
    ;;
release_goes_on_where_it_was_interrupted)
    release_of '2.5.0, 2030-01-31'
    touch "$work/interrupted"
    call packaging/release </dev/null
    expect_status 1
    expect_in err "skav-2.5.0-en.mp4 could not be made"
    [ ! -e "$work/tree/build/release-files/skav-2.5.0-en.mp4" ] || fail "a part of a video is taken for the whole"
    rm "$work/interrupted"
    : >"$work/log"
    call packaging/release </dev/null
    expect_status 0
    expect_in err "skav-2.5.0.tar.xz is there already"
    expect_in log "skav-2.5.0-en.mp4"
    expect_not_in log cpack
    expect_not_in log make-pictures
    ;;
release_is_of_one_commit)
    release_of '2.5.0, 2030-01-31'
    call packaging/release </dev/null
    expect_status 0
    (cd "$work/tree" && git commit -q --allow-empty -m Later)
    call packaging/release </dev/null
    expect_status 1
    expect_in err "files of another commit"
    echo change >>"$work/tree/CHANGELOG.md"
    call packaging/release </dev/null
    expect_status 1
    expect_in err "not committed"
    ;;
release_needs_a_dated_version)
    release_of Unreleased
    call packaging/release </dev/null
    expect_status 1
    expect_in err "## 2.5.0, DATE"
    call packaging/release --trial </dev/null
    expect_status 0
    ;;
page_help)
    call page --help
    expect_status 0
    for word in --build --test; do expect_in out "$word"; done
    expect_not_in log cmake
    ;;
page_unknown_option)
    call page --window
    expect_status 2
    expect_in err --window
    expect_not_in log cmake
    ;;
page_fetches_the_sources_once_and_builds)
    stand_in apt-helper <<'END'
#!/bin/bash
# download-file ADDRESS FILE SUM: an archive of the sources, empty.
echo "apt-helper $*" >>"$MACHINE/log"
case $2 in *freetype*) folder=freetype-2.12.1 ;; *) folder=glu-9.0.2 ;; esac
mkdir -p "$MACHINE/$folder" && tar -C "$MACHINE" -cf "$3" $folder
END
    call page --build
    expect_status 0
    expect_in log "apt-helper download-file http://deb.debian.org/debian/pool/main/f/freetype/"
    expect_in log "libglu_9.0.2.orig.tar.gz SHA256:24effdfb952453cc"
    expect_in log "cmake --build --preset page"
    expect_in err build/page/site
    : >"$work/log"
    call page --build
    expect_status 0
    expect_not_in log apt-helper
    : >"$work/log"
    call page --test -R switch
    expect_status 0
    expect_in log "cmake --build --preset ci --target picture_tests texture_hashes"
    expect_in log "ctest --preset page -R switch"
    ;;
page_says_what_to_do_when_the_sources_cannot_be_fetched)
    stand_in apt-helper <<<$'#!/bin/bash\necho "no connection"\nexit 100'
    call page --build
    expect_status 1
    expect_in err "no connection"
    expect_in err "build/sources/freetype_2.12.1"
    expect_in err "SHA-256 7dedb6b9adf33155"
    expect_not_in log cmake
    ;;
*) fail "no such case: $case" ;;
esac
