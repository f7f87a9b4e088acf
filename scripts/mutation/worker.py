# SPDX-License-Identifier: Apache-2.0
"""A copy of the source tree with a build of its own, in which one mutant after the other is tried."""
import filecmp
import os
import pathlib
import shutil
import signal
import subprocess
import time

_QUICK_SECONDS = 1.0
_ENVIRONMENT = dict(os.environ, LK_DRAWS="10000")  # of the tests that only gain by numbers


class BuildError(Exception):
    """The unchanged source does not build, or its tests fail."""


class Worker:
    """Not for several threads: each thread has a worker of its own."""

    def __init__(self, source, folder, library, tests):
        self._source = folder / "source"
        self._build = folder / "build"
        self._library = library
        self._tests = list(tests)
        self._seconds = {}  # of each test, without a mutation
        self._log = folder / "build.log"
        _copy_tracked(source, self._source)

    def prepare(self):
        """Builds the unchanged source, sees its tests pass and puts the quick ones first."""
        self._run_or_raise(
            ["cmake", "-S", self._source, "-B", self._build, "-G", "Ninja", "-Wno-dev", "-DCMAKE_BUILD_TYPE=Debug",
             "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DLK_WERROR=OFF", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
             "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"])
        self._run_or_raise(self._ninja(sorted(self._tests)))
        for test in self._tests:
            began = time.monotonic()
            if self._test_fails(test):
                raise BuildError(f"{test} fails without a mutation; run it: {self._build}/bin/{test}")
            self._seconds[test] = time.monotonic() - began
        self._tests.sort(key=self._seconds.get)

    def try_mutant(self, mutant):
        """'invalid' when the library does not compile, else the name of the test that fails to compile or to pass, or None
        when the mutant survives."""
        file = self._source / mutant.file
        original = file.read_text()
        file.write_text(mutant.apply(original))
        try:
            return self._first_failing_test() if _run(self._ninja([]), self._log) == 0 else "invalid"
        finally:
            file.write_text(original)

    def _first_failing_test(self):
        """Builds a test when its turn comes: a change in a header is then mostly killed before all are built."""
        for test in self._tests:
            if _run(self._ninja([test]), self._log) != 0 or self._test_fails(test):
                if self._seconds[test] < _QUICK_SECONDS:  # first in line for the next mutant, its neighbour
                    self._tests.remove(test)
                    self._tests.insert(0, test)
                return test
        return None

    def _ninja(self, tests):
        return ["ninja", "-C", self._build, "-j1", self._library, *tests]

    def _test_fails(self, test):
        program = self._build / "bin" / test
        limit = 10 * self._seconds.get(test, 60) + 10  # a mutant that makes a test hang is found out
        return _run([program, "--gtest_fail_fast", "--gtest_brief=1"], None, limit) != 0

    def _run_or_raise(self, command):
        if _run(command, self._log) != 0:
            raise BuildError(f"the unchanged source does not build; see {self._log}")


def _copy_tracked(source, target):
    """Makes the target hold the files of the source. Equal ones keep their times, so that no build starts anew."""
    listed = subprocess.run(["git", "-C", source, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            check=True, capture_output=True).stdout
    wanted = {target / name: source / name for name in filter(None, os.fsdecode(listed).split("\0"))
              if (source / name).is_file()}
    for copy, file in wanted.items():
        if copy.exists() and filecmp.cmp(file, copy, shallow=False):
            continue
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(file, copy)
        shutil.copymode(file, copy)
    for left in target.rglob("*"):
        if left.is_file() and left not in wanted:
            left.unlink()


def _run(command, log, seconds=None):
    """The exit code; anything but 0 also for a program that was ended because it took too long."""
    output = open(log, "wb") if log else subprocess.DEVNULL
    with subprocess.Popen([str(part) for part in command], stdout=output, stderr=subprocess.STDOUT,
                          stdin=subprocess.DEVNULL, start_new_session=True, env=_ENVIRONMENT) as process:
        try:
            code = process.wait(seconds)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            code = process.wait()
        finally:
            if log:
                output.close()
    return code


def test_programs(source, folder):
    """The names of the test programs that a folder's CMakeLists.txt files declare."""
    names = []
    for file in sorted(pathlib.Path(source, folder).rglob("CMakeLists.txt")):
        for line in file.read_text().splitlines():
            if line.startswith("lk_add_test("):
                names.append(line[len("lk_add_test("):].split()[0].rstrip(")"))
    return names
