# bash completion for latchkey: the commands, options and values that its help lists, and files
_latchkey() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local command=() names value words="" values="" listed="" depth=1
    [[ ${COMP_WORDS[1]} == records ]] && depth=2
    (( COMP_CWORD > 1 )) && command=("${COMP_WORDS[@]:1:COMP_CWORD - 1}")
    command=("${command[@]:0:depth}")
    while read -r names value _; do
        case $names in
        Subcommands:) listed=yes ;;
        -*)
            words+=" ${names//,/ }"
            [[ ,$names, == *,"$previous",* && $value == *'|'* ]] && values=${value//|/ }
            ;;
        [a-z]*) [[ $listed ]] && words+=" $names" ;;
        esac
    done < <(latchkey "${command[@]}" --help 2>/dev/null)
    if (( COMP_CWORD > depth )) && [[ -z $values && $current != -* ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "${values:-$words}" -- "$current")
    fi
} &&
    complete -o filenames -F _latchkey latchkey
