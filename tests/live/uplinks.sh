# Sourced by live tests: a machine inside, and three ways to the net 198.51.100.0/24. Every machine of the ways has
# all of its addresses, and answers with a TTL of its own, so that an answer tells its way.
. "${BASH_SOURCE[0]%/*}/support.sh"

machine inside eth1 192.168.1.50/24 192.168.1.1
machine way0 eth0 203.0.113.1/24 203.0.113.2
machine way2 eth2 192.168.2.9/24 192.168.2.1
machine way3 eth3 192.168.3.9/24 192.168.3.1
for number in 0 2 3; do
    ip -n way$number route add local 198.51.100.0/24 dev lo
    at way$number sysctl -qw net.ipv4.ip_default_ttl=10$number
done

# way [PING OPTION...]: which way a ping from inside takes: way0, way2, way3; "refused" or "none".
way() {
    local output
    output=$(at inside ping -n -c 1 -W 1 "$@" 198.51.100.9 2>&1)
    case $output in
        *ttl=99*) echo way0 ;;
        *ttl=101*) echo way2 ;;
        *ttl=102*) echo way3 ;;
        *filtered* | *rohibited* | *nreachable*) echo refused ;;
        *) echo none ;;
    esac
}
goes() { [[ $(way "${@:2}") == "$1" ]]; }
