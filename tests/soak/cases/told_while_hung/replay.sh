#!/usr/bin/env bash
# simulated-mac run --virtual case.world -- bash replay.sh, with driver and simulated-mac in the path
folder=$(mktemp -d)
service=0
env driver $'bg-drag' $'com.example.mail' $'238' $'396' $'525' $'272'
env driver $'lock-guard' &
wait
simulated-mac violations
