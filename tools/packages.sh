# Sourced by the scripts here: need PACKAGE... installs the Debian packages that are missing, without questions.

need() {
    local package missing=() as_root=()
    for package in "$@"; do
        [[ $(dpkg-query -W -f '${Status}' "$package" 2> /dev/null) == *"install ok installed"* ]] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if ! command -v apt-get > /dev/null; then
        echo "This system has no apt-get. Install what corresponds to: ${missing[*]}" >&2
        return 1
    fi
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo > /dev/null || { echo "Run as root, or install: ${missing[*]}" >&2; return 1; }
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get -o DPkg::Lock::Timeout=300 update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 \
        install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
}

# What each kind of build needs on Debian 12.
build_packages=(build-essential cmake ninja-build)
tool_packages=(pkg-config libcli11-dev libsndfile1-dev zlib1g-dev gnuplot-nox)
test_packages=(libgtest-dev libgmock-dev python3 qemu-user sox libspandsp-dev)  # the last two: peers of the speech codecs
bench_packages=(libbenchmark-dev libfftw3-dev libvolk2-dev libeigen3-dev libsleef-dev libmpfr-dev libhwy-dev libliquid-dev
                libsamplerate0-dev libdeflate-dev libspandsp-dev pkg-config libcli11-dev zlib1g-dev)
