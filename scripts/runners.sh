#!/usr/bin/env bash
# Tries the npm package in a project that has it from its tarball: runs the tests in examples/ with Jest and Vitest, and
# uses the compilers and bundlers of scripts/runners/package.json. The tarball is that of `make pack` if it is of these
# sources, otherwise one of the release build, for this machine alone.
set -euo pipefail
cd "$(dirname "$0")/.."

project=$PWD/build/runners/project

# Makes build/runners/zelklogservice-VERSION.tgz of the release build.
pack_release_build() {
    local package=$PWD/build/runners/package lib file
    lib=$package/lib/linux-$(node -p process.arch)
    rm -rf "$package"
    mkdir -p "$lib" "$package/node_modules"
    for file in *; do
        case $file in build | dist | lib | node_modules) ;; *) cp -r "$file" "$package" ;; esac
    done
    cp -r node_modules/commander "$package/node_modules"
    cp build/release/{*.node,zelk-log-service,lib*-"$(node -p 'require("./package.json").version')".so} "$lib"
    npm pack "$package" --ignore-scripts --pack-destination build/runners --loglevel=error
}

rm -f build/runners/*.tgz
mkdir -p "$project"
if [ "$(cat build/pack/commit 2>/dev/null)" = "$(scripts/prepack.sh --stamp)" ]; then
    cp build/pack/*.tgz build/runners
else
    pack_release_build
fi

cp scripts/runners/{.npmrc,*} examples/*.*s "$project"
cd "$project"
# As `npm ci`, which also asks for the builds of esbuild and others for every other system.
if ! cmp -s ../../../scripts/runners/package-lock.json node_modules/.installed-lock.json; then
    rm -rf node_modules
    npm install --ignore-scripts --loglevel=error
    cp ../../../scripts/runners/package-lock.json node_modules/.installed-lock.json
fi
rm -rf node_modules/zelklogservice
npm install --no-save --ignore-scripts --offline --loglevel=error ../*.tgz
node run.mjs
