#!/bin/sh
# usb-modem-device.sh status isifup | status autoifup
#
# Whether the modem's interface is up; whether it will come up by itself.
[ "$1" = status ] || exit 2
case $2 in
    isifup) ip -brief link show up 2> /dev/null | grep -q '^cdc-modem' ;;
    autoifup) [ -e /sys/class/net/cdc-modem0 ] && grep -q '^CDC-MODEM0_UP[[:blank:]]*1$' /mnt/main/etc/local.conf ;;
    *) exit 2 ;;
esac
