#!/usr/bin/env bash
# Installs what is missing, builds in Release and runs the main job: the
# command interpreter, headless, on the demonstration tree of examples/kdoint.
# Its start macro plays the demonstration macro, which drives the library
# through the host classes and ends with exit(); then the output (-o.txt) and
# the errors (-e.txt) of the run are printed. The library-level example
# kxdemo follows.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON >/dev/null
cmake --build build --target kdoint kxhost kxdemo

RUN=build/kdoint-run
rm -rf "$RUN"
cp -r examples/kdoint "$RUN"
cp -r examples/macros "$RUN/macros"
cp examples/ini/IntegrationTimes.ini "$RUN/macros/"
mkdir -p "$RUN/Work"
status=0
timeout 120 build/bin/kdoint -u="$PWD/$RUN/KdoIntUse.ini" -p="$PWD/$RUN/fifo" || status=$?
for f in "$RUN"/Work/*-o.txt "$RUN"/Work/*-e.txt; do
  [ -e "$f" ] || continue
  echo "===== $(basename "$f")"
  cat "$f"
done
[ "$status" = 0 ] || { echo "kdoint ended with $status"; exit "$status"; }
echo
echo "===== kxdemo"
exec build/examples/kxdemo "$@"
