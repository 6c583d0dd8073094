# Completion in fish for the programs whose help lists all that they accept.

for program in ombrel-dump ombrel-explorer
    complete -c $program -n 'string match -q -- "-*" (commandline -ct)' -xa "(
        $program --help 2>/dev/null | sed -nE '/^Options:/,/^\$/s/^  (-[^ ]+).*/\1/p' | string split ,)"
end
complete -c ombrel-dump -n 'test (count (commandline -opc)) = 1' -xa "(
    ombrel-dump --help 2>/dev/null | sed -nE '/^Stages/,\$s/^  ([a-z-]+)  .*/\1/p')"
