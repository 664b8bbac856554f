#!/bin/bash
# dgd.sh enabled   "yes" when the dead gateway detection starts with the appliance, "no" otherwise
# dgd.sh status    "running" or "stopped"
# dgd.sh start     starts it, now and with the appliance
# dgd.sh stop      stops it, now and with the appliance
set -u

autostart=/etc/quagga/dgdd.enabled
running=/run/quagga/dgdd.running # its running configuration
pid_file=/run/quagga/dgdd.pid    # locked by the one that runs

runs() { [[ -e $pid_file ]] && ! flock --shared --nonblock $pid_file true; }

start() {
    mkdir -p /etc/quagga /run/quagga && : >> /etc/quagga/dgdd.conf && : > $autostart || return 1
    runs && return
    cp /etc/quagga/dgdd.conf $running && /usr/sbin/dgdd
}

stop() {
    rm -f $autostart
    runs || return 0
    kill "$(cat $pid_file)"
    for ((i = 0; i < 100; i++)); do
        runs || break
        sleep 0.05
    done
    ! runs && rm -f $running $pid_file
}

case ${1-} in
    enabled) [[ -e $autostart ]] && echo yes || echo no ;;
    status) runs && echo running || echo stopped ;;
    start) start ;;
    stop) stop ;;
    *)
        echo "usage: dgd.sh enabled|status|start|stop" >&2
        exit 2
        ;;
esac
