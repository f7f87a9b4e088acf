# SPDX-License-Identifier: Apache-2.0
"""A session with a MariaDB server, over its text protocol: enough to look into what lkbench left.

One Session is one connection; not for several threads. Values come back as text, NULL as None.
"""

import hashlib
import socket
import struct

_CAPABILITIES = 0x1 | 0x8 | 0x200 | 0x2000 | 0x8000 | 0x80000  # long password, schema, 4.1, transactions, plug-in
_UTF8MB4 = 45
_QUERY = 3
_SILENCE = 30  # seconds that an answer may take


class SqlError(Exception):
    """The server's answer to a statement that failed."""

    def __init__(self, number, text):
        super().__init__(f"({number}) {text}")
        self.number = number


class Session:
    def __init__(self, socket_path, user="root", password="", schema="lkbench"):
        self._link = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._link.settimeout(_SILENCE)
        self._sequence = 0
        try:
            self._link.connect(str(socket_path))
            self._log_in(user, password, schema)
        except BaseException:
            self._link.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self._link.close()

    def rows(self, sql):
        """All rows of a query, or [] of another statement."""
        self._sequence = 0
        self._send(bytes([_QUERY]) + sql.encode())
        first = self._answer()
        if first[0] == 0:
            return []
        columns = first[0]  # below 251 in all that is asked here
        for _ in range(columns):
            self._receive()
        self._receive()  # end of the columns
        rows = []
        while True:
            packet = self._answer()
            if packet[0] == 0xFE and len(packet) < 9:
                return rows
            rows.append(_values(packet, columns))

    def value(self, sql):
        return self.rows(sql)[0][0]

    def number(self, sql):
        return int(self.value(sql) or 0)

    def _log_in(self, user, password, schema):
        greeting = self._answer()
        at = greeting.index(b"\0", 1) + 1 + 4
        salt = greeting[at : at + 8] + greeting[at + 27 : at + 39]
        proof = _native_proof(password, salt)
        self._send(
            struct.pack("<IIB23x", _CAPABILITIES, 1 << 24, _UTF8MB4)
            + user.encode() + b"\0" + bytes([len(proof)]) + proof + schema.encode() + b"\0mysql_native_password\0"
        )
        answer = self._answer()
        if answer[0] != 0xFE:
            return
        plugin, _, salt = answer[1:].partition(b"\0")
        self._send(_native_proof(password, salt.rstrip(b"\0")) if plugin == b"mysql_native_password" else b"")
        self._answer()

    def _answer(self):
        packet = self._receive()
        if packet[0] == 0xFF:
            (number,) = struct.unpack_from("<H", packet, 1)
            text = packet[3:].decode(errors="replace")
            raise SqlError(number, text[6:] if text.startswith("#") else text)
        return packet

    def _send(self, payload):
        self._link.sendall(struct.pack("<I", len(payload))[:3] + bytes([self._sequence]) + payload)
        self._sequence += 1

    def _receive(self):
        header = self._exactly(4)
        self._sequence = header[3] + 1
        return self._exactly(int.from_bytes(header[:3], "little"))

    def _exactly(self, count):
        data = b""
        while len(data) < count:
            more = self._link.recv(count - len(data))
            if not more:
                raise ConnectionError("the server closed the connection")
            data += more
        return data


def _native_proof(password, salt):
    if not password:
        return b""
    once = hashlib.sha1(password.encode()).digest()
    mask = hashlib.sha1(salt + hashlib.sha1(once).digest()).digest()
    return bytes(a ^ b for a, b in zip(once, mask))


def _values(packet, columns):
    values, at = [], 0
    for _ in range(columns):
        if packet[at] == 0xFB:
            values.append(None)
            at += 1
            continue
        size, at = _length(packet, at)
        values.append(packet[at : at + size].decode(errors="replace"))
        at += size
    return values


def _length(packet, at):
    first = packet[at]
    if first < 0xFB:
        return first, at + 1
    width = {0xFC: 2, 0xFD: 3, 0xFE: 8}[first]
    return int.from_bytes(packet[at + 1 : at + 1 + width], "little"), at + 1 + width
