# fish completion for latchkey: the commands, options and values that its help lists, and files

# Prints the words or files that fit at the cursor, one a line.
function __latchkey_words
    set -l words (commandline --tokenize --cut-at-cursor --current-process)[2..]
    set -l current (commandline --current-token --cut-at-cursor)
    set -l command
    while true
        set -l options
        set -l commands
        set -l listed
        for line in (latchkey $command --help 2>/dev/null)
            set -l parts (string split --no-empty ' ' -- "$line")
            switch "$parts[1]"
                case 'Subcommands:'
                    set listed yes
                case '-*'
                    set -l names (string split , -- $parts[1])
                    set --append options $names
                    if contains -- "$words[-1]" $names; and string match --quiet '*|*' -- "$parts[2]"
                        string split '|' -- $parts[2]
                        return
                    end
                case '*'
                    test -n "$listed"; and string match --quiet --regex '^[a-z]' -- "$parts[1]"
                    and set --append commands $parts[1]
            end
        end
        # For a group of commands, continue with the command that the next word names, if any.
        set -l next $words[(math (count $command) + 1)]
        if test -n "$next"; and contains -- "$next" $commands
            set --append command $next
        else if test -z "$commands"; and not string match --quiet -- '-*' "$current"
            __fish_complete_path "$current"
            return
        else
            printf '%s\n' $options $commands
            return
        end
    end
end
complete --command latchkey --no-files --arguments '(__latchkey_words)'
