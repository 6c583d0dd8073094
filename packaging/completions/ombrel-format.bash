# Completion for ombrel-format in bash.

# _ombrel_format_words VALUE WORD...: the words that VALUE begins.
_ombrel_format_words() {
    mapfile -t COMPREPLY < <(compgen -W "${*:2}" -- "$1")
}

_ombrel_format_files() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

# json, or json:report.json
_ombrel_format_words_or_file() {
    if [[ $1 == *:* ]]; then
        _ombrel_format_files "${1#*:}"
    else
        _ombrel_format_words "$@"
    fi
}

_ombrel_format_sources() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$1"; compgen -f -X '!*.omb' -- "$1")
}

_ombrel_format_revisions() {
    _ombrel_format_words "$1" HEAD $(git for-each-ref --format='%(refname:short)' 2>/dev/null)
}

# Keys first, then the values of the key.
_ombrel_format_settings() {
    local settings=(
@settings@
    )
    if [[ $1 == *=* ]]; then
        _ombrel_format_words "$1" "${settings[@]}"
    else
        compopt -o nospace 2>/dev/null
        _ombrel_format_words "$1" "${settings[@]/%=*/=}"
    fi
}

_ombrel_format() {
    local line=${COMP_LINE:0:COMP_POINT}
    local value=${line##*[[:blank:]]} words option
    read -ra words <<<"${line%"$value"}"
    option=${words[-1]}
    if [[ $value == --*=* ]]; then
        option=${value%%=*}
        value=${value#*=}
    fi
    COMPREPLY=()
    case $option in
@bash-values@
    *)
        if [[ $value == -* ]]; then
            _ombrel_format_words "$value" '
@names@
            '
        else
            _ombrel_format_sources "$value"
        fi
        ;;
    esac
    # bash breaks words at = and : as well, and replaces only what follows the last of them.
    local known=${value%"${value##*[=:]}"}
    COMPREPLY=("${COMPREPLY[@]#"$known"}")
}

complete -F _ombrel_format ombrel-format
