#!/usr/bin/env bash
# shellcheck disable=SC2317  # cleanup, stop, forward and has_owner run indirectly
# Runs one command against a real GeoClue daemon on a private system bus, fed a
# fake GPS fix, then tears everything down. Exits with the command's status.
#
#   geoclue_sandbox.sh [--deny APPID]... [--no-agent | --silent-agent | --agent-max-level N]
#                      [--no-geoclue] [--lat L --lng G [--accuracy M]] [--debug]
#                      -- COMMAND ARGS...
#
#   --deny APPID          GeoClue refuses this desktop id (repeatable)
#   --no-agent            no agent registers: GeoClue leaves every GetClient unanswered
#   --silent-agent        an agent registers but never answers GeoClue at all
#   --agent-max-level N   an agent that allows at most accuracy level N (0 = switched off)
#   --no-geoclue          the bus runs but nobody owns org.freedesktop.GeoClue2
#   --lat/--lng           the fed position (default 48.8566, 2.3522)
#   --accuracy M          metres; GeoClue rounds up to one of 0, 1, 3, 50, 100, 300 (default 3)
#   --debug               GeoClue debug output; every log is printed at the end
#
# COMMAND sees DBUS_SYSTEM_BUS_ADDRESS (the private bus) and GEOCLUE_SANDBOX_DIR, and
# runs without network: GeoClue 2.6 still queries a web service for city-level fixes
# even with wifi disabled, so the whole sandbox lives in its own network namespace.
# Needs root, or unprivileged user namespaces (the caller is then mapped to root).
set -euo pipefail

export START_NS=${START_NS:-$(date +%s%N)}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
me=geoclue_sandbox
geoclue_bin=/usr/libexec/geoclue
demo_agent_bin=/usr/libexec/geoclue-2.0/demos/agent
# The id agents pass to AddAgent; GeoClue checks it against the whitelist, nothing else.
agent_id=geoclue-demo-agent
# The system interpreter: a version-manager shim costs a third of a second per start.
python=$(command -v /usr/bin/python3 || command -v python3 || true)

die() { echo "$me: $*" >&2; exit 2; }
usage() { sed -n '6,22p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//' >&2; exit 2; }

# Polls every 10 ms, never longer than the given seconds.
wait_for() { # what, seconds, command...
  local what=$1 tries=$(($2 * 100))
  shift 2
  while ((tries-- > 0)); do "$@" && return 0; sleep 0.01; done
  echo "$me: gave up waiting for $what" >&2
  return 1
}

has_owner() {
  dbus-send --bus="$DBUS_SYSTEM_BUS_ADDRESS" --print-reply=literal --reply-timeout=500 \
    --dest=org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.NameHasOwner \
    string:org.freedesktop.GeoClue2 2>/dev/null | grep -q true
}

is_denied() {
  local d
  for d in "${deny[@]}"; do [[ $d == "$1" ]] && return 0; done
  return 1
}

write_geoclue_conf() {
  # Only the NMEA socket may answer. The web URLs point at a closed loopback port
  # because [wifi] enable=false does not stop 2.6's city-level web lookup.
  cat <<EOF
[agent]
whitelist=$agent_id

[network-nmea]
enable=true
nmea-socket=$tmp/nmea.sock

[3g]
enable=false

[cdma]
enable=false

[modem-gps]
enable=false

[wifi]
enable=false
url=http://127.0.0.1:9/geolocate
submit-data=false
submission-url=http://127.0.0.1:9/submit
submission-nick=geoclue

[compass]
enable=false
EOF
  local app
  for app in "${deny[@]}"; do
    printf '\n[%s]\nallowed=false\nsystem=false\nusers=\n' "$app"
  done
  for app in lunoval geoclue-where-am-i; do
    is_denied "$app" || printf '\n[%s]\nallowed=true\nsystem=false\nusers=\n' "$app"
  done
}

