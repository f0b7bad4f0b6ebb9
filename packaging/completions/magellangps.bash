# Completes magellangps and magellangps-simulator in bash. The programs know what can follow; this
# script asks them. Installed once under the name of each program.

# Adds the names of files below $word: of folders, and of files with one of the extensions given.
_magellangps_files()
{
    local file extension
    compopt -o filenames 2>/dev/null
    while IFS= read -r file; do
        if [[ $# -eq 0 || -d ${file/#\~/$HOME} ]]; then
            COMPREPLY+=("$file")
            continue
        fi
        for extension in "$@"; do
            [[ ${file,,} == *."$extension" ]] && COMPREPLY+=("$file")
        done
    done < <(compgen -f -- "$word")
}

_magellangps()
{
    local words=() word=${COMP_WORDS[COMP_CWORD]} kept answer i
    # Bash splits words at "=" and ":". The program gets them whole.
    for ((i = 1; i <= COMP_CWORD; i++)); do
        if [[ $i -gt 1 && (${COMP_WORDS[i]} == [=:] || ${COMP_WORDS[i - 1]} == [=:]) ]]; then
            words[-1]+=${COMP_WORDS[i]}
        else
            words+=("${COMP_WORDS[i]}")
        fi
    done
    [[ $word == [=:] ]] && word=''
    kept=${words[-1]%"$word"} # the text before the part that bash replaces
    words=("${words[@]//[\"\'\\]/}")
    word=${word//[\"\'\\]/}

    COMPREPLY=()
    while IFS=$'\t' read -r answer _; do
        case $answer in
            :folders)
                compopt -o filenames 2>/dev/null
                while IFS= read -r answer; do
                    COMPREPLY+=("$answer")
                done < <(compgen -d -- "$word")
                ;;
            :files*)
                # shellcheck disable=SC2086 # the extensions are words
                _magellangps_files ${answer#:files}
                ;;
            *)
                [[ $answer == /* ]] && compopt -o filenames 2>/dev/null
                COMPREPLY+=("${answer#"$kept"}")
                ;;
        esac
    done < <("$1" __complete -- "${words[@]}" 2>/dev/null)
}

complete -F _magellangps magellangps magellangps-simulator
