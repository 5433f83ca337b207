#!/usr/bin/env bash
# Builds the Debian package of Lumisort, installing what the build needs and lacks, and prints its path.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$top/packaging/prepare.sh"
lumisort_prepare "$top/packaging/debian-packages"
cd "$top"
cmake --preset release >&2
cmake --build --preset release >&2
cd build/release
cpack -G DEB >&2
ls -t "$PWD"/lumisort_*.deb | head -n 1
