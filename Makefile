# Every target does its own set-up first; where nothing is missing that is only a look.
SHELL := bash
.SHELLFLAGS := -euo pipefail -c
.DEFAULT_GOAL := help

PREFIX ?= /usr/local
# What a user of the module runs; the other targets of the build are tests.
PRODUCT := zelklogservice zelk_dbus zelk_testing zelk-log-service

# `make build` and `make demo` keep a configuration that has tests: no target undoes another's.
build_product = cmake --preset release --log-level=WARNING && cmake --build --preset release --target $(PRODUCT)

.PHONY: help setup build demo test asan tsan lint format format-check bench soak fuzz engines pack install clean

help: ## show this list
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "make %-13s %s\n", $$1, $$2 }' Makefile

setup: ## install what the build and the tests need and this machine lacks
	@./scripts/setup.sh build demo test

build: ## build the module and the log service into build/release
	@./scripts/setup.sh build
	@$(build_product)

demo: ## show the module at work, on the embedded log service and on one in a process of its own
	@./scripts/setup.sh build demo
	@$(build_product)
	@./scripts/demo.sh

test: ## build and run all tests
	@./scripts/setup.sh build test
	@cmake --preset release -DZELK_BUILD_TESTS=ON --log-level=WARNING
	@cmake --build --preset release
	@ctest --preset release
	@node --test test/js/*.test.mjs

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

lint: ## check the format, build with Clang, run clang-tidy and eslint, check the device build's files
	@./scripts/setup.sh build test lint
	@./scripts/format.sh --dry-run --Werror
	@./scripts/lint.sh

bench: ## measure, and compare with what else can do the same
	@./scripts/setup.sh build bench
	@./scripts/bench.sh

soak: ## call for a long time and watch memory
	@./scripts/setup.sh build test
	@$(build_product)
	@./scripts/soak.sh

fuzz: ## feed made-up input to what reads input
	@./scripts/setup.sh build fuzz
	@./scripts/fuzz.sh

engines: test ## run the tests on other Node.js versions, and all functions on Deno and Bun
	@./scripts/engines.sh

pack: ## make the npm package and try it in an empty folder
	@./scripts/setup.sh build test
	@$(build_product)
	@./scripts/pack.sh

install: build ## install the log service and its D-Bus files below PREFIX (/usr/local)
	@cmake --install build/release --prefix $(PREFIX)

clean: ## remove everything that was built
	@rm -rf build
