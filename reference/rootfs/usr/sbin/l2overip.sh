#!/bin/sh
# l2overip.sh configure | deconfigure | show REPORT
#
# Drives the L2OverIP driver. Here a file system in the driver's place keeps the state file, and no frames are
# carried.
state=/proc/driver/l2overip/config
settings=/mnt/main/etc/l2overip.conf

value() { sed -n "s/^$1 *= *//p" $state; }

case $1 in
    configure)
        if [ ! -d ${state%/*} ]; then
            mount -t tmpfs -o mode=755 l2overip /proc/driver || exit 1
            mkdir ${state%/*}
        fi
        grep -v '^\[' $settings > $state
        ;;
    deconfigure)
        [ ! -e $state ] || : > $state
        ;;
    show)
        case $2 in
            status) echo "mode $(value mode), interface $(value device)" ;;
            port-table)
                echo "local  $(value local_port)"
                value remote_port | sed 's/^/remote /'
                ;;
            mac-address-table | mac-hash-stats | clone-fabric-stats | vswitch-stats) echo "no frames yet" ;;
            *) exit 2 ;;
        esac
        ;;
    *)
        echo "usage: l2overip.sh configure | deconfigure | show REPORT" >&2
        exit 2
        ;;
esac
