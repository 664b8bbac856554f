#!/bin/bash
# dgd.sh enabled   "yes" when the dead gateway detection starts with the appliance, "no" otherwise
# dgd.sh status    "running" or "stopped"
# dgd.sh start     starts it, now and with the appliance
# dgd.sh stop      stops it, now and with the appliance
set -u

autostart=/etc/quagga/dgdd.enabled
running=/run/quagga/dgdd.running # its running configuration

case ${1-} in
    enabled) [[ -e $autostart ]] && echo yes || echo no ;;
    status) [[ -e $running ]] && echo running || echo stopped ;;
    start)
        mkdir -p /etc/quagga /run/quagga && : > $autostart && : >> /etc/quagga/dgdd.conf || exit 1
        [[ -e $running ]] || cp /etc/quagga/dgdd.conf $running
        ;;
    stop) rm -f $autostart $running ;;
    *)
        echo "usage: dgd.sh enabled|status|start|stop" >&2
        exit 2
        ;;
esac
