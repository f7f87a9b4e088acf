# SPDX-License-Identifier: Apache-2.0
# The two commands are `make run` and `make test`; the rest is for those who change the source. Building is CMake's: see
# CMakePresets.json.
PRESET ?= release
configure = cmake --preset $(PRESET) -Wno-dev --log-level=WARNING

.PHONY: deb deb-test docs run test bench nightly sanitize coverage fuzz fault mutate valgrind lint format
run:
	scripts/install-packages
	$(configure)
	cmake --build --preset $(PRESET) --target lkbench
	build/$(PRESET)/bin/lkbench run --target local:build/rundb --results build/results/$$(date -u +%Y-%m-%dT%H-%M-%SZ)
test:
	scripts/install-packages test
	$(configure)
	cmake --build --preset $(PRESET)
	ctest --preset $(PRESET)
ifeq ($(PRESET),release)
	scripts/fuzz short
endif
# The tests that only gain by numbers, with 100 million draws of every bounded kind instead of a million. Minutes.
nightly: DRAWS ?= 100000000
nightly:
	scripts/install-packages test
	$(configure)
	cmake --build --preset $(PRESET)
	LK_DRAWS=$(DRAWS) ctest --preset $(PRESET) -L draws
# The small parts, then every comparison, or one: make bench ONLY=load; writes docs/performance.md. Plots are drawn by
# Debian's own Python, which has the package for it.
bench:
	scripts/install-packages bench
	$(configure) -DLK_BUILD_BENCH=ON
	cmake --build --preset $(PRESET) --target lkbench bench/all
ifndef ONLY
	mkdir -p build/bench
	build/$(PRESET)/bin/lkbench_micro --benchmark_repetitions=3 --benchmark_out=build/bench/micro.json
endif
	/usr/bin/python3 -B bench/compare --binaries build/$(PRESET)/bin $(if $(ONLY),--only $(ONLY)) $(if $(ROUNDS),--rounds $(ROUNDS))
sanitize:
	$(MAKE) test PRESET=asan
	$(MAKE) test PRESET=tsan
docs:  # makes the reference and the outputs of commands in docs/ anew
	scripts/install-packages test
	$(configure)
	cmake --build --preset $(PRESET) --target lkbench docs_reference
	scripts/docs build/$(PRESET)
coverage:  # what the tests run, by folder; the limits are in scripts/coverage
	scripts/install-packages test check
	cmake --preset coverage -Wno-dev --log-level=WARNING
	find build/coverage -name '*.gcda' -delete
	cmake --build --preset coverage
	ctest --preset coverage
	scripts/coverage build/coverage
fuzz:  # each target for FUZZ_SECONDS (600)
	scripts/install-packages test
	scripts/fuzz long
fault:  # faults caused for real; all, or one: make fault CASE=disk-full-load SEED=7; as root, or with ALLOW_SKIP=1
	scripts/install-packages check
	$(configure)
	cmake --build --preset $(PRESET) --target lkbench
	python3 -B tests/fault/run.py --lkbench build/$(PRESET)/bin/lkbench --work build/fault $(if $(CASE),--case $(CASE)) \
	  $(if $(SEED),--seed $(SEED)) $(if $(ALLOW_SKIP),--allow-skip)
mutate:  # all mutants of the plug-in, or some: make mutate SAMPLE=200
	scripts/install-packages check
	python3 -B scripts/mutation $(if $(SAMPLE),--sample $(SAMPLE))
valgrind:  # the tests of the plug-in and of the host's core under memcheck; minutes
	scripts/install-packages test check
	$(configure)
	cmake --build --preset $(PRESET) --target tests/plugin/all tests/core/all
	scripts/valgrind build/$(PRESET)
deb:  # Debian packages in build/release/packages, looked over by lintian; the authors have no public address
	scripts/install-packages package
	$(configure)
	cmake --build --preset $(PRESET) --target lkbench_pages
	rm -rf build/$(PRESET)/packages
	cd build/$(PRESET) && cpack
	lintian --fail-on error --suppress-tags bogus-mail-host,bogus-mail-host-in-debian-changelog \
	  build/$(PRESET)/packages/*.deb
deb-test: deb  # install and use them on a clean Debian 12; as root
	scripts/deb-test build/$(PRESET)/packages
lint:  # the format of the sources, cppcheck and clang-tidy; minutes
	scripts/install-packages check
	scripts/lint
format:  # needs the package clang-format, as lint does
	git ls-files '*.cpp' '*.h' | xargs clang-format -i
