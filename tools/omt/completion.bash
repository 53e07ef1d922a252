# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Completion of omt for bash: commands and options, as its help lists them, and names of files.

# _omt PROGRAM CURRENT PREVIOUS, as bash calls it. Without a reply bash offers names of files.
_omt()
{
    local word command='' help words=''
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $word == -* ]] || { command=$word; break; }
    done
    help=$("$1" --help 2> /dev/null; [[ -z $command ]] || "$1" "$command" --help 2> /dev/null)
    if [[ $3 == -* ]] && grep -qE -- "^ +(-.,)?$3 (NAME|CLASS\.NAME|TEXT|HEX|PATH=VALUE|N|UINT)\b" <<< "$help"; then
        compopt +o default
    elif [[ $2 == -* ]]; then
        words=$(grep -oE -- '^ +(-[a-z],)?--[a-z-]+' <<< "$help" | sed 's|^ *||; s|,|\n|' | sort -u)
    elif [[ -z $command ]]; then
        words=$(sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p' <<< "$help")
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$2")
}
complete -o default -F _omt omt
