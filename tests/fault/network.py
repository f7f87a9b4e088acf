# SPDX-License-Identifier: Apache-2.0
"""Three network namespaces in a row: a client, a router, a server. The router can be made to lose everything."""

import os
import subprocess

from arena import NotAllowed

_PARTS = "crs"


class Network:
    client_address, server_address = "10.231.1.2", "10.231.2.2"

    def __init__(self):
        self._name = f"lkfault{os.getpid()}"
        if os.geteuid() != 0:
            raise NotAllowed("network namespaces need root")
        try:
            self._set_up()
        except (OSError, subprocess.CalledProcessError) as problem:
            self.close()
            raise NotAllowed(f"no network namespaces here: {problem}") from None

    def close(self):
        for part in _PARTS:
            subprocess.run(["ip", "netns", "del", self._name + part], stderr=subprocess.DEVNULL, check=False)

    @property
    def client_prefix(self):
        return ["ip", "netns", "exec", self._name + "c"]

    @property
    def server_prefix(self):
        return ["ip", "netns", "exec", self._name + "s"]

    def lose_everything(self):
        """Packets of both directions vanish: nobody is told."""
        for address in (self.client_address, self.server_address):
            self._in("r", "route", "add", "blackhole", f"{address}/32")

    def find_again(self):
        for address in (self.client_address, self.server_address):
            self._in("r", "route", "del", "blackhole", f"{address}/32")

    def pull_cable(self):
        """The client's link loses its carrier."""
        self._in("r", "link", "set", "r1", "down")

    def plug_in(self):
        self._in("r", "link", "set", "r1", "up")

    def _set_up(self):
        for part in _PARTS:
            _ip("netns", "add", self._name + part)
            self._in(part, "link", "set", "lo", "up")
        self._join("c", "1", self.client_address)
        self._join("s", "2", self.server_address)
        forward = "echo 1 >/proc/sys/net/ipv4/ip_forward"
        subprocess.run(["ip", "netns", "exec", self._name + "r", "sh", "-c", forward], check=True)

    def _join(self, part, net, address):
        """A link from an end to the router, r1 or r2 there."""
        _ip("link", "add", "end", "netns", self._name + part, "type", "veth",
            "peer", "name", "r" + net, "netns", self._name + "r")
        self._in(part, "addr", "add", f"{address}/30", "dev", "end")
        self._in("r", "addr", "add", f"10.231.{net}.1/30", "dev", "r" + net)
        self._in(part, "link", "set", "end", "up")
        self._in("r", "link", "set", "r" + net, "up")
        self._in(part, "route", "add", "default", "via", f"10.231.{net}.1")

    def _in(self, part, *words):
        _ip("-n", self._name + part, *words)


def _ip(*words):
    subprocess.run(["ip", *words], check=True, stdout=subprocess.DEVNULL)