# Modelled on the stock system bus: deny by default, then the holes GeoClue's
# package punches (root owns the name and may call agents; anyone may call GeoClue).
write_bus_conf() {
  cat <<EOF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=$tmp/system_bus_socket</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus" send_interface="org.freedesktop.DBus"/>
    <allow send_destination="org.freedesktop.DBus" send_interface="org.freedesktop.DBus.Introspectable"/>
    <allow send_destination="org.freedesktop.DBus" send_interface="org.freedesktop.DBus.Properties"/>
    <allow send_destination="org.freedesktop.GeoClue2"/>
  </policy>
  <policy user="root">
    <allow own="org.freedesktop.GeoClue2"/>
    <allow send_interface="org.freedesktop.GeoClue2.Agent" send_path="/org/freedesktop/GeoClue2/Agent"/>
    <allow send_interface="org.freedesktop.DBus.Properties" send_path="/org/freedesktop/GeoClue2/Agent"/>
  </policy>
</busconfig>
EOF
}

# Runs inside the namespaces and owns every process it starts.
inner() {
  pids=()
  tmp=$GEOCLUE_SANDBOX_DIR

  cleanup() {
    local i pid tries
    # A second Ctrl-C must not cut the teardown short; every step below is bounded.
    trap '' INT TERM HUP
    trap - EXIT
    for ((i = ${#pids[@]} - 1; i >= 0; i--)); do kill -TERM "${pids[i]}" 2>/dev/null || true; done
    for pid in "${pids[@]}"; do
      tries=100
      while ((tries-- > 0)) && kill -0 "$pid" 2>/dev/null; do sleep 0.01; done
      kill -KILL "$pid" 2>/dev/null || true
      wait "$pid" 2>/dev/null || true
    done
    if ((debug)); then
      for log in "$tmp"/*.log; do echo "----- ${log##*/}" >&2; cat "$log" >&2; done
    fi
    rm -rf "$tmp"
  }
  trap cleanup EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  trap 'exit 129' HUP

  # The host's /etc/geoclue stays untouched: this mount exists only in our namespace.
  mount --bind "$tmp/etc-geoclue" /etc/geoclue

  "$python" "$here/geoclue_fakes.py" nmea "$tmp/nmea.sock" \
    --lat "$lat" --lng "$lng" --accuracy "$accuracy" 2>"$tmp/nmea.log" &
  pids+=($!)
  dbus-daemon --config-file="$tmp/bus.conf" --nofork --nopidfile --nosyslog \
    --print-address=3 3>"$tmp/bus.address" 2>"$tmp/dbus.log" &
  pids+=($!)
  wait_for "the private bus" 3 test -s "$tmp/bus.address"
  DBUS_SYSTEM_BUS_ADDRESS=$(head -n1 "$tmp/bus.address")
  export DBUS_SYSTEM_BUS_ADDRESS
  unset DBUS_SESSION_BUS_ADDRESS
  echo "$me: bus $DBUS_SYSTEM_BUS_ADDRESS" >&2

  if ((with_geoclue)); then
    local messages=
    if ((debug)); then messages=all; fi
    # -t 0: the default 60 s idle exit would pull the daemon from under long commands.
    G_MESSAGES_DEBUG=$messages "$geoclue_bin" -t 0 >"$tmp/geoclue.log" 2>&1 &
    pids+=($!)
  fi

  case $agent in
    demo)
      "$demo_agent_bin" >"$tmp/agent.log" 2>&1 &
      pids+=($!) ;;
    silent)
      "$python" "$here/geoclue_fakes.py" agent --agent-id "$agent_id" 2>"$tmp/agent.log" &
      pids+=($!) ;;
    level:*)
      "$python" "$here/geoclue_fakes.py" agent --agent-id "$agent_id" \
        --max-level "${agent#level:}" 2>"$tmp/agent.log" &
      pids+=($!) ;;
  esac

  # GeoClue dials the feeder only when an exact-level client starts, so the feeder
  # may come up in parallel as long as it is listening before the command runs.
  wait_for "the NMEA feeder" 3 test -S "$tmp/nmea.sock"
  if ((with_geoclue)); then
    wait_for "GeoClue to own org.freedesktop.GeoClue2" 5 has_owner
  fi
  echo "$me: ready after $((($(date +%s%N) - START_NS) / 1000000)) ms" >&2

  # In the background so a TERM is acted on at once rather than after the command;
  # with Ctrl-C and stdin restored, it behaves as if it ran in the foreground.
  env --default-signal=INT,QUIT -- "$@" <&0 &
  cmd=$!
  stop() {
    local tries=200
    trap '' INT TERM HUP
    kill -TERM "$cmd" 2>/dev/null || true
    while ((tries-- > 0)) && kill -0 "$cmd" 2>/dev/null; do sleep 0.01; done
    exit "$1"
  }
  trap 'stop 130' INT
  trap 'stop 143' TERM
  trap 'stop 129' HUP
  local status=0
  wait "$cmd" || status=$?
  exit "$status"
}

