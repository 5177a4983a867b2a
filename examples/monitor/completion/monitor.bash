# Completion of monitor's command line for bash. Installed, bash-completion loads it by itself.
# shellcheck shell=bash

_monitor() {
    local word=$2 before=$3 done=
    local options="--help --version --interval --count --path --offset --log --replay --average
        --chart --window --theme --title --plugins"
    COMPREPLY=()
    case $before in
        --theme) mapfile -t COMPREPLY < <(compgen -W "light dark" -- "$word") ;;
        --average)
            # What follows the last comma is completed; what is before it remains.
            if [[ $word == *,* ]]; then done=${word%,*},; fi
            mapfile -t COMPREPLY < \
                <(compgen -P "$done" -W "cpu memory disk free uptime" -- "${word##*,}")
            ;;
        --log | --replay | --chart | --path) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        --plugins) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        --interval | --count | --offset | --window | --title) ;;
        *) mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word") ;;
    esac
}
complete -o filenames -F _monitor monitor
