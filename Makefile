# SPDX-License-Identifier: MIT
# `make` lists what there is. Every target sets up what it needs and is quick when nothing has changed.

.DEFAULT_GOAL := help
.PHONY: help setup build demo docs test test-doors test-c test-python nightly-test addon test-node package test-package bench bench-peers serve-test bench-serve lint format update-goldens asan tsan fuzz clean

JOBS := $(shell nproc)
FUZZ_SECONDS ?= 60
FUZZ_PRESET ?= asan

help: ## this list
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "make %-15s %s\n", $$1, $$2 }' Makefile

setup: ## install the Debian packages of everything below
	@scripts/setup.sh program tests checks

# What a target needs is set up when it is first asked for.
.PHONY: setup-program setup-tests setup-checks setup-doors setup-nightly
setup-program:
	@scripts/setup.sh program
setup-tests:
	@scripts/setup.sh program tests
setup-checks:
	@scripts/setup.sh program tests checks

setup-doors:
	@scripts/setup.sh program tests doors
setup-nightly:
	@scripts/setup.sh program tests doors nightly

# A folder is configured once; after that the build itself notices what has to be configured again. The program is
# configured alone as long as nobody has asked for its tests.
build/release/build.ninja: | setup-program
	cmake --preset release -D TAVRIN_TESTS=OFF -D TAVRIN_BENCH=OFF
build/release/with-tests: | setup-tests
	cmake --preset release
	@touch $@
build/%/build.ninja: | setup-checks
	cmake --preset $*

build: build/release/build.ninja ## the program, build/release/tavrin
	cmake --build --preset release --target tavrin_program

demo: build ## render every example into out/, with a page that shows them
	@scripts/demo.py build/release/tavrin

test: build/release/with-tests ## build everything and run all tests
	cmake --build --preset release
	ctest --preset release --parallel $(JOBS)
	@# The other languages' tests run here once `make test-doors` has set them up.
	@if [ -f build/python/made-of ] && [ -d bindings/node/node_modules ]; then $(MAKE) --no-print-directory test-doors; fi

test-doors: test-c test-python test-node ## set up and test the doors for other languages

# `make test` tests the library itself; this is what it promised so far.
test-c: build/release/with-tests | setup-doors
	cmake --build --preset release --target tavrin_c
	scripts/abi.sh check build/release/bindings/c/libtavrin_c.so.0

test-python: build | setup-doors
	scripts/python_door.sh

nightly-test: build | setup-nightly ## draw rows on Ray and on Spark, here, and compare
	scripts/nightly_test.sh

bindings/node/node_modules/.package-lock.json: bindings/node/package-lock.json | setup-program
	cd bindings/node && npm ci --ignore-scripts

# The addon for Node, of what is built already.
addon: build bindings/node/node_modules/.package-lock.json
	cd bindings/node && node install.mjs

test-node: addon
	cd bindings/node && npm test

package: addon | setup-doors ## what is installed without compiling, in out/packages
	scripts/python_setup.sh
	cmake --build --preset release --target tavrin_program tavrin_c
	rm -rf out/packages
	cpack --config build/release/CPackConfig.cmake -B out/packages
	rm -rf out/packages/_CPack_Packages
	PATH="$$PWD/build/python/bin:$$PATH" scripts/package_doors.py out/packages

test-package: package | setup-doors ## install the packages in an empty Debian, and use them
	scripts/package_test.py out/packages build/release/tavrin build/debian

bench: build/release/with-tests ## run the benchmarks
	cmake --build --preset release --target tavrin_bench
	build/release/bench/tavrin_bench

bench/peers/node_modules/.package-lock.json: bench/peers/package-lock.json | setup-tests
	cd bench/peers && npm ci

bench-peers: build/release/with-tests bench/peers/node_modules/.package-lock.json addon ## one scene against two npm packages
	cmake --build --preset release --target tavrin_program tavrin_peer_bench
	bench/peers/compare.py build/release out/peers

SERVE_SOAK ?= 20
SERVE_FUZZ ?= 30
serve-test: build | setup-tests ## ask a running server, also what it must refuse; SERVE_SOAK and SERVE_FUZZ are seconds
	scripts/serve_test.sh --soak $(SERVE_SOAK) --fuzz $(SERVE_FUZZ)

bench-serve: build bench/peers/node_modules/.package-lock.json | setup-tests ## one scene by HTTP, against a Node server
	bench/serve/load.py build/release/tavrin

lint: build/lint/build.ninja ## formatting, clang-tidy, who includes whom
	scripts/format.sh --dry-run --Werror
	scripts/check_includes.py
	scripts/check_licence_lines.sh
	scripts/tidy.py build/lint

format: setup-checks ## format every source in place
	scripts/format.sh -i

docs: build ## rewrite what is generated in docs: the reference, the outputs of the guide
	scripts/make_reference.py build/release/tavrin
	scripts/run_guide.py build/release/tavrin

update-goldens: build/release/with-tests ## rewrite the expected pictures and texts; review the difference
	cmake --build --preset release
	TAVRIN_UPDATE_GOLDENS=1 ctest --preset release --parallel $(JOBS) --tests-regex '^(Golden|Explanation|Check)\.'
	scripts/demo.py build/release/tavrin
	scripts/contact_sheet.py out docs

asan: build/asan/build.ninja ## all tests under the address and undefined-behaviour sanitizers
	cmake --build --preset asan
	ctest --preset asan --parallel $(JOBS)

tsan: build/tsan/build.ninja ## the tests of threads under the thread sanitizer
	cmake --build --preset tsan --target thread_tests
	ctest --preset tsan --parallel $(JOBS)

fuzz: build/$(FUZZ_PRESET)/build.ninja ## fuzz for FUZZ_SECONDS (60), as FUZZ_PRESET (asan or, quicker, fuzz) is built
	cmake --build --preset $(FUZZ_PRESET)
	scripts/fuzz.sh build/$(FUZZ_PRESET) $(FUZZ_SECONDS)

clean: ## remove everything that was made
	rm -rf build out bindings/node/build bindings/node/node_modules bindings/node/lib/options.d.ts
