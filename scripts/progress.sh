# To be sourced by scripts whose commands are silent for long.

# begin_progress TEXT: shows the text with the seconds on the terminal, from the third second on and
# until end_progress or the end of the script; nothing when standard error is no terminal.
begin_progress() {
    progress=
    [ -t 2 ] || return 0
    local text=$1 start=$SECONDS
    while sleep 1 && kill -0 $$ 2>/dev/null; do
        [ $((SECONDS - start)) -le 2 ] || printf '\r\033[K%s: %d s' "$text" $((SECONDS - start))
    done >&2 &
    progress=$!
}

# end_progress: removes the text from the terminal.
end_progress() {
    [ -n "$progress" ] || return 0
    kill "$progress" 2>/dev/null || true
    wait "$progress" 2>/dev/null || true
    printf '\r\033[K' >&2
}
