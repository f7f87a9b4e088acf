# SPDX-License-Identifier: Apache-2.0
"""A file system of a chosen size in memory."""

import os
import subprocess

from arena import NotAllowed


class SmallDisk:
    def __init__(self, path, megabytes):
        self.path = path
        path.mkdir(parents=True)
        if os.geteuid() != 0:
            raise NotAllowed("mounting a small file system needs root")
        self._mount(f"size={megabytes}m,mode=0700")

    def free(self):
        """Megabytes that are free."""
        state = os.statvfs(self.path)
        return state.f_bavail * state.f_frsize >> 20

    def resize(self, megabytes):
        self._mount(f"remount,size={megabytes}m")

    def close(self):
        subprocess.run(["umount", "-l", str(self.path)], stderr=subprocess.DEVNULL, check=False)

    def _mount(self, options):
        done = subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", str(self.path)],
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise NotAllowed(f"no tmpfs can be mounted here: {done.stderr.strip()}")
