#!/usr/bin/env bash
# Installs the libraries into an empty folder, moves that folder, and builds and runs a project
# there that knows nothing but find_package(AuthSetting) and what the README says about embedding.
# Usage: check-installed-package.sh build-folder consumer-project readme [compiler-flags]
set -euo pipefail
build=$1
consumer=$2
readme=$3
flags=${4:-}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cmake --install "$build" --component AuthSetting --prefix "$folder/first" >"$folder/install.log"
mv "$folder/first" "$folder/prefix"

if grep -rlF "$build" "$folder/prefix" --include='*.cmake'; then
    echo "the installed package refers to the build folder"
    exit 1
fi

# Prints the block in that language which the README has on embedding; fails without exactly one.
readme_block() {
    awk -v opening="\`\`\`$1" '
        /^## / { section = $0 == "## Embedding the library" }
        section && $0 == opening { inside = 1; ++blocks; next }
        /^```$/ { inside = 0 }
        inside
        END { exit blocks != 1 }' "$readme"
}
mkdir "$folder/readme"
readme_block cmake >"$folder/readme/embedding.cmake"
readme_block cpp >"$folder/readme/embedding.cpp"
grep '^#include' "$folder/readme/embedding.cpp" >"$folder/readme/includes.inc"
grep -v '^#include' "$folder/readme/embedding.cpp" >"$folder/readme/statements.inc"

cmake -S "$consumer" -B "$folder/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_PREFIX_PATH="$folder/prefix" -DCMAKE_CXX_FLAGS="$flags" \
    -DREADME_BLOCKS="$folder/readme"
cmake --build "$folder/build"

# Another version's library is no substitute: the program asks for one with the interface it knows.
if ! readelf -d "$folder/build/client" | grep -qE 'NEEDED.*\[libauthsetting\.so\.[0-9.]+\]'; then
    echo "the client is bound to no version of the library"
    exit 1
fi
"$folder/build/client"
