#!/usr/bin/env bash
# simulated-mac run --virtual case.world -- bash replay.sh, with driver and simulated-mac in the path
folder=$(mktemp -d)
service=0
env driver $'ax-insert' $'com.example.mail' $'Delete' $'306' $'254' $'new_line' $''
wait
simulated-mac violations
