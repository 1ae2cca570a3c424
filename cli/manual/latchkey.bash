# bash completion for latchkey: the commands, options and values that its help lists, and files
_latchkey() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local command=() names value words values commands listed
    while :; do
        words="" values="" commands="" listed=""
        while read -r names value _; do
            case $names in
            Subcommands:) listed=yes ;;
            -*)
                words+=" ${names//,/ }"
                [[ ,$names, == *,"$previous",* && $value == *'|'* ]] && values=${value//|/ }
                ;;
            [a-z]*) [[ $listed ]] && commands+=" $names" ;;
            esac
        done < <(latchkey "${command[@]}" --help 2>/dev/null)
        # For a group of commands, continue with the command that the next word names, if any.
        local next=${COMP_WORDS[${#command[@]} + 1]}
        (( ${#command[@]} + 1 < COMP_CWORD )) && [[ "$commands " == *" $next "* ]] || break
        command+=("$next")
    done
    if [[ -z $commands && -z $values && $current != -* ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "${values:-$words$commands}" -- "$current")
    fi
} &&
    complete -o filenames -F _latchkey latchkey
