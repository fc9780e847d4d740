# Completion of marvikctl for bash.

_marvikctl_serials() {
    marvikctl list 2>/dev/null | awk 'NR > 1 && $1 != "-" { print $1 }'
}

_marvikctl_profiles() {
    marvikctl profile list 2>/dev/null | awk 'NR > 1 { print $1 }'
}

_marvikctl_values() {
    case $1 in
    preset) echo "standard bright vivid" ;;
    framing) echo "off group individual division" ;;
    sensitivity) echo "low medium high" ;;
    fov) echo "60 90 120" ;;
    mirror) echo "off on" ;;
    esac
}

_marvikctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local keys="brightness contrast saturation sharpness preset framing sensitivity fov mirror"
    local commands="list info get set reset save profile apply watch firmware identify report metrics
        help version"
    local options="--device --all --model --site --dry-run --once --reinstall --parallel --output --redact
        --json --json-progress --timeout --quiet --verbose --help --version"
    local command= verb= word i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        case $word in
        -d | --device | --model | --parallel | -o | --output | -t | --timeout) ((++i)) ;;
        -*) ;;
        *)
            if [ -z "$command" ]; then
                command=$word
            elif [ -z "$verb" ]; then
                verb=$word
            fi
            ;;
        esac
    done

    case $previous in
    -d | --device) COMPREPLY=($(compgen -W "$(_marvikctl_serials)" -- "$current")) && return ;;
    -o | --output) COMPREPLY=($(compgen -f -- "$current")) && return ;;
    --model | --parallel | -t | --timeout) return ;;
    esac
    # Bash divides "fov=90" into three words.
    if [ "$command" = set ] && [ "$previous" = "=" ]; then
        COMPREPLY=($(compgen -W "$(_marvikctl_values "${COMP_WORDS[COMP_CWORD - 2]}")" -- "$current"))
        return
    fi
    if [ "$command" = set ] && [ "$current" = "=" ]; then
        COMPREPLY=($(compgen -W "$(_marvikctl_values "$previous")"))
        return
    fi
    if [[ $current == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$current"))
        return
    fi
    case $command in
    '') COMPREPLY=($(compgen -W "$commands" -- "$current")) ;;
    get) COMPREPLY=($(compgen -W "$keys" -- "$current")) ;;
    set)
        COMPREPLY=($(compgen -W "$keys" -S = -- "$current"))
        compopt -o nospace 2>/dev/null
        ;;
    help) COMPREPLY=($(compgen -W "$commands" -- "$current")) ;;
    firmware)
        if [ -z "$verb" ]; then
            COMPREPLY=($(compgen -W "check install" -- "$current"))
        else
            COMPREPLY=($(compgen -f -- "$current"))
        fi
        ;;
    profile)
        case $verb in
        '') COMPREPLY=($(compgen -W "save show diff apply export import list assign unassign" -- "$current")) ;;
        import) COMPREPLY=($(compgen -f -- "$current")) ;;
        *) COMPREPLY=($(compgen -W "$(_marvikctl_profiles)" -- "$current")) ;;
        esac
        ;;
    esac
}

complete -F _marvikctl marvikctl
