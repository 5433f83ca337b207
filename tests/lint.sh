#!/usr/bin/env bash
# Checks the sources without running them: clang-format and qmllint over the whole tree, clang-tidy over what
# changed against the main branch, or over everything with the argument "all". Needs the dev preset built.
#
#   LINT_BASE=REVISION   compares with another revision
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/dev
failed=0

echo "lint: clang-format"
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format-19 --dry-run -Werror || failed=1

echo "lint: qmllint"
if ! ninja -C "$build" -k 0 all_qmllint >"$build/qmllint.log" 2>&1; then
    grep -A 3 -E '^(Warning|Error):' "$build/qmllint.log" || tail -20 "$build/qmllint.log"
    failed=1
fi

# On the main branch itself, what its last commit changed.
changed() {
    local base=${LINT_BASE:-$(git merge-base HEAD origin/main 2>/dev/null || git rev-parse HEAD)}
    [[ $base != $(git rev-parse HEAD) ]] || base=$(git rev-parse -q --verify HEAD~1 || git hash-object -t tree /dev/null)
    git diff --name-only --diff-filter=d "$base" -- 'src/*.cpp' 'tests/*.cpp'
}
if [[ ${1:-} == all ]]; then files=$(git ls-files 'src/*.cpp' 'tests/*.cpp'); else files=$(changed); fi
# Sources that no target of this machine compiles have no entry in the compilation database.
files=$(for file in $files; do grep -qF "/$file\"" "$build/compile_commands.json" && echo "$file"; done || true)
echo "lint: clang-tidy, $(wc -w <<<"$files") files"
if [[ -n $files ]]; then
    xargs -P "$(nproc)" -n 2 clang-tidy-19 -p "$build" --quiet <<<"$files" 2> >(grep -vE 'warnings? (generated|treated)' >&2) || failed=1
fi

((failed == 0)) && echo "lint: passed" || echo "lint: failed"
exit "$failed"
