#!/usr/bin/env bash
# Installs what is missing, builds in Release and runs the main job.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON >/dev/null
cmake --build build --target kxdemo
exec build/examples/kxdemo "$@"
