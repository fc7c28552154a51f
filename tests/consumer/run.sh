#!/usr/bin/env bash
# Installs the built library and program into a scratch prefix, then, as an
# outside user would: runs the installed program, builds the outside project
# and the README's library example against the installed package, and runs
# both. Arguments: mxbook's build folder, this folder.
set -euo pipefail
build=$1
source=$2
readme=$source/../../README.md
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake --install "$build" --prefix "$scratch/prefix" >/dev/null
"$scratch/prefix/bin/mxbook" demo --root "$scratch/demo" >/dev/null

# The first C++ block after "## Using the library", as the README shows it.
awk '/^## Using the library/ { section = 1 } section && /^```cpp/ { copying = 1; next }
     copying && /^```/ { exit } copying { print }' "$readme" >"$scratch/tail_status.cpp"
cmake -S "$source" -B "$scratch/build" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/prefix" \
    -DREADME_EXAMPLE="$scratch/tail_status.cpp" >/dev/null
cmake --build "$scratch/build" >/dev/null
"$scratch/build/consumer" "$scratch"

listed=$("$scratch/build/tail_status" "$scratch/demo/VELMO/NALET.FDB" RA-21001)
echo "$listed" | grep -Eq ': [0-9]+(:[0-9]{2} h| landings) left$' || { echo "README example printed: $listed"; exit 1; }
if "$scratch/build/tail_status" "$scratch/no-such.fdb" RA-21001 2>/dev/null; then
    echo "README example succeeded on a missing database"; exit 1
fi
echo "installed program, consumer and README example: ok"
