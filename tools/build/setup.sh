# Shared by ./run, ./test, .ci/run and the packaging: installs what is missing, builds, prepares
# Wine.
# To be sourced from the repository's root.

# The Debian packages, by what they are for. ./run installs RUN_PACKAGES, or with --on linux
# LINUX_PACKAGES; ./test installs RUN_PACKAGES, TEST_PACKAGES and VM_PACKAGES.
BUILD_PACKAGES=(
    cmake ninja-build                                            # builds either executable
    nlohmann-json3-dev libcli11-dev                              # libraries, used header-only
    libkainjow-mustache-dev libtomlplusplus-dev libutfcpp-dev    # the same
    libboost-dev                                                 # the same: distributions
)
RUN_PACKAGES=(
    "${BUILD_PACKAGES[@]}"
    g++-mingw-w64-x86-64-posix                                   # builds the executable
    wine wine64                                                  # runs it
)
# The executable for Linux; the tests run there too.
LINUX_PACKAGES=(
    "${BUILD_PACKAGES[@]}"
    g++                                                          # builds it
    pkgconf libnl-3-dev libnl-genl-3-dev                         # radios by nl80211
    libasound2-dev                                               # the tone of mrlrsignal watch
)
TEST_PACKAGES=(
    "${LINUX_PACKAGES[@]}"
    clang lld googletest                                         # builds the tests and fuzzers
    libvalijson-dev                                              # reports against their schemas
    libbenchmark-dev                                             # builds the benchmarks
    xvfb xauth xdotool imagemagick                               # a display, keys and screenshots
    fonts-dejavu-core fonts-wqy-microhei                         # letters of all languages
    mosquitto mosquitto-clients rsyslog                          # what the examples for stations feed
    postgresql python3-psycopg2 python3-paho-mqtt openssl        # the archive of stations
    python3 python3-jsonschema git                               # packaging, system tests, checks
    cmark-gfm                                                    # the packages' pages
    dpkg-dev man-db                                              # the Debian package
    tmux                                                         # a terminal that tests read
    libxml2-utils                                                # JUnit reports against their schema
    chromium poppler-utils                                       # HTML reports, on screen and paper
)
# The virtual machine of tools/radiovm; what runs in it is fetched and unpacked, not installed.
VM_PACKAGES=(qemu-system-x86 cpio binutils)
# Gives the dialog a display on a machine without one.
DISPLAY_PACKAGES=(xvfb xauth)
# Only the checks of .ci/run need these.
CHECK_PACKAGES=(clang-format clang-tidy cppcheck)

# The targets that a run of the executables needs: themselves and the simulator.
PRODUCT_TARGETS=(mrlrantenna mrlrsignal radiosim_dll)

ROOT=$PWD
WINE_PREFIX="$ROOT/build/wineprefix"

say() { printf '%s\n' "$*" >&2; }

# size_of PACKAGE...: how much apt-get will fetch and unpack for them, in the words of apt-get.
size_of() {
    LC_ALL=C apt-get install --assume-no --no-install-recommends "$@" 2>/dev/null |
        sed -n 's/^Need to get \(.*\) of archives.*/\1 to fetch, /p
                s/^After this operation, \(.*\) of additional.*/\1 on the disk/p' | tr -d '\n'
}

# ensure_packages NAME...: installs what is missing of them, and says so only then.
ensure_packages() {
    local installed missing=() package
    installed=$(dpkg-query -W -f '${Package} ${db:Status-Abbrev}\n' "$@" 2>/dev/null)
    for package in "$@"; do
        grep -qxF "$package ii " <<<"$installed" || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    local elevate=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            say "Missing Debian packages: ${missing[*]}"
            say "Install them as root (apt-get install ${missing[*]}), then start this again."
            exit 69
        fi
        elevate=(sudo)
    fi
    "${elevate[@]}" apt-get update -qq >&2
    say "Installing Debian packages: ${missing[*]} ($(size_of "${missing[@]}"))"
    "${elevate[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2 || {
        say "The packages could not be installed; see above."
        exit 69
    }
}

# build PRESET [TARGET...]: configures once, builds what has changed; prints nothing on success.
build() {
    local preset=$1 log="$ROOT/build/$1.log" targets=()
    shift
    (($#)) && targets=(--target "$@")
    mkdir -p "$ROOT/build"
    if [ ! -f "$ROOT/build/$preset/build.ninja" ]; then
        say "Building ($preset), which takes some minutes the first time ..."
        cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; exit 70; }
    fi
    cmake --build --preset "$preset" "${targets[@]}" >"$log" 2>&1 || {
        cat "$log" >&2
        say "The build ($preset) failed; see above."
        exit 70
    }
}

# prepare_wine [unchecked]: a prefix of the project's own, with the radio simulator as its
# wlanapi.dll; where times and memory are measured, one without checks of the heap.
prepare_wine() {
    export WINEPREFIX="$WINE_PREFIX${1:+-$1}"
    export WINEDEBUG=${WINEDEBUG:--all,err+heap}
    # The simulator replaces Wine's own wlanapi.dll, whose functions end the process; the rest
    # keeps a new prefix from asking to download things, and a crashed program from waiting for a
    # debugger.
    export WINEDLLOVERRIDES="wlanapi=n;mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe="
    local system32="$WINEPREFIX/drive_c/windows/system32"
    if [ ! -f "$WINEPREFIX/.ready" ]; then
        say "Preparing Wine ..."
        rm -rf "$WINEPREFIX"
        DISPLAY= wineboot --init >/dev/null 2>&1
        wineserver --wait
        if [ ! -d "$system32" ]; then
            say "Wine could not make its prefix in $WINEPREFIX; run 'wineboot --init' to see why."
            exit 70
        fi
        # Wine's heap checks its blocks (their ends, freed ones, arguments) and says what it finds.
        if [ $# -eq 0 ]; then
            wine reg add 'HKLM\System\CurrentControlSet\Control\Session Manager' \
                /v GlobalFlag /t REG_DWORD /d 0x70 /f >/dev/null 2>&1
            wineserver --wait
        fi
        touch "$WINEPREFIX/.ready"
    fi
    local simulator="$ROOT/build/windows/radiosim/wlanapi.dll"
    cmp -s "$simulator" "$system32/wlanapi.dll" || cp "$simulator" "$system32/wlanapi.dll"
}
