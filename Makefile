# The two commands of a fresh Debian 12 machine:
#   make run    install what is needed, build, and run Capstan
#   make test   install what is needed, build, and run every test
.PHONY: deps build run test package bench soak format clean

deps:
	scripts/install-deps

build: deps
	cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build build

run: build
	./build/src/app/capstan

test: deps
	scripts/run-tests

# The Debian package, build/capstan_<version>_<arch>.deb (scripts/check-deb tries it out).
package: build
	cmake --build build --target package

# The screen and device-watch benchmarks run on a desktop of their own: one 1920x1080
# monitor, its own sound server.
bench: build
	./build/bench/encoder/bench_encoder
	eval "$$(DESK_SPLIT=0 DESK_STATE=/tmp/capstan-bench scripts/test-desktop start)" && \
	  ./build/bench/record_screen/bench_record_screen && \
	  ./build/bench/ui_record/bench_ui_record && \
	  ./build/bench/device_watch/bench_device_watch; \
	  DESK_STATE=/tmp/capstan-bench scripts/test-desktop stop

# Half an hour of screen and sound (SOAK_MINUTES to change it) on a desktop of its own.
soak: build
	eval "$$(DESK_SPLIT=0 DESK_STATE=/tmp/capstan-soak scripts/test-desktop start)" && \
	  ./build/bench/soak/bench_soak; \
	  DESK_STATE=/tmp/capstan-soak scripts/test-desktop stop

format:
	git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format -i

clean:
	rm -rf build build-asan build-tsan build-logs
