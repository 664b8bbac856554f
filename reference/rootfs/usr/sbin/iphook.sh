#!/bin/sh
# iphook.sh INTERFACE
#
# Called behind a change of the interface's address: what was learned of its neighbours holds no more,
# and its routes went with the address.
ip neighbour flush dev "$1"
[ ! -x /sbin/zebra ] || /sbin/zebra
