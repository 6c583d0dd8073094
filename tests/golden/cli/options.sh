# `explain PATH...` prints the value of line.indentSize and where it comes from, `explained OPTION PATH...` that
# of any option, and `faults TEXT` what is wrong with an options file. `reset` empties the folder. After them are
# texts of options files.
explained() { option=$1; shift; format --print-config "$@" | sed -n "s/^$option  *//p" | tr -s ' '; }
explain() { explained line.indentSize "$@"; }
faults() {
    printf '%s' "$1" > .ombrel-format.json
    format x.omb < /dev/null 2>&1 | sed -n 's/^\.ombrel-format\.json:\(.*\) error:/\1/p'
}
reset() { rm -rf .[!.]* *; }
size() { printf '{"line": {"indentSize": %s}}' $1; }
options=.ombrel-format.json
tabs='{"line": {"tabSize": 3}}'
open='{"root": false, "line": {"tabSize": 3}}'
overrides='{"overrides": [
{"files": "*.omb", "line": {"indentSize": 1}},
{"files": ["/gen", "t/**", "!t/x.omb"], "line": {"indentSize": 2}}],
"line": {"indentSize": 3}}'
