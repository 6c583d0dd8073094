#compdef ombrel-format

# Completion for ombrel-format in zsh.

# json, or json:report.json
_ombrel_format_words_or_file() {
    if compset -P '*:'; then
        _files
    else
        compadd -- "$@"
    fi
}

_ombrel_format_revisions() {
    local -a revisions=(HEAD ${(f)"$(git for-each-ref --format='%(refname:short)' 2>/dev/null)"})
    compadd -a revisions
}

# Keys first, then the values of the key.
_ombrel_format_settings() {
    local -a settings=(
@settings@
    )
    local key=${PREFIX%%=*}
    if compset -P '*='; then
        compadd -- ${${(M)settings:#$key=*}#*=}
    else
        compadd -S = -- ${(u)settings%%=*}
    fi
}

_arguments -s -S \
@zsh-options@
    '*:source:_files -g "*.omb(-.)"'
