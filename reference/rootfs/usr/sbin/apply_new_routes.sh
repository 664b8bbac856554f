#!/bin/sh
# apply_new_routes.sh
#
# Brings back the routes that went with a link: the routing daemon keeps its own, the others come from leases.
exec /sbin/dhcpclient.sh renew-metrics
