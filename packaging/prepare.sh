# Sourced by ./run and ./test: installs what is missing of packaging/debian-packages.
# Debian names only; a machine that has everything is not touched and needs no network.

lumisort_prepare() {
    local missing=() package
    command -v dpkg-query >/dev/null || { echo "lumisort: this script installs Debian packages; on another system install the libraries of packaging/debian-packages and use cmake" >&2; return 0; }
    while read -r package _; do
        [[ -z $package || $package == \#* ]] && continue
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
    done <"$1"
    (( ${#missing[@]} )) || return 0

    local sudo=()
    if (( EUID != 0 )); then
        command -v sudo >/dev/null || { echo "lumisort: please install as root: ${missing[*]}" >&2; return 1; }
        sudo=(sudo)
    fi
    echo "lumisort: installing what the build needs and this machine lacks: ${missing[*]}" >&2
    local install=("${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}")
    # The first try works on a machine whose package lists are fresh; else the lists are fetched.
    "${install[@]}" >/dev/null 2>&1 || { "${sudo[@]}" apt-get update -qq && "${install[@]}" >/dev/null; }
}
