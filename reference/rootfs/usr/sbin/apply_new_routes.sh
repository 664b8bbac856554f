#!/bin/sh
# apply_new_routes.sh
#
# Brings back the routes that went with a link: those of the routing daemon, and those of leases.
[ ! -x /sbin/zebra ] || /sbin/zebra || failed=1
/sbin/dhcpclient.sh renew-metrics && exit ${failed:-0}
