#!/bin/sh
# Applies the network settings of system.ini to the first interface: network.sh restart
# Runs on a phone only, where the busybox tools are.
set -u
ini=/rundata/config/system.ini
device=${HX_NETWORK_DEVICE:-eth0}

# setting SECTION KEY: the value, without regard to the case of the names.
setting() {
    awk -F= -v section="$1" -v key="$2" '
        /^[ \t]*\[/ { gsub(/^[ \t]*\[|\][ \t\r]*$/, ""); here = tolower($0) == tolower(section); next }
        here && tolower($1) == tolower(key) { sub(/^[^=]*=/, ""); sub(/\r$/, ""); print; exit }' "$ini"
}

stop_clients() {
    killall -q udhcpc pppd
    ip addr flush dev "$device"
}

# The name servers that are set; a lease or a dial-in writes its own.
name_servers() {
    : >/etc/resolv.conf.new
    for key in strWanPrimaryDNS strWanSecondaryDNS; do
        server=$(setting Network "$key")
        [ -z "$server" ] || echo "nameserver $server" >>/etc/resolv.conf.new
    done
    mv /etc/resolv.conf.new /etc/resolv.conf
}

start_static() {
    ip addr add "$(setting Network strWanIP)/$(setting Network strWanMask)" dev "$device" &&
        ip route replace default via "$(setting Network strWanGateway)" dev "$device" && name_servers
}

start_pppoe() {
    pppd plugin rp-pppoe.so "$device" user "$(setting Network strPPPoEUser)" \
        password "$(setting Network strPPPoEPin)" defaultroute usepeerdns persist
}

[ "${1:-}" = restart ] || { echo "usage: network.sh restart" >&2; exit 2; }
[ -r "$ini" ] || { echo "network.sh: cannot read $ini" >&2; exit 1; }
stop_clients
ip link set "$device" up
case $(setting Network eWANType) in
1) start_pppoe ;;
2) start_static ;;
*) udhcpc -b -i "$device" ;;
esac
