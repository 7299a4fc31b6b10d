# Completion of bash for dataaccess.

_dataaccess()
{
    local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} options="--help --json --quiet --verbose"
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "info check backup restore migrate copy dump load report config --help --version" -- "$word")
        return
    fi
    case $command in
    check) options+=" --deep --repair" ;;
    backup | restore | load | report) options+=" --force" ;;
    migrate) options+=" --dry-run --no-backup" ;;
    copy) options+=" --resume --force" ;;
    dump) options+=" --output --force" ;;
    config) options+=" --default --ask-password" ;;
    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    elif [[ $word == @* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "@default $(dataaccess config list 2>/dev/null | sed -n 's/^{\([^}]*\)}.*/@\1/p')" -- "$word")
    elif [[ $command == config ]] && ((COMP_CWORD == 2)); then
        mapfile -t COMPREPLY < <(compgen -W "list show add remove default test" -- "$word")
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -F _dataaccess dataaccess
