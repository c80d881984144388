#!/usr/bin/env python3
"""Stand-ins that geoclue_sandbox.sh starts beside a real GeoClue daemon.

  nmea SOCKET --lat L --lng G [--accuracy M]
      A GPS receiver on a Unix socket: GGA + RMC once a second to every reader.
  agent [--max-level N]
      An agent that registers with GeoClue. Without --max-level it never answers
      anything; with it, it reports N as the user's allowed accuracy (0 = location
      switched off). Either way it never answers AuthorizeApp.

Standard library only, so the harness needs nothing beyond GeoClue and D-Bus.
"""

import argparse
import datetime
import os
import socket
import struct
import sys
import threading
import time

# GeoClue turns HDOP into metres through fixed steps, so only these accuracies
# are reachable; each HDOP sits inside its step.
HDOP_FOR_ACCURACY = [(0.0, 0.9), (1.0, 1.5), (3.0, 4.0), (50.0, 8.0), (100.0, 15.0), (300.0, 25.0)]


def hdop_for(accuracy_m):
    for metres, hdop in HDOP_FOR_ACCURACY:
        if accuracy_m <= metres:
            return metres, hdop
    return HDOP_FOR_ACCURACY[-1]


def nmea_line(body):
    checksum = 0
    for ch in body.encode("ascii"):
        checksum ^= ch
    return "$%s*%02X\r\n" % (body, checksum)


