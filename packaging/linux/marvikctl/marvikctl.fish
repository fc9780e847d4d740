# Completion of marvikctl for fish.

function __marvikctl_serials
    marvikctl list 2>/dev/null | awk 'NR > 1 && $1 != "-" { print $1 }'
end

function __marvikctl_profiles
    marvikctl profile list 2>/dev/null | awk 'NR > 1 { print $1 }'
end

set -l commands list info get set reset save profile apply watch firmware identify report metrics help version
set -l keys brightness contrast saturation sharpness preset framing sensitivity fov mirror
set -l verbs save show diff apply export import list assign unassign

complete -c marvikctl -f
complete -c marvikctl -n "not __fish_seen_subcommand_from $commands" -a "$commands"
complete -c marvikctl -n "__fish_seen_subcommand_from get" -a "$keys"
for key in brightness contrast saturation sharpness
    complete -c marvikctl -n "__fish_seen_subcommand_from set" -a "$key="
end
complete -c marvikctl -n "__fish_seen_subcommand_from set" -a "preset="{standard,bright,vivid}
complete -c marvikctl -n "__fish_seen_subcommand_from set" -a "framing="{off,group,individual,division}
complete -c marvikctl -n "__fish_seen_subcommand_from set" -a "sensitivity="{low,medium,high}
complete -c marvikctl -n "__fish_seen_subcommand_from set" -a "fov="{60,90,120}
complete -c marvikctl -n "__fish_seen_subcommand_from set" -a "mirror="{off,on}
complete -c marvikctl -n "__fish_seen_subcommand_from help" -a "$commands"
complete -c marvikctl -n "__fish_seen_subcommand_from firmware; and not __fish_seen_subcommand_from check install" -a "check install"
complete -c marvikctl -n "__fish_seen_subcommand_from install import" -F
complete -c marvikctl -n "__fish_seen_subcommand_from profile; and not __fish_seen_subcommand_from $verbs" -a "$verbs"
complete -c marvikctl -n "__fish_seen_subcommand_from profile; and __fish_seen_subcommand_from show diff apply export assign" -a "(__marvikctl_profiles)"

complete -c marvikctl -s d -l device -x -a "(__marvikctl_serials)" -d "the camera with this serial number"
complete -c marvikctl -s a -l all -d "all cameras"
complete -c marvikctl -l model -x -d "the cameras of this model"
complete -c marvikctl -l site -d "for all users of this computer"
complete -c marvikctl -s n -l dry-run -d "say what would be done"
complete -c marvikctl -l once -d "apply once, then end"
complete -c marvikctl -l reinstall -d "also when the camera has this version"
complete -c marvikctl -l parallel -x -d "cameras at a time"
complete -c marvikctl -s o -l output -r -F -d "write into this file"
complete -c marvikctl -l redact -d "leave out serial numbers and names of users"
complete -c marvikctl -s j -l json -d "print one JSON document"
complete -c marvikctl -l json-progress -d "print progress as JSON lines"
complete -c marvikctl -s t -l timeout -x -d "wait for another program"
complete -c marvikctl -s q -l quiet -d "print nothing but errors and what was asked for"
complete -c marvikctl -s v -l verbose -d "print the lines of the log"
complete -c marvikctl -s h -l help -d "print help"
complete -c marvikctl -l version -d "print the version"
