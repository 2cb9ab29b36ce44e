# Completes zoomreplay's commands and options in bash, as its helps list them. Installed where bash looks for
# it; to try it from the tree: source tools/zoomreplay/completion.bash

_zoomreplay() {
    local current=${COMP_WORDS[COMP_CWORD]} help
    help=$(zoomreplay "${COMP_WORDS[@]:1:COMP_CWORD-1}" --help 2>/dev/null) || help=$(zoomreplay --help)
    local words
    words=$(grep -oE '(^ *|,)--?[a-z-]+' <<< "$help" | tr -d ' ,')
    if [ "$COMP_CWORD" = 1 ]; then
        words+=" $(sed -n '/^Commands/,/^$/s/^  \([a-z-]*\) .*/\1/p' <<< "$help")"
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -o default -F _zoomreplay zoomreplay
