# Completion of the command commonapi for bash.

_commonapi() {
    local word=$2 previous=$3 options
    # "--option=value" comes as three words, the last of which may be missing.
    if [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ ${COMP_WORDS[COMP_CWORD]} == = ]]; then
        word=
    fi
    COMPREPLY=()
    case $previous in
        --password-file)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            return
            ;;
        --password-env)
            mapfile -t COMPREPLY < <(compgen -e -- "$word")
            return
            ;;
    esac
    case $COMP_CWORD:${COMP_WORDS[1]} in
        1:*) options="encrypt decrypt seal-key plugin --help --version" ;;
        *:encrypt) options="--password-file --password-env --sealed --help" ;;
        *:decrypt) options="--password-file --password-env --sealed --raw --help" ;;
        *:seal-key) options="--password-file --password-env --open --help" ;;
        *:plugin)
            options=--help
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            ;;
    esac
    mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -W "$options" -- "$word")
}
complete -F _commonapi commonapi
