# Every target does its own set-up first; where nothing is missing that is only a look.
SHELL := bash
.SHELLFLAGS := -euo pipefail -c
.DEFAULT_GOAL := help

PREFIX ?= /usr/local
# What a user of the module runs; the other targets of the build are tests.
PRODUCT := zelklogservice zelk_dbus zelk-log-service

.PHONY: help setup configure build demo test asan tsan lint format format-check bench soak fuzz engines pack install clean

help: ## show this list
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "make %-13s %s\n", $$1, $$2 }' Makefile

setup: ## install what the build and the tests need and this machine lacks
	@./scripts/setup.sh build test

# One configuration for all, so that no target undoes another's.
configure: setup
	@cmake --preset release -DZELK_BUILD_TESTS=ON --log-level=WARNING

build: configure ## build the module and the log service into build/release
	@cmake --build --preset release --target $(PRODUCT)

demo: build ## show the module at work, on the embedded log service and on one in a process of its own
	@./scripts/demo.sh

test: configure ## build and run all tests
	@cmake --build --preset release
	@ctest --preset release
	@node --test test/js/*.test.mjs

asan: setup ## run the tests under AddressSanitizer and UndefinedBehaviorSanitizer
	@./scripts/sanitize.sh asan

tsan: setup ## run the tests under ThreadSanitizer
	@./scripts/sanitize.sh tsan

format: ## format the C++ sources
	@./scripts/setup.sh lint
	@./scripts/format.sh -i

format-check: ## say which C++ sources are not formatted
	@./scripts/setup.sh lint
	@./scripts/format.sh --dry-run --Werror

lint: format-check ## build with Clang, run clang-tidy and eslint, check the device build's files
	@./scripts/lint.sh

bench: ## measure, and compare with what else can do the same
	@./scripts/setup.sh build bench
	@./scripts/bench.sh

soak: build ## call for a long time and watch memory
	@./scripts/soak.sh

fuzz: ## feed made-up input to what reads input
	@./scripts/setup.sh build fuzz
	@./scripts/fuzz.sh

engines: test ## run the tests on other Node.js versions, and all functions on Deno and Bun
	@./scripts/engines.sh

pack: build ## make the npm package and try it in an empty folder
	@./scripts/pack.sh

install: build ## install the log service and its D-Bus files below PREFIX (/usr/local)
	@cmake --install build/release --prefix $(PREFIX)

clean: ## remove everything that was built
	@rm -rf build
