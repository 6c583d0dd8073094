# For every scenario, whatever is set outside. `put FILE TEXT` writes a file through printf, and `show FILE` prints it with bars for line
# ends; `status COMMAND...` prints the exit status last.
export HOME=/nonexistent GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null GIT_AUTHOR_NAME=n GIT_AUTHOR_EMAIL=e
export GIT_COMMITTER_NAME=n GIT_COMMITTER_EMAIL=e LC_ALL=C
put() { case $1 in */*) mkdir -p "${1%/*}";; esac; printf "$2" > "$1"; }
show() { case $1 in :*) git cat-file blob "$1";; *) cat "$1";; esac | tr '\n' '|'; echo; }
status() { "$@"; echo "$?"; }
