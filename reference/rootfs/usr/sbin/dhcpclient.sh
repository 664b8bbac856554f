#!/bin/sh
# dhcpclient.sh start INTERFACE | stop INTERFACE | clear-routes INTERFACE | ifconf INTERFACE | renew-metrics
#
# The DHCP client of an interface. The client program calls this script too, with the event as the only argument
# and the lease in the environment.
settings=/mnt/main/etc/local.conf
leases=/run/dhcpclient # the gateway of each interface that has a lease

# value FIELD: of the interface in the settings
value() { sed -n "s/^$(echo "$interface" | tr '[:lower:]' '[:upper:]')_$1[[:blank:]]*//p" $settings; }

clear_routes() {
    while ip route delete default dev "$interface" 2> /dev/null; do :; done
}

set_routes() {
    clear_routes
    [ "$(value DHCP_ROUTE)" = 1 ] && [ -s "$leases/$interface" ] || return 0
    metric=$(value DHCP_METRIC)
    [ -n "$metric" ] || metric=$(sed -n 's/^DEFAULT_DHCP_METRIC[[:blank:]]*//p' $settings)
    ip route add default via "$(cat "$leases/$interface")" dev "$interface" metric "$metric"
}

# learn FIELD KEYWORD FILE SERVER...
learn() {
    [ "$(value "$1")" = 1 ] || return 0
    keyword=$2
    file=$3
    shift 3
    for server; do
        echo "$keyword $server"
    done > "$file"
}

stop() {
    if [ -e "/run/dhcpclient-$interface.pid" ]; then
        kill "$(cat "/run/dhcpclient-$interface.pid")" 2> /dev/null
        rm -f "/run/dhcpclient-$interface.pid"
    fi
    rm -f "$leases/$interface"
    ip -4 address flush dev "$interface"
}

[ -z "$2" ] || interface=$2
case $1 in
    start)
        stop
        mkdir -p $leases
        # Without an answer the client goes on in the background.
        exec busybox udhcpc -b -t 2 -T 1 -i "$interface" -p "/run/dhcpclient-$interface.pid" \
            -s /sbin/dhcpclient.sh > /dev/null 2>&1
        ;;
    stop) stop ;;
    clear-routes) clear_routes ;;
    renew-metrics)
        for lease in $leases/*; do
            [ -e "$lease" ] || continue
            interface=${lease##*/}
            set_routes
        done
        ;;
    ifconf)
        ip -brief address show dev "$interface" || exit 1
        if [ "$(value IP)" = dhcp ]; then echo "    Configured by DHCP: yes"; else echo "    Configured by DHCP: no"; fi
        echo "    Speed: $(value SPEED)"
        ;;
    deconfig) ip -4 address flush dev "$interface" ;;
    bound | renew)
        ip -4 address flush dev "$interface"
        ip address add "$ip/${subnet:-255.255.255.0}" broadcast + label "$interface" dev "$interface"
        rm -f "$leases/$interface"
        [ -z "$router" ] || echo "${router%% *}" > "$leases/$interface" # there are leases without one
        set_routes
        # shellcheck disable=SC2086  # lists of words
        learn DHCP_DNS nameserver /etc/resolv.dhcp $dns
        # shellcheck disable=SC2086
        learn DHCP_NTP server /etc/ntp.dhcp $ntpsrv
        ;;
    leasefail | nak) ;;
    *) exit 2 ;;
esac
