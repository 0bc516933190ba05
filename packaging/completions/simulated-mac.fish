# Made by scripts/generate-tables.
complete -c simulated-mac -f
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a run -d 'run a command with a Mac of its own, and pass on its exit status'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a serve -d 'start a Mac, print its socket and serve until stopped'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a stop -d 'end a Mac that was started by serve, and wait until it has gone'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a list -d 'the Macs of this user that run now'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a view -d 'show a Mac in a browser, at an address that is printed'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a report -d 'write a page that shows the contents of a record'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a check -d 'show all errors in worlds, and things that are probably not meant'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a import -d 'make a world from replies of windows, ax-dump and ax-menubar, or from a page source in XML'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a screenshot -d 'draw the screens as the user sees them'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a snapshot -d 'write the present state as a world, with which a Mac goes on from it'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a state -d 'the user’s front application, keyboard, pointer, clipboard and session; without --user also what processes hold; focus, keys, covers, taps, shared windows'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a tree -d 'applications as they really are, also the parts that accessibility would not show'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a value -d 'the value of the element with this label'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a journal -d 'what was done to the Mac and happened in it'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a trace -d 'every call of every process, with its answer'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a violations -d 'the rules of safe input that were broken so far'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a fault -d 'let a call fail, for example windowserver.session 1 absent'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a failed -d 'write into the journal that a test has failed, and why; a report begins with it'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a wait -d 'wait so long, or until something is so, 10s at most without within; in virtual time that moves it'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a advance -d 'let virtual time pass, for example 250us, 100ms or 2s'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a clock -d 'let virtual time stand, go to the next instant at which anything is due, or go on; as fast as processes do, or at most so many times as fast as real time'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a help -d 'print this, or what is known of a topic'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a lock -d 'the screen locks'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a unlock -d 'the user unlocks the screen'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a leave -d 'another user comes to front'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a return -d 'the other user goes'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a quit -d 'the application quits. If it was in front, the next regular one comes to front'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a end -d 'a process that is not an application ends'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a front -d 'the user brings the application to front, with all its windows'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a hang -d 'the application stops answering'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a recover -d 'a hanging application answers again'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a in -d 'the application does so by itself, not as a reaction of an element'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a user -d 'the user presses a key while holding the modifiers'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a remove -d 'every display is unplugged'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a connect -d 'a display is plugged in; one with that number changes its size and place'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a disconnect -d 'a display is unplugged'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a replug -d 'a display is unplugged and is back at once, as it was'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a request -d 'the processes’ applications are asked to terminate'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a end-loop -d 'the loops of the processes’ applications end by themselves'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a withdraw -d 'the permission to record the screen is withdrawn, which stops all sharing'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a silence -d 'every event tap is disabled, without a notice'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a invalidate -d 'the ports of all event taps become invalid, without a notice'
complete -c simulated-mac -n 'test (count (commandline -opc)) -eq 1' -a disable -d 'the system disables every event tap, as if the user had asked for it, or for being slow'
complete -c simulated-mac -n '__fish_seen_subcommand_from run' -l no-pictures
complete -c simulated-mac -n '__fish_seen_subcommand_from run' -l record
complete -c simulated-mac -n '__fish_seen_subcommand_from run' -l seed
complete -c simulated-mac -n '__fish_seen_subcommand_from run' -l sleep
complete -c simulated-mac -n '__fish_seen_subcommand_from run' -l snapshot
complete -c simulated-mac -n '__fish_seen_subcommand_from run' -l virtual
complete -c simulated-mac -n '__fish_seen_subcommand_from run' -F
complete -c simulated-mac -n '__fish_seen_subcommand_from serve' -l no-pictures
complete -c simulated-mac -n '__fish_seen_subcommand_from serve' -l record
complete -c simulated-mac -n '__fish_seen_subcommand_from serve' -l seed
complete -c simulated-mac -n '__fish_seen_subcommand_from serve' -l socket
complete -c simulated-mac -n '__fish_seen_subcommand_from serve' -l until-closed
complete -c simulated-mac -n '__fish_seen_subcommand_from serve' -l view
complete -c simulated-mac -n '__fish_seen_subcommand_from serve' -l virtual
complete -c simulated-mac -n '__fish_seen_subcommand_from serve' -F
complete -c simulated-mac -n '__fish_seen_subcommand_from stop; and test (count (commandline -opc)) -eq 2' -a 'sharing'
complete -c simulated-mac -n '__fish_seen_subcommand_from report' -F
complete -c simulated-mac -n '__fish_seen_subcommand_from check' -l json
complete -c simulated-mac -n '__fish_seen_subcommand_from check' -F
complete -c simulated-mac -n '__fish_seen_subcommand_from import' -F
complete -c simulated-mac -n '__fish_seen_subcommand_from screenshot' -F
complete -c simulated-mac -n '__fish_seen_subcommand_from snapshot' -F
complete -c simulated-mac -n '__fish_seen_subcommand_from state' -l user
complete -c simulated-mac -n '__fish_seen_subcommand_from tree' -l text
complete -c simulated-mac -n '__fish_seen_subcommand_from journal' -l text
complete -c simulated-mac -n '__fish_seen_subcommand_from trace' -l text
complete -c simulated-mac -n '__fish_seen_subcommand_from wait; and test (count (commandline -opc)) -eq 2' -a 'until'
complete -c simulated-mac -n '__fish_seen_subcommand_from clock; and test (count (commandline -opc)) -eq 2' -a 'stop step run'
complete -c simulated-mac -n '__fish_seen_subcommand_from help; and test (count (commandline -opc)) -eq 2' -a 'calls outcomes happenings reactions habits releases'
complete -c simulated-mac -n '__fish_seen_subcommand_from leave; and test (count (commandline -opc)) -eq 2' -a 'console'
complete -c simulated-mac -n '__fish_seen_subcommand_from return; and test (count (commandline -opc)) -eq 2' -a 'to'
complete -c simulated-mac -n '__fish_seen_subcommand_from end; and test (count (commandline -opc)) -eq 2' -a 'process'
complete -c simulated-mac -n '__fish_seen_subcommand_from user; and test (count (commandline -opc)) -eq 2' -a 'key click move scroll drag press release copy'
complete -c simulated-mac -n '__fish_seen_subcommand_from remove; and test (count (commandline -opc)) -eq 2' -a 'displays'
complete -c simulated-mac -n '__fish_seen_subcommand_from connect; and test (count (commandline -opc)) -eq 2' -a 'display'
complete -c simulated-mac -n '__fish_seen_subcommand_from disconnect; and test (count (commandline -opc)) -eq 2' -a 'display'
complete -c simulated-mac -n '__fish_seen_subcommand_from replug; and test (count (commandline -opc)) -eq 2' -a 'display'
complete -c simulated-mac -n '__fish_seen_subcommand_from request; and test (count (commandline -opc)) -eq 2' -a 'termination'
complete -c simulated-mac -n '__fish_seen_subcommand_from withdraw; and test (count (commandline -opc)) -eq 2' -a 'recording accessibility'
complete -c simulated-mac -n '__fish_seen_subcommand_from silence; and test (count (commandline -opc)) -eq 2' -a 'taps'
complete -c simulated-mac -n '__fish_seen_subcommand_from invalidate; and test (count (commandline -opc)) -eq 2' -a 'taps'
complete -c simulated-mac -n '__fish_seen_subcommand_from disable; and test (count (commandline -opc)) -eq 2' -a 'taps'
