# The two commands a user needs: `make run` and `make test`.
# Each installs what is missing, configures and builds first.

.PHONY: all deps build run test asan-test bench lint fuzz clean

SECONDS ?= 60

all: build

deps:
	@scripts/install-deps.sh

build: deps
	cmake --preset dev
	cmake --build --preset dev

run: build
	scripts/run-browser.sh build/dev

test: build
	ctest --preset dev
	@scripts/corpus-note.sh build/dev

asan-test: deps
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan

bench: deps
	cmake --preset release
	cmake --build --preset release
	scripts/run-benchmarks.sh build/release/bench

lint: deps
	@scripts/install-deps.sh clang-tidy
	cmake --preset dev
	scripts/lint.sh build/dev

# Every fuzz target for SECONDS seconds each (clang, libFuzzer, sanitizers).
fuzz:
	@scripts/install-deps.sh clang libclang-rt-14-dev
	cmake --preset fuzz
	cmake --build --preset fuzz
	scripts/run-fuzzers.sh build/fuzz/fuzz $(SECONDS)

clean:
	rm -rf build
