#!/usr/bin/env bash
# Installs the libraries into an empty folder, moves that folder, and builds and runs a project
# there that knows nothing but find_package(AuthSetting).
# Usage: check-installed-package.sh build-folder consumer-project [compiler-flags]
set -euo pipefail
build=$1
consumer=$2
flags=${3:-}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cmake --install "$build" --component AuthSetting --prefix "$folder/first" >"$folder/install.log"
mv "$folder/first" "$folder/prefix"

if grep -rlF "$build" "$folder/prefix" --include='*.cmake'; then
    echo "the installed package refers to the build folder"
    exit 1
fi
cmake -S "$consumer" -B "$folder/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_PREFIX_PATH="$folder/prefix" -DCMAKE_CXX_FLAGS="$flags"
cmake --build "$folder/build"
"$folder/build/consumer"
