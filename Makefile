# Morvanta: `make demo` and `make test` do all the set-up on a fresh Debian
# machine (as root): missing packages, build, then the demo or every test.

BUILD ?= build
MAKEFLAGS += --no-print-directory
JOBS ?= $(shell nproc)
WERROR ?= ON
CMAKE_FLAGS ?=

.PHONY: all deps build demo test asan bench examples icons package fuzz screenshot windows package-windows test-windows clean

all: build

deps:
	@./scripts/install-deps

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMORVANTA_WERROR=$(WERROR) $(CMAKE_FLAGS) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	@mkdir -p out
	@echo "Converting the example sessions of examples/ into out/:"
	@./$(BUILD)/morvanta convert --out out --overwrite=all examples

test: build
	@cd $(BUILD) && ctest --output-on-failure --no-tests=error -j $(JOBS)

asan: deps
	@cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DMORVANTA_SANITIZE=ON -DMORVANTA_BUILD_GUI=OFF \
	  -DMORVANTA_WERROR=$(WERROR) >/dev/null
	@cmake --build build-asan -j $(JOBS)
	@cd build-asan && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --output-on-failure --no-tests=error -j $(JOBS)

bench: deps
	@cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DMORVANTA_BUILD_BENCH=ON -DMORVANTA_BUILD_GUI=OFF >/dev/null
	@cmake --build build-bench -j $(JOBS) --target morvanta_bench
	@./build-bench/bench/morvanta_bench

# Rewrites examples/ and the fuzz seeds from the test session builder.
examples: build
	@./$(BUILD)/tests/make-examples examples fuzz/corpus
	@echo "examples/ and fuzz/corpus/ rewritten"

# Rewrites the icon images of data/icons from the window's own drawing
# (src/shell/AppIcon.cpp); a test checks that the committed images match it.
icons: build
	@./$(BUILD)/tests/shell/morvanta-icons data/icons/hicolor
	@echo "data/icons/ rewritten"

# A Debian package of the build, in $(BUILD)/: what `cmake --install` puts
# under /usr, with the Depends that dpkg-shlibdeps finds for its programs.
package: build
	@rm -f $(BUILD)/morvanta_*.deb
	@cmake --build $(BUILD) --target package
	@dpkg-deb -I $(BUILD)/morvanta_*.deb

# A picture of the window over a scanned folder of built sessions, taken
# under Xvfb (the settings of the picture live in a temporary folder).
screenshot: build
	@mkdir -p out
	@xvfb-run -a -s "-screen 0 1280x800x24" ./$(BUILD)/tests/shell/morvanta-screenshot out/screenshot.png

# Coverage-guided fuzzing with libFuzzer (clang): the whole core library is
# instrumented in build-fuzz, and every target runs FUZZ_SECONDS from a copy
# of fuzz/corpus (fuzz/run-fuzzers). Fails on any crash, leak, timeout or OOM.
FUZZ_SECONDS ?= 60
FUZZ_TARGETS ?= fuzz_convert fuzz_probe fuzz_language fuzz_expression fuzz_catalogue fuzz_markup
fuzz: deps
	@CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMORVANTA_LIBFUZZER=ON \
	  -DMORVANTA_BUILD_GUI=OFF -DMORVANTA_BUILD_TESTS=OFF -DMORVANTA_WERROR=OFF >/dev/null
	@cmake --build build-fuzz -j $(JOBS) --target $(FUZZ_TARGETS)
	@./fuzz/run-fuzzers build-fuzz $(FUZZ_SECONDS) $(FUZZ_TARGETS)

# morvanta.exe for 64-bit Windows, cross-built with MinGW-w64 into
# build-windows/ with the catalogues beside it: one program that needs no
# DLL beyond Windows' own. The window is not built for Windows here.
windows:
	@./scripts/install-deps windows
	@cmake -S . -B build-windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake \
	  -DCMAKE_BUILD_TYPE=Release -DMORVANTA_WERROR=$(WERROR) -DMORVANTA_BUILD_GUI=OFF -DMORVANTA_BUILD_TESTS=OFF >/dev/null
	@cmake --build build-windows -j $(JOBS)

# The zip a Windows user downloads: build-windows/morvanta-<version>-windows-x64.zip
# with morvanta.exe, its catalogues and README.txt in one folder.
package-windows: windows
	@cmake --build build-windows --target package-zip >/dev/null
	@ls build-windows/morvanta-*-windows-x64.zip

# morvanta.exe under wine against the Linux build, over the examples, the
# fuzz seeds and sessions with names in many scripts: the same documents,
# lines and exit codes, and the same recoding of every character of the
# languages' charsets; and the unit tests, cross-built, under wine
# (scripts/test-windows).
test-windows: build package-windows
	@cmake --build $(BUILD) --target recoding-table >/dev/null
	@cmake --build build-windows -j $(JOBS) --target recoding-table morvanta_tests >/dev/null
	@BUILD=$(BUILD) ./scripts/test-windows

clean:
	rm -rf $(BUILD) build-asan build-bench build-fuzz build-windows out
