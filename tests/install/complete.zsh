# complete.zsh FOLDER LINE: prints LINE as an interactive zsh has completed it with the completion
# functions in FOLDER. The shell runs on a pseudo-terminal, because its line editor works on
# terminals only.
zmodload zsh/zpty
result=$(mktemp)
trap 'rm -f $result' EXIT

zpty shell zsh -f -i
# Control-X hands the line over in a file: the terminal shows much more than the line. Markers are
# computed, so that the echo of a command is not mistaken for its output.
zpty -w shell "unset HISTFILE; PS1='> '; fpath=(${(q)1} \$fpath)"
zpty -w shell "autoload -Uz compinit; compinit -u -D"
zpty -w shell "hand-over() { print -r -- \"\$BUFFER.\" >${(q)result}; zle kill-whole-line
    print \$((40 + 3))-handed-over; }"
zpty -w shell "zle -N hand-over; bindkey '^X' hand-over; print \$((40 + 2))-prepared"
zpty -r -m shell shown '*42-prepared*> ' || exit 1
zpty -n -w shell "$2"$'\t\x18'
zpty -r -m shell shown '*43-handed-over*' || exit 1
line=$(<$result)
print -r -- ${line%.}
zpty -d shell
