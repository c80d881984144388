#!/usr/bin/env bash
# Runs one command against a real GeoClue daemon on a private system bus, fed a fake GPS fix,
# in mount, pid and network namespaces of its own; exits with the command's status. When the
# command ends, the kernel ends whatever else ran in the pid namespace.
#
#   geoclue_sandbox.sh [--deny] [--no-agent] [--no-geoclue] [--fix LAT LNG] -- COMMAND ARGS...
#
#   --deny        GeoClue refuses lunoval
#   --no-agent    no agent registers, so GeoClue leaves every client unanswered
#   --no-geoclue  the bus runs but nobody owns org.freedesktop.GeoClue2
#   --fix         the position fed (default 48.8566 2.3522)
#
# COMMAND sees DBUS_SYSTEM_BUS_ADDRESS and no network: GeoClue 2.6 asks a web service for
# city-level fixes even with wifi switched off. Needs root or unprivileged user namespaces and
# the packages geoclue-2.0, geoclue-2-demo and dbus.
set -euo pipefail

if [[ ${1-} != __inside ]]; then
  export allowed=true agent=1 geoclue=1 latitude=48.8566 longitude=2.3522 tmp
  while [[ ${1-} == --* && $1 != -- ]]; do
    case $1 in
      --deny) allowed=false ;;
      --no-agent) agent=0 ;;
      --no-geoclue) geoclue=0 ;;
      --fix) latitude=$2 longitude=$3; shift 2 ;;
      *) echo "geoclue_sandbox.sh: unknown option $1" >&2; exit 2 ;;
    esac
    shift
  done
  [[ ${1-} == -- ]] && shift
  tmp=$(mktemp -d /tmp/geoclue-sandbox.XXXXXX)  # short: a socket's path holds 108 bytes
  trap 'rm -rf "$tmp"' EXIT
  mkdir "$tmp/etc"
  # Only the GPS may answer.
  cat >"$tmp/etc/geoclue.conf" <<EOF
[agent]
whitelist=geoclue-demo-agent
[network-nmea]
enable=true
nmea-socket=$tmp/gps
[wifi]
enable=false
[lunoval]
allowed=$allowed
system=false
users=
EOF
  printf '[%s]\nenable=false\n' 3g cdma modem-gps compass >>"$tmp/etc/geoclue.conf"
  # The stock system bus's rules: deny by default, then the holes GeoClue's package punches.
  cat >"$tmp/bus.conf" <<EOF
<busconfig>
  <listen>unix:path=$tmp/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="*"/>
    <allow send_destination="org.freedesktop.DBus"/>
  </policy>
  <include>/etc/dbus-1/system.d/org.freedesktop.GeoClue2.conf</include>
  <include>/etc/dbus-1/system.d/org.freedesktop.GeoClue2.Agent.conf</include>
</busconfig>
EOF
  # --mount-proc: GeoClue looks its clients up in /proc by the pid the bus reports.
  namespaces=(--mount --propagation private --net --pid --fork --kill-child --mount-proc)
  ((EUID == 0)) || namespaces+=(--map-root-user)
  setpriv --pdeathsig KILL -- unshare "${namespaces[@]}" -- bash "$0" __inside "$@"
  exit
fi

shift
export DBUS_SYSTEM_BUS_ADDRESS=unix:path=$tmp/bus
wait_for() { for _ in $(seq 500); do "$@" 2>/dev/null && return; sleep 0.01; done; return 1; }
mount --bind "$tmp/etc" /etc/geoclue  # in this namespace only
/usr/bin/python3 "$(dirname "$0")/fake_gps.py" "$tmp/gps" "$latitude" "$longitude" 2>/dev/null &
dbus-daemon --config-file="$tmp/bus.conf" --nofork --nopidfile 2>/dev/null &
wait_for test -S "$tmp/bus"
# -t 0: the default idle exit after 60 s would pull the daemon from under long commands.
((!geoclue)) || /usr/libexec/geoclue -t 0 >"$tmp/geoclue.log" 2>&1 &
((!agent)) || /usr/libexec/geoclue-2.0/demos/agent >/dev/null 2>&1 &
wait_for test -S "$tmp/gps"
((!geoclue)) || gdbus wait --system --timeout 5 org.freedesktop.GeoClue2
"$@"
