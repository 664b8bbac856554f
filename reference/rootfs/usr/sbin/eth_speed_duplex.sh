#!/bin/sh
# eth_speed_duplex.sh validate INTERFACE SPEED DUPLEX | set_speed INTERFACE SPEED DUPLEX AUTONEG
#
# Link settings, in Mbit/s. From a gigabit on there is full duplex alone.
case $3/$4 in
    10/half | 100/half | 10/full | 100/full | 1000/full | 2500/full | 5000/full | 10000/full) ;;
    *) exit 1 ;;
esac
case $1 in
    validate) [ -e "/sys/class/net/$2" ] ;;
    set_speed) exec /sbin/ethtool -s "$2" speed "$3" duplex "$4" autoneg "$5" ;;
    *) exit 2 ;;
esac
