# The two set-up commands of the README: `make demo` and `make test`.
# Both install what is missing first, then configure, build and run.
BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test test-asan demo bench fuzz install clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DMXBOOK_WERROR=ON >/dev/null

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	@ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

# The whole suite under AddressSanitizer and UndefinedBehaviorSanitizer, in a build of its own.
ASAN_BUILD_DIR ?= build-asan
# Leak checking stops the process's threads to scan them, which fails on the embedded engine's threads
# on some machines (the checker itself crashes); DETECT_LEAKS=1 turns it on where it works.
DETECT_LEAKS ?= 0
SANITIZER_ENV = ASAN_OPTIONS=detect_leaks=$(DETECT_LEAKS):strict_string_checks=1 \
	LSAN_OPTIONS=suppressions=$(CURDIR)/sanitizers/lsan.supp:print_suppressions=0 \
	UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
test-asan: deps
	@cmake -S . -B $(ASAN_BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMXBOOK_WERROR=ON \
		-DMXBOOK_SANITIZE=ON -DMXBOOK_BUILD_BENCH=OFF >/dev/null
	@cmake --build $(ASAN_BUILD_DIR) -j $(JOBS)
	@$(SANITIZER_ENV) ctest --test-dir $(ASAN_BUILD_DIR) --output-on-failure -j $(JOBS)

# Each fuzz target for FUZZ_RUNS inputs, from a copy of its seed corpus; any crash or sanitizer
# report fails. Built with clang in a build of its own.
FUZZ_BUILD_DIR ?= build-fuzz
FUZZ_RUNS ?= 1000000
FUZZ_TARGETS = operating_time short_date ini_file connection_string file_version
fuzz:
	@scripts/install-deps.sh scripts/debian-packages-fuzz.txt
	@CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMXBOOK_FUZZ=ON \
		-DMXBOOK_BUILD_TESTS=OFF -DMXBOOK_BUILD_BENCH=OFF >/dev/null
	@cmake --build $(FUZZ_BUILD_DIR) -j $(JOBS)
	@for target in $(FUZZ_TARGETS); do \
		work=$$(mktemp -d) && cp -r fuzz/corpus/$$target/. $$work/ && \
		echo "fuzzing $$target ($(FUZZ_RUNS) inputs)" && \
		ASAN_OPTIONS=detect_leaks=0 $(FUZZ_BUILD_DIR)/fuzz/fuzz_$$target -runs=$(FUZZ_RUNS) -max_len=4096 \
			-print_final_stats=1 $$work 2>$$work.log; status=$$?; \
		grep -E "stat::number_of_executed_units|Done|ERROR|SUMMARY" $$work.log; rm -rf $$work; \
		if [ $$status -ne 0 ]; then echo "fuzz_$$target failed: see $$work.log"; exit 1; fi; rm -f $$work.log; \
	done

demo: build
	@$(BUILD_DIR)/tools/mxbook/mxbook demo

# Not part of `make test`: the first run generates the fleets (a minute), later runs reuse them.
bench: build
	@scripts/install-deps.sh scripts/debian-packages-bench.txt
	@$(BUILD_DIR)/bench/mxbook_bench $(BENCH_ARGS)

install: build
	@cmake --install $(BUILD_DIR)

clean:
	@rm -rf $(BUILD_DIR)
