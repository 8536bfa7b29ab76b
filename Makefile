# Faroven: `make run` builds and opens the demo editor, `make test` builds and
# runs the whole test suite. Both install the Debian packages they need first.

PACKAGES := cmake ninja-build g++ make ccache pkg-config qt6-base-dev qt6-svg-dev qt6-qpa-plugins \
            qt6-tools-dev qt6-tools-dev-tools \
            libgl-dev googletest libgtest-dev libgmock-dev libbenchmark-dev fonts-dejavu-core
FUZZ_PACKAGES := clang-14 libclang-rt-14-dev
# Independent programs the tests check our DXF and WMF files with, and the DXF
# parser the benchmark compares against.
TEST_PACKAGES := python3-ezdxf librecad librecad-data poppler-utils libwmf-bin
BENCH_PACKAGES := libdxflib-dev
FUZZ_SECONDS ?= 60

SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)
export CCACHE_BASEDIR := $(CURDIR)
export CCACHE_SLOPPINESS := pch_defines,time_macros,include_file_mtime,include_file_ctime

.PHONY: run test bench fuzz deps fuzz-deps clean

define install_missing
	@missing=$$(for p in $(1); do dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q 'install ok installed' || echo $$p; done); \
	if [ -n "$$missing" ]; then \
	  echo "Installing missing packages:" $$missing; \
	  $(SUDO) apt-get update && DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y $$missing; \
	fi
endef

deps:
	$(call install_missing,$(PACKAGES))

fuzz-deps: deps
	$(call install_missing,$(FUZZ_PACKAGES))

run: deps
	cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DFAROVEN_BUILD_TESTS=OFF
	cmake --build build/release --target faroven-editor
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then \
	  ./build/release/apps/editor/faroven-editor; \
	else \
	  QT_QPA_PLATFORM=offscreen ./build/release/apps/editor/faroven-editor --screenshot build/editor.png && \
	  echo "No display: saved a picture of the editor to build/editor.png"; \
	fi

test: deps
	$(call install_missing,$(TEST_PACKAGES))
	cmake -S . -B build/debug -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-g -O1" -DFAROVEN_SANITIZE=ON
	cmake --build build/debug
	cd build/debug && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j2

bench: deps
	$(call install_missing,$(BENCH_PACKAGES))
	cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DFAROVEN_BUILD_TESTS=OFF -DFAROVEN_BUILD_APPS=OFF -DFAROVEN_BUILD_BENCH=ON
	cmake --build build/bench
	@for b in build/bench/bench/*_bench; do echo "== $$b"; QT_QPA_PLATFORM=offscreen $$b || exit 1; done

fuzz: fuzz-deps
	cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-g -O1" \
	  -DCMAKE_CXX_COMPILER=clang++-14 \
	  -DFAROVEN_BUILD_TESTS=OFF -DFAROVEN_BUILD_APPS=OFF -DFAROVEN_BUILD_FUZZ=ON -DFAROVEN_SANITIZE=ON
	cmake --build build/fuzz
	@for f in build/fuzz/fuzz/*_fuzzer; do \
	  name=$$(basename $$f); corpus=build/fuzz/corpus/$$name; artifacts=build/fuzz/artifacts/$$name; \
	  mkdir -p $$corpus $$artifacts; \
	  echo "== $$name for $(FUZZ_SECONDS) s"; \
	  QT_QPA_PLATFORM=offscreen LSAN_OPTIONS=suppressions=$(CURDIR)/fuzz/lsan.supp $$f -max_total_time=$(FUZZ_SECONDS) -rss_limit_mb=2048 -timeout=10 \
	    -artifact_prefix=$$artifacts/ $$corpus fuzz/corpus/$$name || exit 1; \
	done

clean:
	rm -rf build
