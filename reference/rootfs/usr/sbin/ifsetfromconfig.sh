#!/bin/sh
# ifsetfromconfig.sh reset INTERFACE | reset all
#
# Gives interfaces of the running system what the settings say: MTU, addresses, state.
settings=/mnt/main/etc/local.conf

key() { echo "$interface" | tr '[:lower:]' '[:upper:]'; }
value() { sed -n "s/^$(key)_$1[[:blank:]]*//p" $settings; }
# word N TEXT: the N-th word
word() { echo "$2" | awk -v n="$1" '{ print $n }'; }

set_addresses() {
    number=0
    for address in $(value IP); do
        number=$((number + 1))
        label=$interface
        [ $number -eq 1 ] || label=$interface:$((number - 2))
        ip address add "$address/$(word $number "$(value MASK)")" \
            broadcast "$(word $number "$(value BROADCAST)")" label "$label" dev "$interface" || return 1
    done
}

reset() {
    interface=$1
    [ -e "/sys/class/net/$interface" ] || { echo "$interface: no such interface" >&2 && return 1; }
    mtu=$(value MTU)
    [ "${mtu:-auto}" != auto ] || mtu=1500
    /sbin/dhcpclient.sh stop "$interface"
    ip link set dev "$interface" mtu "$mtu" || return 1
    if [ "$(value UP)" = 1 ]; then ip link set dev "$interface" up; else ip link set dev "$interface" down; fi
    if [ "$(value IP)" != dhcp ]; then
        set_addresses
    elif [ "$(value UP)" = 1 ]; then
        /sbin/dhcpclient.sh start "$interface"
    fi
}

# Routes went with the addresses.
bring_routes_back() { [ ! -x /sbin/zebra ] || /sbin/zebra; }

[ "$1" = reset ] || exit 2
if [ "$2" != all ]; then
    reset "$2" && bring_routes_back
    exit
fi
for name in $(sed -n 's/^\(.*\)_UP[[:blank:]].*/\1/p' $settings | tr '[:upper:]' '[:lower:]'); do
    [ ! -e "/sys/class/net/$name" ] || reset "$name" || failed=1
done
bring_routes_back || failed=1
exit ${failed:-0}
