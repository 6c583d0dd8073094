# Completion for ombrel-lsp in fish.

complete -c ombrel-lsp -f
complete -c ombrel-lsp -s h -l help -d 'print a help text and stop'
complete -c ombrel-lsp -l version -d 'print the version and stop'
complete -c ombrel-lsp -l stdio -d 'talk over standard input and output'
complete -c ombrel-lsp -l log -r -F -d 'append all messages to this file'
complete -c ombrel-lsp -l clientProcessId -x -d 'end when this process ends'
