# The two set-up commands of the README: `make demo` and `make test`.
# Both install what is missing first, then configure, build and run.
BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test demo bench install clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DMXBOOK_WERROR=ON >/dev/null

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

test: build
	@ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

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
