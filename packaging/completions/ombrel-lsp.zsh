#compdef ombrel-lsp
# Completion for ombrel-lsp in zsh.

_arguments -s \
    '(- *)'{-h,--help}'[print a help text and stop]' \
    '(- *)--version[print the version and stop]' \
    '--stdio[talk over standard input and output]' \
    '--log[append all messages to this file]:file:_files' \
    '--clientProcessId[end when this process ends]:process:_pids'
