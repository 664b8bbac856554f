#!/bin/sh
# http_proxy.sh start | stop | restart | is-running | squid_is_running
#
# The HTTP proxy: squid, with the access rules that conf-tool generates. Rules that squid can't take don't take the
# proxy down: it goes on with the last ones that it could, and says why.
generated=/etc/squid/content-filter.conf
good=/etc/squid/content-filter.good
settings=/etc/squid/appliance.conf
pid_file=/run/squid.pid

# write_settings RULES
write_settings() {
    cat > $settings << END
http_port 3128
visible_hostname $(hostname)
pid_filename $pid_file
cache deny all
access_log none
shutdown_lifetime 0 seconds
include $1
acl inside src 10.0.0.0/8 172.16.0.0/12 192.168.0.0/16
http_access allow inside
http_access deny all
END
}

check() {
    write_settings "$1"
    output=$(squid -k parse -f $settings 2>&1) && ! echo "$output" | grep -qE 'unrecognized|ERROR|FATAL|Bungled'
}

choose_rules() {
    [ -e $generated ] || : > $generated
    if check $generated; then
        cp $generated $good
    else
        echo "HTTP proxy: squid does not take $generated:" >&2
        echo "$output" | grep -E 'unrecognized|ERROR|FATAL|Bungled' | sed 's/^[^|]*| //' >&2
        [ -e $good ] || return 1
        echo "HTTP proxy: the rules before them stay" >&2
    fi
    write_settings $good
}

start() {
    choose_rules && squid -f $settings > /dev/null 2>&1 || { echo "HTTP proxy: failed to start" >&2 && return 1; }
    for _ in $(seq 100); do
        ! is_running || ! ss -Hnlt 'sport = :3128' | grep -q . || return 0
        sleep 0.05
    done
    echo "HTTP proxy: does not answer" >&2
    return 1
}
is_running() { start-stop-daemon -K -t -q -p $pid_file -x /usr/sbin/squid; }
stop() { ! is_running || start-stop-daemon -K -q -R 10 -p $pid_file -x /usr/sbin/squid; }

case $1 in
    start) is_running || start ;;
    stop) stop ;;
    restart) stop && start ;;
    is-running | squid_is_running) is_running ;;
    *) exit 2 ;;
esac
