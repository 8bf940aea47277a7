# The commands a user needs: `make test` (and `make run` once the browser lands).
# Each installs what is missing, configures and builds first.

.PHONY: all deps build test asan-test bench clean

all: build

deps:
	@scripts/install-deps.sh

build: deps
	cmake --preset dev
	cmake --build --preset dev

test: build
	ctest --preset dev

asan-test: deps
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan

bench: deps
	cmake --preset release
	cmake --build --preset release
	scripts/run-benchmarks.sh build/release/bench

clean:
	rm -rf build
