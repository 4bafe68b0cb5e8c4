# shellcheck shell=bash
# What ./run, ./test and .ci/run share: installing what is missing, and a quiet build.
# They set "root", the folder of the checkout, and read packages.sh before this file.

: "${root:?}"

say() { printf '%s\n' "$*"; }

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# quietly LOG COMMAND…: runs a command with its output in a file; shows the file's end when it fails.
quietly() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    if ! "$@" </dev/null >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        fail "Failed: $* (all that it said is in $log)"
    fi
}

# missing_packages PACKAGE…: those that are not installed, one a line.
missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        grep -qxF "installed $package" <<<"$installed" || printf '%s\n' "$package"
    done
}

# need_packages PACKAGE…: installs those that are missing, saying which. One query when none is.
need_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        [[ -d $root/build ]] || say "No Debian system; these must be there already: $*"
        return 0
    fi
    local missing
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    say "Installing ${missing[*]} …"
    install_packages "${missing[@]}"
}

as_root() {
    if ((EUID == 0)); then "$@"; else sudo "$@"; fi
}

# need_servers PACKAGE…: mail servers that the tests start for themselves. Installing them must not
# give the machine a server that runs.
need_servers() {
    local missing policy=/usr/sbin/policy-rc.d
    missing=$(missing_packages "$@")
    [[ -n $missing ]] || return 0
    if [[ -d /run/systemd/system ]]; then
        say "Masking the service of Dovecot: only the tests are to start it."
        as_root systemctl mask --quiet dovecot.service dovecot.socket
        need_packages "$@"
    elif [[ -e $policy ]]; then
        need_packages "$@"
    else
        printf '#!/bin/sh\nexit 101\n' | as_root tee "$policy" >/dev/null
        as_root chmod 755 "$policy"
        need_packages "$@"
        as_root rm "$policy"
    fi
}

install_packages() {
    local as_root=() apt=(env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0
        -o DPkg::Lock::Timeout=120)
    if ((EUID != 0)); then
        { command -v sudo >/dev/null && sudo true; } ||
            fail "Installing needs an administrator. Run this as root, then start again:" \
                "apt-get update && apt-get install --no-install-recommends $*"
        as_root=(sudo)
    fi
    quietly "$root/build/apt-update.log" "${as_root[@]}" "${apt[@]}" update
    quietly "$root/build/apt-install.log" "${as_root[@]}" "${apt[@]}" install --no-install-recommends "$@"
}

# is_configured PRESET: whether its build folder is whole and belongs to this checkout, which may
# have been moved or copied since.
is_configured() {
    [[ -f $root/build/$1/build.ninja ]] &&
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$root/build/$1/CMakeCache.txt"
}

# build PRESET [TARGET…]: brings the targets (else all) of a preset up to date. Two builds of one
# folder wait for each other.
build() {
    local preset=$1
    shift
    if ! is_configured "$preset"; then
        say "Building Ostrix ($preset); the first time takes some minutes …"
        rm -rf "$root/build/$preset"
        quietly "$root/build/$preset-configure.log" env -C "$root" cmake --preset "$preset"
    fi
    quietly "$root/build/$preset-build.log" \
        flock "$root/build/$preset/.build-lock" ninja -C "$root/build/$preset" "$@"
}

# Compilers' results are kept between builds where ccache is installed.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

# run_tests PRESET: every test of a preset, in as many processes as there are cores. Ends in CTest's
# closing lines.
run_tests() {
    env LC_ALL=C.UTF-8 ctest --test-dir "$root/build/$1" -j "$(nproc)" --no-tests=error \
        --output-on-failure --progress </dev/null
}
