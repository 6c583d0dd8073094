# A new repository without a commit, whose file a.omb is badly indented in its lines 2 and 4, so that it shows
# which of its lines were formatted. `save` commits everything; `show :FILE` prints what is staged.
save() { git add -A && git commit -qm saved; }
hook() { printf '#!/bin/sh\n%s %s\n' "$program" "$1" > .git/hooks/pre-commit; chmod +x .git/hooks/pre-commit; }

# What is staged is always the same: line 2 is new. What differs is the work tree.
stage() { save; put a.omb 'if a\nx\nif b\nq\nend\nend\n'; git add .; }
formatStaged() { status format --staged; show :a.omb; show a.omb; }

# Files of every odd name, at the top of a folder and below.
each() { for n in '*.omb' '-i.omb' ' s p.omb' "$(printf 'n\nl\t\377"\\.omb')"; do
    put "s/$n" "$1"; put "s/t/$n" "$1"
done; }
makeOddNames() { mkdir -p s/t; each ' x\n'; save; each ' y\n'; }
showOddNames() { git diff --cached; cat s/*.omb s/t/*.omb | tr -d '\n'; }

# Two files to commit with a hook, and what came of it.
prepareCommit() {
    put b.omb 'b\n'; save; hook --staged; put a.omb 'if a\nx\n'; put b.omb ' b\n'
}
showCommit() { git show HEAD:a.omb; git status --short; cat b.omb; }

git init -q -b main r && cd r
put a.omb 'if a\np\nif b\nq\nend\nend\n'
