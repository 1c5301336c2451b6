# What run, test and the style check share: messages, installing packages, building. Sourced by bash from the root of the
# repository.

say() {
    printf '%s\n' "$*"
}

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# quietly LOG COMMAND...: runs the command with its output in LOG; shows the end of the log and stops when it fails.
quietly() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    if ! "$@" >"$log" 2>&1 </dev/null; then
        tail -n 60 "$log" >&2
        fail "Failed: $*
See $log."
    fi
}

# The packages of the given sections, one per line.
packages_of() {
    awk -v sections=" $* " '
        /^\[/ { section = substr($0, 2, length($0) - 2); next }
        /^[^#]/ && NF && index(sections, " " section " ") { print $1 }' scripts/packages.txt
}

# need_packages SECTION...: installs the missing packages of these sections of packages.txt.
need_packages() {
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
        fail "This script installs packages with apt and needs Debian 12 or 13. On another system, install the
equivalents of scripts/packages.txt and build with: cmake --preset release && cmake --build --preset release"

    local wanted missing
    wanted=$(packages_of "$@" | sort)
    missing=$(comm -23 <(printf '%s\n' "$wanted") \
        <(dpkg-query -W -f='${Package} ${db:Status-Status}\n' | awk '$2 == "installed" { print $1 }' | sort -u))
    [ -n "$missing" ] || return 0

    local -a apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "Some packages are missing, and only the administrator can install them.
Please ask them to run: apt-get install" $missing
        say "Some packages are missing; you may be asked for your password to install them."
        sudo -v || fail "Without the administrator's password the packages cannot be installed."
        apt=(sudo "${apt[@]}")
    fi
    say "Fetching the list of packages"
    quietly build/log/apt-update.log "${apt[@]}" update
    say "Installing $(wc -w <<<"$missing") packages (this takes a few minutes the first time)"
    quietly build/log/apt-install.log "${apt[@]}" install -y --no-install-recommends $missing
}

# build PRESET: configures the build if needed and builds everything of that preset.
build() {
    local preset=$1
    local cache=build/$preset/CMakeCache.txt
    if [ -f "$cache" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$cache"; then
        rm -rf "build/$preset" # the repository was copied or moved
    fi
    if [ ! -f "build/$preset/build.ninja" ]; then
        say "Preparing the build ($preset)"
        quietly "build/log/configure-$preset.log" cmake --preset "$preset"
    fi
    say "Building ($preset, $(nproc) cores)"
    quietly "build/log/build-$preset.log" cmake --build --preset "$preset"
}