# The outer call re-runs this script inside the namespaces with the same arguments.
args=("$@")
[[ ${1-} != __inner ]] || shift

lat=48.8566 lng=2.3522 accuracy=3
deny=() agent=demo with_geoclue=1 debug=0
number='^-?[0-9]+([.][0-9]+)?$'
while (($#)); do
  case $1 in
    --deny) deny+=("${2:?--deny needs an app id}"); shift 2 ;;
    --no-agent) agent=none; shift ;;
    --silent-agent) agent=silent; shift ;;
    --agent-max-level)
      [[ ${2-} =~ ^[0-9]+$ ]] || die "--agent-max-level needs a number"
      agent=level:$2; shift 2 ;;
    --no-geoclue) with_geoclue=0; shift ;;
    --lat) [[ ${2-} =~ $number ]] || die "--lat needs a number"; lat=$2; shift 2 ;;
    --lng) [[ ${2-} =~ $number ]] || die "--lng needs a number"; lng=$2; shift 2 ;;
    --accuracy) [[ ${2-} =~ $number ]] || die "--accuracy needs a number"; accuracy=$2; shift 2 ;;
    --debug) debug=1; shift ;;
    --) shift; break ;;
    -h|--help) usage ;;
    *) die "unknown option '$1' (the command goes after --)" ;;
  esac
done
(($#)) || usage

if [[ ${args[0]} == __inner ]]; then
  inner "$@"
fi

for tool in dbus-daemon dbus-send unshare setpriv "$python" "$geoclue_bin"; do
  command -v "$tool" >/dev/null || die "missing $tool (apt-get install geoclue-2.0 dbus)"
done
[[ -d /etc/geoclue ]] || die "/etc/geoclue is missing (apt-get install geoclue-2.0)"
[[ $agent != demo || -x $demo_agent_bin ]] || die "missing $demo_agent_bin"

tmp=$(mktemp -d "${TMPDIR:-/tmp}/geoclue-sandbox.XXXXXX")
trap 'rm -rf "$tmp"' EXIT
# sun_path holds 108 bytes; a long TMPDIR would otherwise fail obscurely later.
((${#tmp} < 80)) || die "temp path too long for a Unix socket: $tmp"
chmod 755 "$tmp"
mkdir "$tmp/etc-geoclue"
write_geoclue_conf >"$tmp/etc-geoclue/geoclue.conf"
write_bus_conf >"$tmp/bus.conf"
export GEOCLUE_SANDBOX_DIR=$tmp

# A pid namespace: when its first process ends, however it ends, the kernel ends all
# the others. --mount-proc: GeoClue looks clients up in /proc by bus-reported PID.
# --pdeathsig: if this shell is killed outright, unshare and so the namespace follow.
ns=(--mount --propagation private --net --pid --fork --kill-child --mount-proc)
((EUID == 0)) || ns+=(--map-root-user)
# Background jobs start with Ctrl-C ignored, which the inner shell could not undo.
env --default-signal=INT,QUIT -- setpriv --pdeathsig KILL -- \
  unshare "${ns[@]}" -- bash "${BASH_SOURCE[0]}" __inner "${args[@]}" <&0 &
child=$!

# unshare ignores signals while it waits, so hand them to the namespace's first process.
# (Ctrl-C also reaches it straight from the terminal; a second INT there is harmless.)
forward() {
  local first=
  # The file has no trailing newline, so read "fails" while still filling the variable.
  read -r first _ <"/proc/$child/task/$child/children" 2>/dev/null || true
  [[ -z $first ]] || kill "-$1" "$first" 2>/dev/null || true
}
trap 'forward TERM' TERM
trap 'forward HUP' HUP
trap 'forward INT' INT

status=0
while :; do
  wait "$child" && status=0 || status=$?
  kill -0 "$child" 2>/dev/null || break
done
exit "$status"
