#!/usr/bin/env bash
# Installs what is missing, builds and runs every test: once in Release, once
# more under AddressSanitizer and UndefinedBehaviorSanitizer.
# KX_NO_SANITIZE=1 skips the second pass.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps.sh
jobs=$(nproc)

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON >/dev/null
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure --no-tests=error -j "$jobs")

if [ "${KX_NO_SANITIZE:-0}" != "1" ]; then
  cmake -S . -B build-san -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKX_SANITIZE=ON -DBUILD_TESTING=ON \
        -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g" >/dev/null
  cmake --build build-san -j "$jobs"
  (cd build-san && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
      ctest --output-on-failure --no-tests=error -j "$jobs" -LE nosan)
fi
if [ "${KX_NO_SANITIZE:-0}" != "1" ]; then
  # What threads share, under ThreadSanitizer: only the thread tests are built.
  cmake -S . -B build-tsan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKX_TSAN=ON -DBUILD_TESTING=ON \
        -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g" >/dev/null
  cmake --build build-tsan -j "$jobs" --target test_rastrix
  (cd build-tsan && TSAN_OPTIONS=halt_on_error=1 ctest --output-on-failure --no-tests=error -L tsan)
fi
echo "test.sh: all passes green"
