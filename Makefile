# The two everyday commands: `make run` and `make test`.
.PHONY: setup build run test asan bench clean

setup:
	@./scripts/setup

build: setup
	@cmake --preset default >/dev/null
	@cmake --build --preset default

run: build
	@./scripts/run-demo build/default

test: build
	@ctest --preset default

asan: setup
	@cmake --preset asan >/dev/null
	@cmake --build --preset asan
	@ctest --preset asan

bench: build
	@for b in build/default/bin/bench_*; do [ -x "$$b" ] && "$$b"; done

clean:
	@rm -rf build
