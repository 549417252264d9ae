# shellcheck shell=bash disable=SC2016,SC2034,SC2207
# Completion of quiv-tv-simulator for bash: its options, and folders where one takes them.
_quiv_tv_simulator() {
    local cur prev words cword
    _init_completion || return
    case $prev in
        --media | --usb) _filedir -d ;;
        --announce-with) COMPREPLY=($(compgen -W 'auto daemon embedded' -- "$cur")) ;;
        --name | --*port | --generate | --*-seconds | --*-bytes | --code | --*-lifetime | --*-name) ;;
        *) COMPREPLY=($(compgen -W '$(_parse_help "$1")' -- "$cur")) ;;
    esac
} && complete -F _quiv_tv_simulator quiv-tv-simulator
