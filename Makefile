# The two everyday commands:
#   make run    build, then open QX_CK on the demo shop database (created on first run)
#   make test   build, then run every test (what CI runs)
BUILD   ?= build
DB      ?= demo/shop.db
SAN     ?= build-sanitized
JOBS    ?= $(shell nproc)
GEN     := $(shell command -v ninja >/dev/null 2>&1 && echo "-G Ninja")

.PHONY: setup configure build run test sanitized-replay bench clean

setup:
	@bash scripts/setup.sh

$(BUILD)/CMakeCache.txt: | setup
	cmake -S . -B $(BUILD) $(GEN) -DCMAKE_BUILD_TYPE=Release

configure: setup $(BUILD)/CMakeCache.txt

build: configure
	cmake --build $(BUILD) -j $(JOBS)

$(DB):
	@mkdir -p $(dir $(DB))
	$(BUILD)/bin/qxck-demo --db $(DB)

run: build
	@$(MAKE) --no-print-directory $(DB)
	@bash scripts/run-host.sh $(BUILD)/bin/qxck --db $(DB)

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)
	@$(MAKE) --no-print-directory sanitized-replay

# The fuzzing seeds (statement corpus, conformance statements) and every crash case, replayed
# through the fuzzing entry in a build with the address and undefined-behaviour sanitizers.
sanitized-replay: setup
	cmake -S . -B $(SAN) $(GEN) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQX_SANITIZE=ON >/dev/null
	cmake --build $(SAN) -j $(JOBS) --target qx_db_fuzz_replay
	ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 $(SAN)/tests/qx_db_fuzz_replay

bench: build
	bash bench/run.sh $(BUILD)

clean:
	rm -rf $(BUILD) $(SAN)
