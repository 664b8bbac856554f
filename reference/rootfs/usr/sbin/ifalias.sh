#!/bin/sh
# ifalias.sh add INTERFACE ADDRESS/NETMASK | delete INTERFACE ADDRESS/NETMASK
#
# Gives an interface a further address, or takes it away, and prints the alias's name.
interface=$2
address=${3%/*}

# "<label> <address>/<prefix length>" of each address
labels() { ip -oneline -4 address show dev "$interface" | sed 's/.* inet \([^ ]*\).* \([^ ]*\)\\.*/\2 \1/'; }

case $1 in
    add)
        number=0
        while labels | grep -q "^$interface:$number "; do
            number=$((number + 1))
        done
        label=$interface:$number
        ip address add "$3" broadcast + label "$label" dev "$interface" || exit 1
        ;;
    delete)
        label=$(labels | sed -n "s|^\($interface:[0-9]*\) $address/.*|\1|p")
        [ -n "$label" ] || { echo "$address: no such alias" && exit 1; }
        ip address delete "$3" label "$label" dev "$interface" || exit 1
        ;;
    *) exit 2 ;;
esac
echo "$label"
