# Sourced by the live tests. They run in a reference appliance that has booted, and look at what travels between it
# and machines in network namespaces of their own.

failures=0

# check WHAT EXPECTED SEEN
check() {
    if [[ $3 == "$2" ]]; then
        echo "ok: $1"
    else
        printf 'FAILED: %s\n  expected: %s\n  seen: %s\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

# succeeds WHAT COMMAND..., fails WHAT COMMAND...: its output is shown when it does not.
succeeds() {
    local output status=0
    output=$("${@:2}" 2>&1 < /dev/null) || status=$?
    check "$1" 0 "$status"
    [[ $status -eq 0 ]] || printf '  %s\n' "$output"
}
fails() {
    local output status=0
    output=$("${@:2}" 2>&1 < /dev/null) && status=0 || status=1
    check "$1" 1 "$status"
    [[ $status -eq 1 ]] || printf '  %s\n' "$output"
}

# await COMMAND...: until it succeeds, for ten seconds.
await() {
    local end=$((SECONDS + 10))
    until "$@" > /dev/null 2>&1; do
        [[ $SECONDS -lt $end ]] || return 1
        sleep 0.05
    done
}

# listens PROTOCOL PORT [MACHINE]: for `await`.
listens() {
    local at=()
    [[ $# -lt 3 ]] || at=(ip netns exec "$3")
    "${at[@]}" ss --no-header --numeric --listening "--$1" "sport = :$2" | grep -q .
}

# machine NAME CABLE ADDRESS/LENGTH [GATEWAY]: a machine at the other end of the appliance's interface CABLE.
machine() {
    ip netns add "$1"
    ip -n cables link set "$2" netns "$1"
    ip -n "$1" link set lo up
    ip -n "$1" address add "$3" dev "$2"
    ip -n "$1" link set "$2" up
    [[ -z ${4-} ]] || ip -n "$1" route add default via "$4"
}
at() { ip netns exec "$@"; }

# shell LINE...: lines of the command shell, each of which succeeds; questions are answered with yes.
shell() {
    local line
    for line; do
        succeeds "conf-shell: $line" conf-shell -y -c "$line"
    done
}

# The last line of a test.
finish() {
    [[ $failures -eq 0 ]] && echo "all is well" && exit 0
    echo "$failures check(s) failed"
    exit 1
}
