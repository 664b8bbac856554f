#!/bin/sh
# bonding.sh populate BOND | add BOND SLAVE | delete BOND SLAVE | delete BOND all | set BOND OPTION VALUE
#
# Makes and changes bonds of the running system as the settings say. The kernel needs its bonding driver.
settings=/mnt/main/etc/local.conf
bond=$2
options=/sys/class/net/$bond/bonding

key() { echo "$1" | tr '[:lower:]' '[:upper:]'; }
value() { sed -n "s/^$(key "$bond")_BONDING_$1[[:blank:]]*//p" $settings; }
slaves() { sed -n "s/^\(.*\)_MASTER[[:blank:]]*$bond\$/\1/p" $settings | tr '[:upper:]' '[:lower:]' | grep -vx "$bond"; }
# A slave joins with its link down.
join() { ip link set dev "$1" down && ip link set dev "$1" master "$bond" && ip link set dev "$1" up; }

case $1 in
    populate)
        ip link add "$bond" type bond mode "$(value MODE)" miimon "$(value MIIMON)" || exit 1
        for slave in $(slaves); do
            join "$slave" || exit 1
        done
        ;;
    add) join "$3" ;;
    delete)
        if [ "$3" = all ]; then
            ip link delete "$bond" type bond
        else
            ip link set dev "$3" nomaster
        fi
        ;;
    set)
        [ -d "$options" ] || { echo "$bond: no bond of the system" >&2 && exit 1; }
        option=$(echo "$3" | tr - _)
        # "none" is an empty name for the kernel.
        if [ "$3 $4" = "primary none" ]; then echo > "$options/primary"; else echo "$4" > "$options/$option"; fi
        ;;
    *) exit 2 ;;
esac
