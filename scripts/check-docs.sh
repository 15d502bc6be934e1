#!/usr/bin/env bash
# Checks the documents: spelling of the whole tree, manual pages, doc comments of the headers, and
# links between files. A check whose tool is missing is passed over.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t files < <(git ls-files --cached --others --exclude-standard)
[ ${#files[@]} -gt 0 ] # none without git, and then nothing would be wrong

# has TOOL CHECK: whether the tool is installed; says which check is passed over if not.
has() {
    command -v "$1" >/dev/null || {
        echo "check-docs.sh: $1 is not installed; $2 not checked" >&2
        false
    }
}

# Later versions know more words. Ignored are macros of the manual pages, words of tests, and
# pages in other languages.
spelling=2.2.2
if has codespell 'the spelling is'; then
    if [ "$(codespell --version)" = $spelling ]; then
        codespell --ignore-words-list=nd,fo,hel,statics --skip='*.de.js' "${files[@]}"
    else
        echo "check-docs.sh: codespell is not of version $spelling; the spelling is not checked" >&2
    fi
fi

if has mandoc 'the manual pages are'; then
    # From their own folder, where their references to each other are found.
    (cd docs/man && mandoc -Tlint -Wstyle -- *.[13])
fi

if has doxygen 'the doc comments are'; then
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
