# A tree of files, all of them badly indented. `check` names those that are taken, and the errors go nowhere.
check() { format --check "$@" 2> /dev/null; }
ugly='if a\nx\nend\n'
for name in b.omb B.omb sub/a.omb sub/deep/z.omb sub-2.omb notes.txt gen/g.omb gen/keep.omb .git.omb .hidden/h.omb; do
    put $name "$ugly"
done
