# Completion in bash for the programs whose help lists all that they accept: ombrel-dump and ombrel-explorer.

_ombrel_program() {
    local word=${COMP_WORDS[COMP_CWORD]} help words
    help=$("$1" --help 2>/dev/null)
    if [[ $word == -* ]]; then
        words=$(sed -nE '/^Options:/,/^$/s/^  (-[^ ]+).*/\1/p' <<<"$help" | tr , '\n')
    elif ((COMP_CWORD == 1)); then
        words=$(sed -nE '/^Stages/,$s/^  ([a-z-]+)  .*/\1/p' <<<"$help")
    fi
    if [[ $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}

complete -F _ombrel_program ombrel-dump ombrel-explorer
