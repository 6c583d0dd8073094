# Completion for ombrel-lsp in bash.

_ombrel_lsp() {
    COMPREPLY=()
    case $3 in
    --log)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$2")
        ;;
    --clientProcessId) ;;
    *) mapfile -t COMPREPLY < <(compgen -W '-h --help --version --stdio --log --clientProcessId' -- "$2") ;;
    esac
}

complete -F _ombrel_lsp ombrel-lsp
