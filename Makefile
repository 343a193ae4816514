# The two everyday commands: `make run` and `make test`.
.PHONY: setup build run test gui screenshots asan bench fuzz crashtest clean

# Seconds each fuzz target runs in `make fuzz`.
FUZZ_SECONDS ?= 600

setup:
	@./scripts/setup

build: setup
	@cmake --preset default >/dev/null
	@cmake --build --preset default

# The example needs only the headless host and the module, not the desktop host.
run: setup
	@cmake --preset default >/dev/null
	@cmake --build --preset default --target vorta-cli opterecenje
	@./scripts/run-demo build/default

test: build
	@ctest --preset default

gui: build
	@./build/default/bin/vorta

# The desktop host's pictures for the README, rendered without a display.
screenshots: build
	@QT_QPA_PLATFORM=offscreen ./build/default/bin/vorta --screenshots docs/images

asan: setup
	@cmake --preset asan >/dev/null
	@cmake --build --preset asan
	@ctest --preset asan

fuzz: setup
	@cmake --preset fuzz >/dev/null
	@cmake --build --preset fuzz --target fuzzers
	@./scripts/fuzz build/fuzz $(FUZZ_SECONDS)

crashtest: build
	@./tests/crash/save-and-kill.sh build/default/bin/crash_saver 1000

bench: build
	@for b in build/default/bin/bench_*; do [ -x "$$b" ] && "$$b"; done

clean:
	@rm -rf build
