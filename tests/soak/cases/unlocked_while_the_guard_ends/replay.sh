#!/usr/bin/env bash
# simulated-mac run --virtual case.world -- bash replay.sh, with driver and simulated-mac in the path
folder=$(mktemp -d)
service=0
simulated-mac advance 420481us > /dev/null
env driver $'lock-serve'
mkfifo "$folder/input-2"
env driver $'lock-guard' < "$folder/input-2" &
run=$! service=$!
(
  exec 3> "$folder/input-2"
  simulated-mac advance 4122915us > /dev/null
  exec 3>&-
) &
wait $run
wait
simulated-mac violations
