# Every target first does its own set-up, which only checks when nothing is missing.
SHELL := bash
# Bash reads its start-up file when its input is a socket.
.SHELLFLAGS := --norc -euo pipefail -c
.DEFAULT_GOAL := help

# Taken literally: a dollar sign in a path is a dollar sign.
PREFIX ?= /usr/local
override PREFIX := $(value PREFIX)
override DESTDIR := $(value DESTDIR)
export PREFIX DESTDIR

# The targets that a user of the module needs; the others are tests.
PRODUCT := zelklogservice zelk_dbus zelk_testing zelk-log-service command_docs

# All of these build in one folder, and none undoes what another built.
configure = cmake --preset release --log-level=WARNING >/dev/null
build_product = ./scripts/build.sh $(PRODUCT)

.PHONY: help setup build demo test device arm arm64 armhf asan tsan lint format format-check bench bench-once picture soak fuzz engines runners pack install uninstall clean

help: ## show this list
	@awk -F ':.*## ' '/^[a-z0-9-]+:.*## / { printf "make %-13s %s\n", $$1, $$2 }' Makefile

setup: ## install what the build and the tests need and this machine lacks
	@./scripts/setup.sh build demo test

build: ## build the module and the log service into build/release
	@./scripts/setup.sh build
	@$(build_product)

demo: ## show the module at work, with the embedded log service and with one in its own process
	@./scripts/setup.sh build demo
	@$(build_product)
	@./scripts/demo.sh

test: ## build and run all tests
	@./scripts/setup.sh build test
	@$(configure) -DZELK_BUILD_TESTS=ON -DZELK_BUILD_COMMAND=ON -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
	@cmake --build --preset release
	@ctest --preset release
	@./scripts/js_tests.sh test/*/*.test.mjs

device: ## build and test with the compiler, the libraries and the flags of a device's build
	@./scripts/setup.sh build test device
	@cmake --preset device --log-level=WARNING
	@cmake --build --preset device
	@ctest --preset device
	@ZELKLOGSERVICE_BUILD=device ./scripts/js_tests.sh test/*/*.test.mjs

arm: arm64 armhf ## build for the processors of devices, and run the tests in an emulator

arm64: ## the same for 64-bit ARM alone
armhf: ## the same for 32-bit ARM alone
arm64 armhf:
	@./scripts/setup.sh build test arm
	@./scripts/arm.sh $@

asan: ## run the tests under AddressSanitizer and UndefinedBehaviorSanitizer
	@./scripts/setup.sh build test
	@./scripts/sanitize.sh asan

tsan: ## run the tests under ThreadSanitizer
	@./scripts/setup.sh build test
	@./scripts/sanitize.sh tsan

format: ## format the C++ sources
	@./scripts/setup.sh lint
	@./scripts/format.sh -i

format-check: ## say which C++ sources are not formatted
	@./scripts/setup.sh lint
	@./scripts/format.sh --dry-run --Werror

lint: ## check the format, build with Clang, run clang-tidy, eslint and shellcheck, check the device build's files
	@./scripts/setup.sh build test bench lint
	@./scripts/format.sh --dry-run --Werror
	@./scripts/lint.sh

bench: ## measure, and compare with other ways to do the same thing
	@./scripts/setup.sh build bench
	@./scripts/bench.sh

bench-once: ## measure each row of the benchmarks once, to check that it still can be measured
	@./scripts/setup.sh build bench pack
	@./scripts/bench.sh --once

picture: ## measure how times grow with the amount, and draw docs/growth.svg
	@./scripts/setup.sh build bench picture
	@./scripts/growth_picture.sh

soak: ## call for a long time and watch memory
	@./scripts/setup.sh build test
	@$(build_product)
	@./scripts/soak.sh

fuzz: ## feed random input to the code that parses input
	@./scripts/setup.sh build fuzz
	@./scripts/fuzz.sh

engines: test ## run the tests on other Node.js versions, and all functions on Deno and Bun
	@./scripts/engines.sh

runners: ## try the package with Jest, Vitest, compilers and bundlers; downloads these
	@./scripts/setup.sh build runners
	@$(build_product)
	@./scripts/runners.sh

pack: ## make the npm package, on Debian 12 for x64 and arm64, and try it in an empty folder
	@./scripts/setup.sh build pack
	@./scripts/pack.sh

install: ## install zelklog, the log service and its D-Bus files below PREFIX (/usr/local)
	@# Nothing is built in another user's checkout, as with sudo.
	@if [ -O . ]; then ./scripts/setup.sh build && $(build_product); fi
	@./scripts/install.sh install

uninstall: ## remove what was installed below PREFIX
	@./scripts/install.sh uninstall

clean: ## remove everything that was built
	@rm -rf build
