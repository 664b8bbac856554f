#!/bin/sh
# ifclass_check.sh INTERFACE CLASS
#
# Ends with 0 when the interface may have the class, and prints the reason otherwise.
settings=/mnt/main/etc/local.conf
key=$(echo "$1" | tr '[:lower:]' '[:upper:]')

refuse() {
    echo "$1"
    exit 1
}

[ -e "/sys/class/net/$1" ] || refuse "$1: no such interface"
case $2 in
    access)
        ! grep -iq "_PARENT[[:blank:]]*$1\$" $settings || refuse "$1: VLAN interfaces stand on it"
        ;;
    trunk)
        ! grep -q "^${key}_PARENT[[:blank:]]" $settings || refuse "$1: a VLAN interface can not be a trunk"
        ;;
    slave) ;;
    *) refuse "$2: no such class" ;;
esac
