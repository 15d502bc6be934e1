# To be sourced by scripts that show windows where there is no screen.

# start_display [OPTION]...: starts an X server with these options of Xvfb. Sets DISPLAY, and
# display_process, which the caller ends.
start_display() {
    local number
    read -r number < <(exec Xvfb -displayfd 1 -noreset -nolisten tcp "$@" 2>/dev/null)
    display_process=$!
    export DISPLAY=:$number
}

# type_answer PROCESS [BRAND]: enters a name in the dialog until its process has ended. The field accepts
# no keys before the page is loaded, so they are typed again and again.
type_answer() {
    while kill -0 "$1" 2>/dev/null; do
        xdotool search --onlyvisible --class "${2:-tovik}" windowfocus type --delay 20 Ada || true
        xdotool key Return || true
    done 2>/dev/null
}

# answered FILE: whether the file holds an answer that type_answer has typed.
answered() {
    grep -qE '^[Ada]*a$' "$1"
}
