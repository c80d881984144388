#!/usr/bin/env python3
# A GPS receiver on a Unix socket, for geoclue_sandbox.sh: a GGA sentence a second to every
# reader, at a fix GeoClue rates 3 metres (HDOP 4).
#   fake_gps.py SOCKET LATITUDE LONGITUDE
import datetime
import functools
import operator
import socketserver
import sys
import time


def degrees_and_minutes(value: float, width: int) -> str:
    # Rounding the minutes first keeps 59.99999' from printing as an impossible 60.0000'.
    minutes = round(abs(value) * 60, 4)
    return "%0*d%07.4f" % (width, minutes // 60, minutes % 60)


class Receiver(socketserver.StreamRequestHandler):
    def handle(self) -> None:  # until GeoClue hangs up; it reconnects when its source restarts
        latitude, longitude = float(sys.argv[2]), float(sys.argv[3])
        where = (f"{degrees_and_minutes(latitude, 2)},{'N' if latitude >= 0 else 'S'},"
                 f"{degrees_and_minutes(longitude, 3)},{'E' if longitude >= 0 else 'W'}")
        while True:
            now = datetime.datetime.now(datetime.timezone.utc)
            body = f"GPGGA,{now:%H%M%S}.00,{where},1,08,4.0,35.0,M,45.0,M,,"
            self.wfile.write(f"${body}*{functools.reduce(operator.xor, body.encode()):02X}\r\n"
                             .encode())
            time.sleep(1)


socketserver.ThreadingUnixStreamServer(sys.argv[1], Receiver).serve_forever()
