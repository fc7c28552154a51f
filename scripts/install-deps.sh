#!/usr/bin/env bash
# Installs the Debian packages listed in debian-packages.txt (or the list
# files given as arguments) that are missing.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
lists=("$@")
[[ ${#lists[@]} -eq 0 ]] && lists=("$here/debian-packages.txt")
missing=()
while read -r pkg; do
  [[ -z "$pkg" || "$pkg" == \#* ]] && continue
  status=$(dpkg-query -W -f='${db:Status-Status}' "$pkg" 2>/dev/null || true)
  [[ "$status" == installed ]] || missing+=("$pkg")
done < <(cat "${lists[@]}")
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "Installing Debian packages: ${missing[*]}"
sudo=()
if [[ $(id -u) -ne 0 ]]; then sudo=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
