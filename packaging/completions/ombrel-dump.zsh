#compdef ombrel-dump ombrel-explorer

# Completion in zsh for the programs whose help lists all that they accept.

local help="$($words[1] --help 2>/dev/null)"
local -a stages=(${(f)"$(sed -nE '/^Stages/,$s/^  ([a-z-]+)  .*/\1/p' <<<$help)"})
local -a names=(${(s:,:)${(pj:,:)${(f)"$(sed -nE '/^Options:/,/^$/s/^  (-[^ ]+).*/\1/p' <<<$help)"}}})
if [[ $PREFIX == -* ]]; then
    compadd -- $names
elif ((CURRENT == 2 && $#stages)); then
    compadd -- $stages
else
    _files
fi
