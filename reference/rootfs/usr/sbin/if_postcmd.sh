#!/bin/sh
# if_postcmd.sh INTERFACE up | down
#
# Called behind a change of the interface's state. An interface that comes up gets the MTU of the settings, which
# a driver may have reset with the link, and the routes that went with the link.
[ "$2" = up ] || exit 0
key=$(echo "$1" | tr '[:lower:]' '[:upper:]')
mtu=$(sed -n "s/^${key}_MTU[[:blank:]]*\([0-9][0-9]*\)\$/\1/p" /mnt/main/etc/local.conf)
[ -z "$mtu" ] || ip link set dev "$1" mtu "$mtu"
[ ! -x /sbin/zebra ] || /sbin/zebra
