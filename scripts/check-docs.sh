#!/usr/bin/env bash
# Checks the documents: spelling of the whole tree, manual pages, doc comments of the headers where
# Doxygen is installed, and links between files.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t files < <(git ls-files --cached --others --exclude-standard)
[ ${#files[@]} -gt 0 ] # none without git, and then nothing would be wrong
# Macros of the manual pages, and words of tests.
codespell --ignore-words-list=nd,fo,hel,statics "${files[@]}"

# From their own folder, where their references to each other are found.
(cd docs/man && mandoc -Tlint -Wstyle -- *.[13])

if command -v doxygen >/dev/null; then
    scratch=$(mktemp -d)
    trap 'rm -rf "$scratch"' EXIT
    scripts/reference.sh "$scratch/reference"
fi

broken=0
for file in "${files[@]}"; do
    [[ $file == *.md ]] || continue
    while read -r link; do
        [ -e "$(dirname "$file")/$link" ] && continue
        echo "$file: the link $link leads nowhere" >&2
        broken=1
    done < <(grep -oP '(\]\(|src=")(?!https?:)\K[^)"#]+' "$file")
    while read -r script; do
        [ -e "$script" ] && continue
        echo "$file: no script $script exists" >&2
        broken=1
    done < <(grep -oP '`\Kscripts/[^` ]+' "$file")
done
exit $broken
