# Completes the command line of ztv-ctl in bash. Works with and without the package bash-completion.

_ztv_ctl_commands="ports search info parameters get set save load diff store reinit watch flash trace simulate"
_ztv_ctl_common="--port --baud --parity --address --timeout --format --quiet --trace --help"

# Prints the options of a command, or those that stand before the commands.
_ztv_ctl_options() {
    case $1 in
    "") echo "$_ztv_ctl_common --version" ;;
    search) echo "$_ztv_ctl_common --from --to --all-settings" ;;
    get) echo "$_ztv_ctl_common --raw" ;;
    set | store) echo "$_ztv_ctl_common --dry-run" ;;
    save | reinit | flash) echo "$_ztv_ctl_common --yes --dry-run" ;;
    load) echo "$_ztv_ctl_common --yes --dry-run --line-settings" ;;
    diff) echo "$_ztv_ctl_common --line-settings" ;;
    watch) echo "$_ztv_ctl_common --raw --every --for" ;;
    trace) echo "$_ztv_ctl_common --every --for" ;;
    simulate)
        echo "--address --baud --parity --addressing --link --pace --echo --latency --drop --corrupt --exception" \
            "--seed --log --boot --flash --presets --make-firmware --help"
        ;;
    *) echo "$_ztv_ctl_common" ;;
    esac
}

# Prints a column of CSV without its head.
_ztv_ctl_column() {
    tail -n +2 | sed -E "s/^(([^,\"]*|\"([^\"]|\"\")*\"),){$(($1 - 1))}//; t next
        : next
        s/^\"(([^\"]|\"\")*)\".*/\1/; t quoted
        s/,.*//; b
        : quoted
        s/\"\"/\"/g"
}

# Offers the lines of the input that begin with what was typed, in capital or small letters.
_ztv_ctl_offer() {
    local line
    while IFS= read -r line; do
        if [[ ${line,,} == "${typed,,}"* ]]; then
            [ -n "$open" ] || printf -v line %q "$line"
            COMPREPLY+=("${line:${#kept}}$1")
        fi
    done
}

# Offers folders, and files whose names match the pattern.
_ztv_ctl_files() {
    local file
    compopt -o filenames 2>/dev/null
    while IFS= read -r file; do
        COMPREPLY+=("$file")
    done < <(
        compgen -d -- "$typed"
        compgen -f -X "!$1" -- "$typed"
    )
}

_ztv_ctl_takes_value() {
    case $1 in
    --port | --baud | --parity | --address | --timeout | --format | --from | --to | --every | --for) ;;
    --addressing | --link | --latency | --drop | --corrupt | --exception) ;; # of simulate
    --seed | --log | --flash | --presets | --make-firmware) ;;
    *) return 1 ;;
    esac
}

_ztv_ctl_value() {
    case $1 in
    --port) _ztv_ctl_offer < <("$program" ports --format csv 2>/dev/null | _ztv_ctl_column 1) ;;
    --baud) _ztv_ctl_offer < <(printf '%s\n' 2400 4800 9600 19200 38400) ;;
    --parity) _ztv_ctl_offer < <(printf '%s\n' N1 N2 E1 O1) ;;
    --format) _ztv_ctl_offer < <(printf '%s\n' text csv json) ;;
    --link | --log | --flash | --presets | --make-firmware) compopt -o default 2>/dev/null ;;
    esac
}

# Offers what a command takes besides options.
_ztv_ctl_argument() {
    case $1 in
    "") _ztv_ctl_offer < <(tr ' ' '\n' <<<"$_ztv_ctl_commands") ;;
    get | watch | trace) _ztv_ctl_offer < <("$program" parameters --format csv 2>/dev/null | _ztv_ctl_column 2) ;;
    set)
        compopt -o nospace 2>/dev/null
        [[ $typed == *=* ]] || _ztv_ctl_offer '=' < <("$program" parameters --format csv 2>/dev/null |
            grep -v ',read$' | _ztv_ctl_column 2)
        ;;
    save | load | diff) _ztv_ctl_files '*.[zZ][tT][vV]' ;;
    flash) _ztv_ctl_files '*.[hH][eE][xX]' ;;
    esac
}

# Joins the words that bash has split at "=" and ":", up to the cursor.
_ztv_ctl_words() {
    local rest=$COMP_LINE stripped piece
    words=()
    for piece in "${COMP_WORDS[@]:0:COMP_CWORD+1}"; do
        stripped=${rest#"${rest%%[![:blank:]]*}"}
        if [ ${#words[@]} -eq 0 ] || [ "$stripped" != "$rest" ]; then
            words+=("")
        fi
        words[-1]+=$piece
        rest=${stripped#"$piece"}
    done
}

# Prints the command among the words; nothing if none is there yet.
_ztv_ctl_command() {
    local word before=
    for word in "${words[@]:1:${#words[@]}-2}"; do
        if [[ $word != -* ]] && ! _ztv_ctl_takes_value "$before"; then
            echo "$word"
            return
        fi
        before=$word
    done
}

_ztv_ctl() {
    local program=${1/#\~/$HOME} words command before typed kept open=
    COMPREPLY=()
    _ztv_ctl_words
    command=$(_ztv_ctl_command)
    before=${words[-2]}
    typed=${words[-1]}
    kept=${typed%"$2"} # readline replaces $2 alone
    if [[ $typed == --*=* ]]; then
        before=${typed%%=*}
        typed=${typed#*=}
        kept=${kept#*=}
    fi
    [[ $kept != *[\"\'] ]] || open=yes
    kept=${kept//[\\\"\']/}
    typed=${typed//[\\\"\']/}

    if [[ $before == *[\<\>] ]]; then
        compopt -o default 2>/dev/null
    elif _ztv_ctl_takes_value "$before"; then
        _ztv_ctl_value "$before"
    elif [[ $typed == -* ]]; then
        _ztv_ctl_offer < <(_ztv_ctl_options "$command" | tr ' ' '\n')
    else
        _ztv_ctl_argument "$command"
    fi
}

complete -F _ztv_ctl ztv-ctl
