#!/bin/sh
# iphook.sh INTERFACE
#
# Called behind a change of the interface's address: what was learned of its neighbours holds no more.
ip neighbour flush dev "$1"
