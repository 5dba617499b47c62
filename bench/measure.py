"""Runs commands as processes and measures their time and peak memory; shared by the benchmarks in this folder."""

import os
import statistics
import subprocess
import time


def run_once(command, env=None):
    """Wall seconds and peak memory in MiB of one run; raises when the command fails."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, env=env)
    error = process.stderr.read()
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"{command[0]} ended with {process.returncode}: {error.decode(errors='replace')[-500:]}")
    return seconds, usage.ru_maxrss / 1024


def compare(contenders, runs):
    """Runs all contenders in turn, `runs` rounds after one that warms up, so that a machine whose speed drifts
    treats them alike. contenders: list of (name, command). Returns {name: (median seconds, peak MiB)}."""
    seconds = {name: [] for name, _ in contenders}
    memory = {name: 0.0 for name, _ in contenders}
    for round_number in range(runs + 1):
        for name, command in contenders:
            elapsed, peak = run_once(command)
            memory[name] = max(memory[name], peak)
            if round_number > 0:
                seconds[name].append(elapsed)
    return {name: (statistics.median(seconds[name]), memory[name]) for name, _ in contenders}


def print_table(title, results, reference):
    """`reference` is the name that the last column is relative to."""
    print(title)
    print(f"  {'':38}{'seconds':>9}{'peak MiB':>10}{'time / ' + reference:>24}")
    base = results[reference][0]
    for name, (seconds, memory) in results.items():
        print(f"  {name:38}{seconds:9.3f}{memory:10.0f}{seconds / base:24.2f}")
    print()
