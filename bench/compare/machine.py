# SPDX-License-Identifier: Apache-2.0
"""What the figures were measured on."""
import datetime
import os
import pathlib
import platform
import subprocess


def _first(text, start):
    return next((line.partition(":")[2].strip() for line in text.splitlines() if line.startswith(start)), "unknown")


def _version(*command):
    try:
        output = subprocess.run(command, capture_output=True, text=True, check=False).stdout
    except FileNotFoundError:
        return "not installed"
    return output.splitlines()[0].strip() if output else "unknown"


def describe():
    memory_kib = int(_first(pathlib.Path("/proc/meminfo").read_text(), "MemTotal").split()[0])
    return {
        "date": datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M UTC"),
        "processor": _first(pathlib.Path("/proc/cpuinfo").read_text(), "model name"),
        "cores": len(os.sched_getaffinity(0)),
        "memory_gib": round(memory_kib / 2**20, 1),
        "kernel": platform.release(),
        "system": platform.freedesktop_os_release().get("PRETTY_NAME", "unknown"),
        "compiler": _version("c++", "--version"),
        "server": _version("mariadbd", "--version"),
        "sysbench": _version("sysbench", "--version"),
        "load_average": [round(value, 2) for value in os.getloadavg()],
    }
