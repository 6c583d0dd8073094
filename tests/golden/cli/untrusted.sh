# A repository with a changed file a.omb and files that go through filters. `believe` makes its configuration name a program everywhere.
. "$project/tests/golden/cli/repository.sh"
evil=$top/w/evil; mkdir ../hooks
printf '#!/bin/sh\necho "${0##*/} $*" >> "%s/ran"; exit 1\n' "$top" > $evil; chmod +x $evil
for hook in post-index-change pre-commit reference-transaction; do cp $evil ../hooks/$hook; done
for key in core.fsmonitor core.sshCommand core.pager core.editor core.askPass core.gitProxy credential.helper core.alternateRefsCommand \
    diff.external diff.d.command diff.d.textconv filter.f.clean filter.f.smudge filter.a=g.process gpg.program remote.origin.uploadpack; do
    git config --file ../believed $key $evil
done
git config --file ../believed core.hooksPath "$top/w/hooks"; git config --file ../believed filter.f.required true
git config --file ../believed remote.origin.promisor true; git config --file ../believed remote.origin.url ssh://nowhere/x
believe() { git config include.path ../../believed; }
ran() { test ! -e $top/ran || { sort -u $top/ran; rm $top/ran; }; }
printf '*.omb diff=d\nf.omb filter=f\ng.omb filter=a=g\n' > .gitattributes; echo gen > .gitignore
put f.omb 'if a\nf\n'; put g.omb 'if a\ng\n'; put h.omb 'h\n'; save; put a.omb 'if a\nx\nif b\nq\nend\nend\n'
