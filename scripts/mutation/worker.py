# SPDX-License-Identifier: Apache-2.0
"""A copy of the source tree with a build of its own, in which one mutant after the other is tried."""
import os
import pathlib
import shutil
import signal
import subprocess

_TEST_SECONDS = 60  # a mutant that makes a test hang is found out


class BuildError(Exception):
    """The unchanged source does not build, or its tests fail."""


class Worker:
    """Not for several threads: each thread has a worker of its own."""

    def __init__(self, source, folder, library, tests):
        self._source = folder / "source"
        self._build = folder / "build"
        self._library = library
        self._tests = list(tests)
        self._log = folder / "build.log"
        _copy_tracked(source, self._source)

    def prepare(self):
        """Builds the unchanged source and sees its tests pass."""
        self._run_or_raise(
            ["cmake", "-S", self._source, "-B", self._build, "-G", "Ninja", "-Wno-dev", "-DCMAKE_BUILD_TYPE=Debug",
             "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DLK_WERROR=OFF", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
             "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"])
        self._run_or_raise(self._ninja())
        for test in self._tests:
            if self._test_fails(test):
                raise BuildError(f"{test} fails without a mutation; run it: {self._build}/bin/{test}")

    def try_mutant(self, mutant):
        """'invalid' when it does not compile, else the name of the test that fails, or None when it survives."""
        file = self._source / mutant.file
        original = file.read_text()
        file.write_text(mutant.apply(original))
        try:
            if _run(self._ninja(), self._log) != 0:
                return "invalid"
            return self._first_failing_test()
        finally:
            file.write_text(original)

    def _first_failing_test(self):
        for test in self._tests:
            if self._test_fails(test):
                self._tests.remove(test)  # first in line for the next mutant, which is its neighbour
                self._tests.insert(0, test)
                return test
        return None

    def _ninja(self):
        return ["ninja", "-C", self._build, "-j1", self._library, *sorted(self._tests)]

    def _test_fails(self, test):
        program = self._build / "bin" / test
        return _run([program, "--gtest_fail_fast", "--gtest_brief=1"], None, _TEST_SECONDS) != 0

    def _run_or_raise(self, command):
        if _run(command, self._log) != 0:
            raise BuildError(f"the unchanged source does not build; see {self._log}")


def _copy_tracked(source, target):
    shutil.rmtree(target, ignore_errors=True)
    listed = subprocess.run(["git", "-C", source, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            check=True, capture_output=True).stdout
    for name in filter(None, os.fsdecode(listed).split("\0")):
        file = source / name
        if file.is_file():
            (target / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(file, target / name)


def _run(command, log, seconds=None):
    """The exit code; anything but 0 also for a program that was ended because it took too long."""
    output = open(log, "wb") if log else subprocess.DEVNULL
    with subprocess.Popen([str(part) for part in command], stdout=output, stderr=subprocess.STDOUT,
                          stdin=subprocess.DEVNULL, start_new_session=True) as process:
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
