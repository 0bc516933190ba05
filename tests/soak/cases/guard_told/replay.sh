#!/usr/bin/env bash
# simulated-mac run --virtual case.world -- bash replay.sh, with driver and simulated-mac in the path
folder=$(mktemp -d)
service=0
mkfifo "$folder/input-1"
env driver $'lock-guard' < "$folder/input-1" &
run=$! service=$!
(
  exec 3> "$folder/input-1"
  simulated-mac advance 939498us > /dev/null
  kill -1 $run
) &
wait $run
wait
simulated-mac violations
