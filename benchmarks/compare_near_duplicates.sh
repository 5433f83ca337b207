#!/usr/bin/env bash
# Finding near-duplicates among 1,000 photos: this program against findimagedupes (Debian package, installed here when
# missing). The photos are the JPEGs of the corpus, copied under new names until there are enough.
#
#   benchmarks/compare_near_duplicates.sh CORPUS [count]
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
corpus=$1
count=${2:-1000}
command -v findimagedupes >/dev/null || apt-get install -y --no-install-recommends findimagedupes >/dev/null

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mapfile -d '' photos < <(find "$corpus"/{photos,groups,orientation} -name '*.jpg' -size +20k -print0 | sort -z)
for (( i = 0; i < count; i++ )); do
    cp "${photos[i % ${#photos[@]}]}" "$folder/$i.jpg"
done
cat "$folder"/* >/dev/null # into the page cache

"$top/run" --version >/dev/null # builds
# Processor time and wall-clock time, both in seconds.
measure() {
    local TIMEFORMAT='%U %S %R'
    { time "$@" >/dev/null 2>&1; } 2>&1 | awk '{ print $1 + $2, $3 }'
}
read -r ours ours_wall < <(measure "$top/build/release/src/app/lumisort" match --method near --level balanced "$folder")
read -r theirs theirs_wall < <(measure findimagedupes "$folder"/*.jpg)
echo "| $count photos | processor time | wall-clock time |"
echo "|---|---|---|"
echo "| lumisort | $ours s | $ours_wall s |"
echo "| findimagedupes | $theirs s | $theirs_wall s |"
awk -v a="$theirs" -v b="$ours" -v c="$theirs_wall" -v d="$ours_wall" \
    'BEGIN { printf "| times as fast | %.1f | %.1f |\n", a / b, c / d }'
