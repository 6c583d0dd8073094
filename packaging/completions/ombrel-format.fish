# Completion for ombrel-format in fish.

function __ombrel_format_revisions
    echo HEAD
    git for-each-ref --format='%(refname:short)' 2>/dev/null
end

function __ombrel_format_settings
    echo '@settings@'
end

complete -c ombrel-format -kxa '(__fish_complete_suffix .omb)'
@fish-options@
