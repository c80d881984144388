# What the checks share: the command run in a fresh home with a clean environment, work spread
# over two workers, and the tally printed as "N passed, M failed" that sets the exit status.

from __future__ import annotations

import os
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor

sys.dont_write_bytecode = True  # keeps the source tree clean when run from CTest

# Nothing else of the caller's environment reaches the command: no saved place, zone or language
# of whoever runs the checks. A sanitizer's settings pass through.
KEPT = re.compile(r"PATH|LD_LIBRARY_PATH|[A-Z]+SAN_OPTIONS")


class Home(tempfile.TemporaryDirectory):
    # A fresh home folder to run the command in, removed on leaving.
    def __init__(self, binary: str, **env: str):
        super().__init__(prefix="lunoval-check-")
        self.binary, self.path = binary, self.name
        self.env = {k: v for k, v in os.environ.items() if KEPT.fullmatch(k)}
        self.env.update({"HOME": self.path, "TZ": "UTC", "LC_ALL": "C", **env})

    def __enter__(self) -> "Home":
        return self

    def run(self, *args: str, code: int = 0) -> str:
        # The command's standard output, once it has exited with `code`.
        done = subprocess.run([self.binary, *args], env=self.env, capture_output=True, text=True, timeout=120)
        assert done.returncode == code, \
            f"`lunoval {' '.join(args)}` exited {done.returncode}, not {code}: {done.stderr.strip()[-600:]}"
        return done.stdout


def attempt(check, *args) -> list[str]:
    # A check's problems: those it returns, or the failure or error that stopped it.
    try:
        return check(*args) or []
    except Exception as e:  # noqa: BLE001  (an error in one check should not hide the others' findings)
        return [str(e) if isinstance(e, AssertionError) else f"{type(e).__name__}: {e}"]


def parallel(function, items, processes: bool = False) -> list:
    # function over the items on two workers; processes for pure-Python number crunching.
    with (ProcessPoolExecutor if processes else ThreadPoolExecutor)(max_workers=2) as pool:
        return list(pool.map(function, items))


def finish(outcomes, summary: str = "") -> None:
    # Prints the failed (label, problems) outcomes and the tally, and exits accordingly.
    outcomes = list(outcomes)
    failed = [(label, problems) for label, problems in outcomes if problems]
    if summary:
        print(summary)
    for label, problems in failed:
        print(f"FAIL {label}")
        print("\n".join(f"  {p}" for p in problems))
    print(f"{len(outcomes) - len(failed)} passed, {len(failed)} failed")
    sys.exit(1 if failed else 0)
