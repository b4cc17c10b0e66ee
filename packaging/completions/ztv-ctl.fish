# Completes the command line of ztv-ctl in fish.

# Prints a column of CSV without its head. The column's texts contain no commas.
function __ztv_ctl_column
    tail -n +2 | string split --fields $argv[1] ,
end

function __ztv_ctl_ports
    ztv-ctl ports --format csv 2>/dev/null | __ztv_ctl_column 1
end

function __ztv_ctl_parameters
    ztv-ctl parameters --format csv 2>/dev/null | __ztv_ctl_column 2
end

# Prints what stands before a value: parameters that can be written, each with "=".
function __ztv_ctl_writable
    ztv-ctl parameters --format csv 2>/dev/null | string match --invert '*,read' | __ztv_ctl_column 2 |
        string replace --regex '$' '='
end

# Prints the command on the command line; nothing if none is there yet.
function __ztv_ctl_command
    set -l words (commandline -opc)
    set -l before
    for word in $words[2..-1]
        if not string match -q -- '-*' $word
            and not contains -- "$before" --port --baud --parity --address --timeout --format
            echo $word
            return
        end
        set before $word
    end
end

# Succeeds if the command is one of these; without any, if there is no command yet.
function __ztv_ctl_is
    set -l command (__ztv_ctl_command)
    if test (count $argv) -eq 0
        test -z "$command"
    else
        contains -- "$command" $argv
    end
end

complete -c ztv-ctl -f

complete -c ztv-ctl -n __ztv_ctl_is -a ports -d 'List the serial devices'
complete -c ztv-ctl -n __ztv_ctl_is -a search -d 'Find the sensors on a line'
complete -c ztv-ctl -n __ztv_ctl_is -a parameters -d 'List the parameters, without a sensor'
complete -c ztv-ctl -n __ztv_ctl_is -a info -d 'Say which sensor answers'
complete -c ztv-ctl -n __ztv_ctl_is -a get -d 'Print parameters'
complete -c ztv-ctl -n __ztv_ctl_is -a set -d 'Write parameters'
complete -c ztv-ctl -n __ztv_ctl_is -a save -d 'Save the settings to a file'
complete -c ztv-ctl -n __ztv_ctl_is -a load -d 'Write the settings of a file'
complete -c ztv-ctl -n __ztv_ctl_is -a diff -d 'Compare a sensor with a file, or two files'
complete -c ztv-ctl -n __ztv_ctl_is -a store -d 'Make the sensor save its settings'
complete -c ztv-ctl -n __ztv_ctl_is -a reinit -d 'Reset to the factory settings'
complete -c ztv-ctl -n __ztv_ctl_is -a watch -d 'Read again and again'
complete -c ztv-ctl -n __ztv_ctl_is -a flash -d 'Replace the firmware'
complete -c ztv-ctl -n __ztv_ctl_is -a trace -d 'Print each frame on the line'
complete -c ztv-ctl -n __ztv_ctl_is -a simulate -d 'Start a simulated sensor'

# Options of all commands but simulate, which passes its own to the simulated sensor.
set -l common 'not __ztv_ctl_is simulate'
complete -c ztv-ctl -n $common -l port -x -a '(__ztv_ctl_ports)' -d 'Serial device or number of a port'
complete -c ztv-ctl -n $common -l baud -x -a '2400 4800 9600 19200 38400' -d 'Baud rate'
complete -c ztv-ctl -n $common -l parity -x -a 'N1 N2 E1 O1' -d 'Parity and stop bits'
complete -c ztv-ctl -n $common -l address -x -d 'Number, list (1,5) or range (1-10)'
complete -c ztv-ctl -n $common -l timeout -x -d 'Time for an answer, in milliseconds'
complete -c ztv-ctl -n $common -l format -x -a 'text csv json' -d 'Format of the results'
complete -c ztv-ctl -n $common -l quiet -d 'No remarks and no progress'
complete -c ztv-ctl -n $common -l trace -d 'Print each frame on the line'
complete -c ztv-ctl -s h -l help -d 'Print the options'
complete -c ztv-ctl -n __ztv_ctl_is -l version -d 'Print the version'

complete -c ztv-ctl -n '__ztv_ctl_is search' -l from -x -d 'First address'
complete -c ztv-ctl -n '__ztv_ctl_is search' -l to -x -d 'Last address'
complete -c ztv-ctl -n '__ztv_ctl_is search' -l all-settings -d 'All baud rates and parities'
complete -c ztv-ctl -n '__ztv_ctl_is get watch' -l raw -d 'Raw numbers'
complete -c ztv-ctl -n '__ztv_ctl_is set save load store reinit flash' -l dry-run -d 'Write nothing'
complete -c ztv-ctl -n '__ztv_ctl_is save load reinit flash' -l yes -d 'Go on without asking'
complete -c ztv-ctl -n '__ztv_ctl_is load diff' -l line-settings -d 'Include address, baud rate and parity'
complete -c ztv-ctl -n '__ztv_ctl_is watch trace' -l every -x -d 'Time between two rounds, in milliseconds'
complete -c ztv-ctl -n '__ztv_ctl_is watch trace' -l for -x -d 'End after 90s, 10m, 8h or 7d'

complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l address -x -d 'Address of the sensor'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l baud -x -a '2400 4800 9600 19200 38400' -d 'Baud rate'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l parity -x -a 'N1 N2 E1 O1' -d 'Parity and stop bits'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l addressing -x -a '0 1' -d 'Addressing mode'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l link -r -F -d 'Symbolic link to the terminal'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l pace -d 'Bytes take their time'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l echo -d 'Local echo'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l latency -x -d 'Milliseconds before a reply'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l drop -x -d 'Probability of a lost reply'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l corrupt -x -d 'Probability of a damaged reply'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l exception -x -d 'Exception code of each reply'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l seed -x -d 'Seed of movement and faults'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l log -r -F -d 'File for all frames'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l boot -d 'Start in the boot loader'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l flash -r -F -d 'File of the program flash'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l presets -r -F -d 'Presets database'
complete -c ztv-ctl -n '__ztv_ctl_is simulate' -l make-firmware -r -F -d 'Write a firmware image, and end'

complete -c ztv-ctl -n '__ztv_ctl_is get watch trace' -a '(__ztv_ctl_parameters)'
complete -c ztv-ctl -n '__ztv_ctl_is set' -a '(__ztv_ctl_writable)'
complete -c ztv-ctl -n '__ztv_ctl_is save load diff' -k -a '(__fish_complete_suffix .ztv)'
complete -c ztv-ctl -n '__ztv_ctl_is flash' -k -a '(__fish_complete_suffix .hex)'
