# Completion of the command commonapi for bash.

_commonapi() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $previous in
        --password-file) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        --password-env) mapfile -t COMPREPLY < <(compgen -v -- "$word") ;;
        commonapi) mapfile -t COMPREPLY < <(
            compgen -W "encrypt decrypt seal-key plugin --help --version" -- "$word") ;;
        *)
            case ${COMP_WORDS[1]} in
                encrypt | decrypt) mapfile -t COMPREPLY < <(
                    compgen -W "--password-file --password-env --sealed --help" -- "$word") ;;
                plugin) mapfile -t COMPREPLY < <(compgen -f -- "$word"; compgen -W --help -- "$word") ;;
                seal-key) mapfile -t COMPREPLY < <(
                    compgen -W "--password-file --password-env --open --help" -- "$word") ;;
            esac
            ;;
    esac
}
complete -o filenames -F _commonapi commonapi
