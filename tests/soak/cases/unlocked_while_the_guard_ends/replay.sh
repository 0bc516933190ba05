#!/usr/bin/env bash
# simulated-mac run --virtual case.world -- bash replay.sh, with driver and simulated-mac in the path
folder=$(mktemp -d)
service=0
simulated-mac advance 420481us > /dev/null
env driver $'lock-serve'
mkfifo "$folder/input"
env driver $'lock-guard' < "$folder/input" &
run=$! service=$!
(
  exec 3> "$folder/input"
  simulated-mac advance 4122915us > /dev/null
  exec 3>&-
) &
rm "$folder/input"
wait $run
wait
simulated-mac violations
