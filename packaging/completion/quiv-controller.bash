# shellcheck shell=bash disable=SC2016,SC2034,SC2207
# Completion of quiv-controller for bash: its options.
_quiv_controller() {
    local cur prev words cword
    _init_completion || return
    case $prev in
        --platform) COMPREPLY=($(compgen -W 'wayland xcb' -- "$cur")) ;;
        --display) ;;
        *) COMPREPLY=($(compgen -W '$(_parse_help "$1")' -- "$cur")) ;;
    esac
} && complete -F _quiv_controller quiv-controller
