#!/usr/bin/env bash
# simulated-mac run --virtual case.world -- bash replay.sh, with driver and simulated-mac in the path
folder=$(mktemp -d)
service=0
env driver $'bg-click' $'com.apple.appkit.xpc.openAndSavePanelService' $'1843' $'226'
wait
simulated-mac violations
