# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of both programs' command lines, for bash.

# Folders, and the files that the player opens, in any letter case.
_lyric_lantern_tracks() {
    local kinds='cdg|bin|zip|mp3|wav|ogg|wma|flac|mp4|mod|xm|it|aif|aac|au|ape|mpc' path
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$1")
    while IFS= read -r path; do
        if [[ ${path,,} =~ \.($kinds)$ ]]; then
            COMPREPLY+=("$path")
        fi
    done < <(compgen -f -- "$1")
}

_lyric_lantern_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

_lyric_lantern() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    # The player takes one word.
    if [ "$COMP_CWORD" -gt 1 ]; then
        return 0
    elif [[ $word == -* ]]; then
        _lyric_lantern_words '--demo --stage --help --version -h' "$word"
    else
        _lyric_lantern_tracks "$word"
    fi
}

_lantern_tool() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} options=
    COMPREPLY=()
    case ${COMP_WORDS[1]} in
    info) options='--json' ;;
    check) options='--json --quick' ;;
    lyrics) options='--format --language --out --force' ;;
    frame) options='--packet --at --out --raw --size --smooth --force' ;;
    thumbnail) options='--size --out --force' ;;
    video) options='--out --size --smooth --fps --key --speed --from --to --force' ;;
    esac
    options+=' --recursive --jobs --quiet'
    if [ "$COMP_CWORD" -eq 1 ]; then
        _lyric_lantern_words 'info frame thumbnail check video lyrics --help --version -h -v' "$word"
    elif [ "$before" = --out ]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    elif [ "$before" = --format ]; then
        _lyric_lantern_words 'txt lrc srt json' "$word"
    elif [[ $before =~ ^--(packet|at|size|jobs|fps|key|speed|from|to|language)$ ]]; then
        return 0
    elif [[ $word == -* ]]; then
        _lyric_lantern_words "$options" "$word"
    else
        _lyric_lantern_tracks "$word"
    fi
}

complete -F _lyric_lantern lyric-lantern
complete -F _lantern_tool lantern-tool
