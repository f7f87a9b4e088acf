# SPDX-License-Identifier: Apache-2.0
"""The faults, in the order in which they run. A case is a function of an Arena; it returns what happened."""

from cases import disk_full, lkbench_killed, network, server_killed, server_refuses

CASES = {
    **server_killed.CASES,
    **network.CASES,
    **disk_full.CASES,
    **server_refuses.CASES,
    **lkbench_killed.CASES,
}