def ddmm(value, width):
    # NMEA wants degrees then decimal minutes, zero-padded to a fixed width. Rounding
    # the total first keeps 59.99999' from printing as an impossible 60.0000'.
    total = round(abs(value) * 60.0, 4)
    degrees = int(total // 60)
    return "%0*d%07.4f" % (width, degrees, total - degrees * 60)


def sentences(lat, lng, hdop, now):
    hms = now.strftime("%H%M%S.") + "%02d" % (now.microsecond // 10000)
    lat_s, ns = ddmm(lat, 2), "N" if lat >= 0 else "S"
    lng_s, ew = ddmm(lng, 3), "E" if lng >= 0 else "W"
    gga = "GPGGA,%s,%s,%s,%s,%s,1,08,%.1f,35.0,M,45.0,M,," % (hms, lat_s, ns, lng_s, ew, hdop)
    rmc = "GPRMC,%s,A,%s,%s,%s,%s,0.0,0.0,%s,,,A" % (
        hms, lat_s, ns, lng_s, ew, now.strftime("%d%m%y"))
    return (nmea_line(gga) + nmea_line(rmc)).encode("ascii")


def serve_reader(conn, lat, lng, hdop):
    # GeoClue reconnects every time its source restarts, so each reader gets its own stream.
    with conn:
        try:
            while True:
                now = datetime.datetime.now(datetime.timezone.utc)
                conn.sendall(sentences(lat, lng, hdop, now))
                time.sleep(1.0)
        except OSError:
            pass


def run_nmea(args):
    metres, hdop = hdop_for(args.accuracy)
    if os.path.exists(args.socket):
        os.unlink(args.socket)
    server = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
    server.bind(args.socket)
    server.listen(8)
    print("nmea feeder: %s lat=%s lng=%s accuracy=%gm (hdop %.1f)"
          % (args.socket, args.lat, args.lng, metres, hdop), file=sys.stderr, flush=True)
    while True:
        conn, _ = server.accept()
        threading.Thread(target=serve_reader, args=(conn, args.lat, args.lng, hdop),
                         daemon=True).start()


# --- just enough of the D-Bus wire protocol for a stand-in agent --------------

def pad(buf, align):
    buf.extend(b"\0" * (-len(buf) % align))


def put_string(buf, text, sig=False):
    data = text.encode()
    if sig:
        buf.append(len(data))
    else:
        pad(buf, 4)
        buf.extend(struct.pack("<I", len(data)))
    buf.extend(data + b"\0")


def message(kind, serial, fields, body_sig="", body=b""):
    """kind 1 = method call, 2 = method return; fields: (code, sig, value) tuples."""
    out = bytearray()
    for code, sig, value in fields + ([(8, "g", body_sig)] if body_sig else []):
        pad(out, 8)
        out.append(code)
        put_string(out, sig, sig=True)
        if sig == "u":
            pad(out, 4)
            out.extend(struct.pack("<I", value))
        else:
            put_string(out, value, sig=(sig == "g"))
    msg = bytearray(b"l" + bytes([kind]) + b"\x00\x01")
    msg.extend(struct.pack("<III", len(body), serial, len(out)))
    msg.extend(out)
    pad(msg, 8)
    return bytes(msg + body)


def call(serial, dest, path, iface, member, arg=None):
    fields = [(1, "o", path), (2, "s", iface), (3, "s", member), (6, "s", dest)]
    body = bytearray()
    if arg is not None:
        put_string(body, arg)
    return message(1, serial, fields, "s" if arg is not None else "", bytes(body))


def max_level_reply(serial, reply_to, dest, member, level):
    body = bytearray()
    if member == "GetAll":  # a{sv} holding the one property
        entries = bytearray()
        put_string(entries, "MaxAccuracyLevel")
        put_string(entries, "u", sig=True)
        pad(entries, 4)
        entries.extend(struct.pack("<I", level))
        body.extend(struct.pack("<I", len(entries)))
        pad(body, 8)
        body.extend(entries)
        sig = "a{sv}"
    else:  # Get: a bare variant
        put_string(body, "u", sig=True)
        pad(body, 4)
        body.extend(struct.pack("<I", level))
        sig = "v"
    return message(2, serial, [(5, "u", reply_to), (6, "s", dest)], sig, bytes(body))


def parse_header(buf):
    """(total length, type, serial, {field code: value}) or None until a whole message is in."""
    if len(buf) < 16:
        return None
    end = "<" if buf[0:1] == b"l" else ">"
    body_len, serial, fields_len = struct.unpack(end + "III", buf[4:16])
    header_len = 16 + fields_len + (-(16 + fields_len) % 8)
    if len(buf) < header_len + body_len:
        return None
    fields, pos = {}, 16
    while pos < 16 + fields_len:
        pos += -pos % 8
        code, sig_len = buf[pos], buf[pos + 1]
        sig = buf[pos + 2:pos + 2 + sig_len].decode()
        pos += 3 + sig_len
        if sig == "g":
            n = buf[pos]
            fields[code] = buf[pos + 1:pos + 1 + n].decode()
            pos += n + 2
        else:
            pos += -pos % 4
            (n,) = struct.unpack(end + "I", buf[pos:pos + 4])
            if sig == "u":
                fields[code] = n
                pos += 4
            else:
                fields[code] = buf[pos + 4:pos + 4 + n].decode()
                pos += 5 + n
    return header_len + body_len, buf[1], serial, fields


def bus_connect(address):
    for part in address.split(";"):
        kind, _, params = part.partition(":")
        opts = dict(p.split("=", 1) for p in params.split(",") if "=" in p)
        if kind == "unix" and "path" in opts:
            sock = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
            sock.connect(opts["path"])
            return sock
    raise SystemExit("agent: no unix:path= in %r" % address)


def read_line(sock):
    line = b""
    while not line.endswith(b"\r\n"):
        chunk = sock.recv(1)
        if not chunk:
            raise SystemExit("agent: bus closed during auth")
        line += chunk
    return line


def run_agent(args):
    """With --max-level, answers GeoClue's property reads; AuthorizeApp is never answered."""
    sock = bus_connect(os.environ["DBUS_SYSTEM_BUS_ADDRESS"])
    sock.sendall(b"\0AUTH EXTERNAL " + str(os.getuid()).encode().hex().encode() + b"\r\n")
    if not read_line(sock).startswith(b"OK"):
        raise SystemExit("agent: bus refused auth")
    sock.sendall(b"BEGIN\r\n")
    sock.sendall(call(1, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                      "org.freedesktop.DBus", "Hello"))
    sock.sendall(call(2, "org.freedesktop.GeoClue2", "/org/freedesktop/GeoClue2/Manager",
                      "org.freedesktop.GeoClue2.Manager", "AddAgent", args.agent_id))
    print("agent: AddAgent(%s) sent; %s" % (args.agent_id, "answering nothing" if args.max_level is None
          else "MaxAccuracyLevel=%d, AuthorizeApp unanswered" % args.max_level),
          file=sys.stderr, flush=True)
    buf, serial = b"", 2
    while True:
        chunk = sock.recv(65536)
        if not chunk:
            return
        buf += chunk
        while (parsed := parse_header(buf)) is not None:
            length, kind, their_serial, fields = parsed
            buf = buf[length:]
            member, sender = fields.get(3), fields.get(7)
            if kind == 1:
                print("agent: got %s.%s" % (fields.get(2), member), file=sys.stderr, flush=True)
            if (kind == 1 and args.max_level is not None and sender
                    and fields.get(2) == "org.freedesktop.DBus.Properties"
                    and member in ("Get", "GetAll")):
                serial += 1
                sock.sendall(max_level_reply(serial, their_serial, sender, member, args.max_level))
            elif kind == 3 and fields.get(5) == 2:
                print("agent: AddAgent refused: %s" % fields.get(4), file=sys.stderr, flush=True)


def main():
    parser = argparse.ArgumentParser()
    sub = parser.add_subparsers(dest="cmd", required=True)
    nmea = sub.add_parser("nmea")
    nmea.add_argument("socket")
    nmea.add_argument("--lat", type=float, required=True)
    nmea.add_argument("--lng", type=float, required=True)
    nmea.add_argument("--accuracy", type=float, default=0.0)
    agent = sub.add_parser("agent")
    agent.add_argument("--agent-id", default="geoclue-demo-agent")
    agent.add_argument("--max-level", type=int)
    args = parser.parse_args()
    if args.cmd == "nmea":
        run_nmea(args)
    else:
        run_agent(args)


if __name__ == "__main__":
    main()
