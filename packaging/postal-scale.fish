# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT

complete -c postal-scale -f
complete -c postal-scale -s h -l help -d 'Show a summary of the options'
complete -c postal-scale -s v -l version -d 'Show the version'
complete -c postal-scale -l doctor -d 'Look for what keeps the program from working'
complete -c postal-scale -l print -d 'Print one reading and end'
complete -c postal-scale -l follow -d 'Print a line for each change of the reading'
complete -c postal-scale -l settled -d 'With --follow: one line for each parcel'
complete -c postal-scale -l json -d 'With --print or --follow: JSON objects'
complete -c postal-scale -l tare -d 'Tare the scale'
complete -c postal-scale -l hold -xa 'on off toggle' -d 'Hold the reading'
complete -c postal-scale -l power -d 'Switch the scale on or off'
complete -c postal-scale -l unit -xa 'oz lboz lboz-fraction lb g kg lboz-whole' -d 'Choose a unit'
complete -c postal-scale -l compact -xa 'on off toggle' -d 'Show the display alone'
complete -c postal-scale -l capture -d 'Have the settled weight leave now'
complete -c postal-scale -l info -rF -d 'Branding and model lists'
complete -c postal-scale -l record -rF -d 'Write down what passes between program and scale'
complete -c postal-scale -l replay -rF -d 'Show what was recorded'
complete -c postal-scale -l log -rF -d 'Write down what the program does'
