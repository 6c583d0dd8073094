# The tree engine: options files for it, `untouched COMMAND...`, which says whether a.omb was written all the same, and `dump`.
tree() { format --engine tree "$@"; }
untouched() { before=$(stat -c '%i %y' a.omb); status "$@"; [ "$before" = "$(stat -c '%i %y' a.omb)" ] || echo 'a.omb was written'; }
dump() { "${program%/*}/ombrel-dump" "$@"; }
trim=formatting.trimUnnecessaryWhitespace=true
indent=formatting.indentationEnabled=true
ugly='if a\nx\nend\n'
put o.json '{"engine": "tree", "formatting": {"indentationEnabled": true, "indentWidth": 2}}'
put sub/.ombrel-format.json '{"extends": "../o.json", "formatting": {"indentWidth": 3}}'
put bad.json '{"formatting": {"indentWidth": 1, "indentWidth": -1,\n "functionIndentStyle": "all"}}'
