#!/usr/bin/env python3
"""How long the program takes from being started to its first painted window, with settings that are new each time.

    bench/startup.py [--runs 15] [--bench build/release/bin/bench_startup]

Runs on an invisible X screen (xvfb) and, where there is a dbus-daemon, with a session bus of its own. The aim is a median below 400 ms.
"""
import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

LIMIT = 400.0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--runs", type=int, default=15)
    parser.add_argument("--bench", default="build/release/bin/bench_startup")
    options = parser.parse_args()
    if not os.access(options.bench, os.X_OK):
        sys.exit(f"{options.bench} is not there; configure with -DQUILLFERN_BENCH=ON and build it")

    display = f":{90 + os.getpid() % 400}"
    screen = subprocess.Popen(["Xvfb", display, "-screen", "0", "1400x900x24"], stderr=subprocess.DEVNULL)
    bus = None
    address = "unix:path=/nonexistent"
    if shutil.which("dbus-daemon"):
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"], text=True,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        address = bus.stdout.readline().strip()
    try:
        for _ in range(100):
            if os.path.exists(f"/tmp/.X11-unix/X{display[1:]}"):
                break
            time.sleep(0.05)
        times = []
        for _ in range(options.runs + 1):
            with tempfile.TemporaryDirectory() as home:
                os.chmod(home, 0o700)
                environment = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb", HOME=home,
                                   XDG_RUNTIME_DIR=home, XDG_CONFIG_HOME=home + "/config",
                                   XDG_DATA_HOME=home + "/data", XDG_CACHE_HOME=home + "/cache",
                                   DBUS_SESSION_BUS_ADDRESS=address)
                environment["BENCH_SINCE"] = str(time.monotonic() * 1000)
                result = subprocess.run([options.bench], env=environment, capture_output=True, text=True,
                                        timeout=60, check=True)
                times.append(float(result.stdout))
    finally:
        for process in filter(None, (screen, bus)):
            process.terminate()
            process.wait()
    times = times[1:]  # without the first run, which reads the program from the disk
    median = statistics.median(times)
    print(f"first painted window after {median:.0f} ms (median of {len(times)}; "
          f"{min(times):.0f} to {max(times):.0f}); the limit is {LIMIT:.0f} ms")
    return 0 if median < LIMIT else 1


if __name__ == "__main__":
    sys.exit(main())
