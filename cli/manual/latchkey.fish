# fish completion for latchkey: the commands, options and values that its help lists, and files

# Prints the words or files that fit at the cursor, one a line.
function __latchkey_words
    set -l words (commandline --tokenize --cut-at-cursor --current-process)[2..]
    set -l current (commandline --current-token --cut-at-cursor)
    set -l depth 1
    test "$words[1]" = records; and set depth 2
    set -l found
    set -l listed
    for line in (latchkey $words[1..$depth] --help 2>/dev/null)
        set -l parts (string split --no-empty ' ' -- "$line")
        switch "$parts[1]"
            case 'Subcommands:'
                set listed yes
            case '-*'
                set -l names (string split , -- $parts[1])
                set --append found $names
                if contains -- "$words[-1]" $names; and string match --quiet '*|*' -- "$parts[2]"
                    string split '|' -- $parts[2]
                    return
                end
            case '*'
                test -n "$listed"; and string match --quiet --regex '^[a-z]' -- "$parts[1]"
                and set --append found $parts[1]
        end
    end
    if test (count $words) -ge $depth; and not string match --quiet -- '-*' "$current"
        __fish_complete_path "$current"
    else
        printf '%s\n' $found
    end
end
complete --command latchkey --no-files --arguments '(__latchkey_words)'
