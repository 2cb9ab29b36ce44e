# Completes zoomreplay's commands, options, values and files in bash, as its helps list them. Installed where
# bash looks for it; to try it from the tree: source tools/zoomreplay/completion.bash

# What the help says that an option takes, such as FILE.json or MODE:{A,B}; nothing for a flag.
_zoomreplay_value() {
    sed -nE "s/^ +(-[a-z],)?$1(,-[^ ]*)? ([A-Z][^ ]*).*/\\3/p" <<< "$2" | head -n 1
}

_zoomreplay() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} help words value=
    local before=("${COMP_WORDS[@]:1:COMP_CWORD-1}")
    if [[ $previous == -* ]]; then
        unset 'before[-1]'  # it would take --help for its value
    fi
    help=$(zoomreplay "${before[@]}" --help 2>/dev/null) || help=$(zoomreplay --help)
    if [[ $previous == -* ]]; then
        value=$(_zoomreplay_value "$previous" "$help")
    fi
    COMPREPLY=()
    if [[ $value == *{*}* ]]; then
        words=${value#*\{}
        words=${words%%\}*}
        mapfile -t COMPREPLY < <(compgen -W "${words//,/ }" -- "$current")
        return
    fi
    if [[ -z $value && $current == -* ]]; then
        words=$(grep -oE '(^ *|,)--?[a-z-]+' <<< "$help" | tr -d ' ,')
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
        return
    fi
    case $value in COUNT | ID* | PORT | A-B) return ;; esac
    if [ "$COMP_CWORD" = 1 ]; then
        words=$(sed -n '/^Commands/,/^$/s/^  \([a-z-]*\) .*/\1/p' <<< "$help")
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    fi
    local files
    mapfile -t files < <(compgen -f -- "$current")
    COMPREPLY+=("${files[@]}")
    compopt -o filenames 2>/dev/null || true
}
complete -F _zoomreplay zoomreplay
