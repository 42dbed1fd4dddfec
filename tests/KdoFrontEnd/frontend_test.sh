#!/usr/bin/env bash
# The headless front end as a process: FIFO and input file, recording,
# playing, the search path, exit, SIGTERM, the clean-up of old files and a
# start that must fail. Usage: frontend_test.sh <kdoint> [<dir of kxhost>]
set -uo pipefail
KDOINT=$1
T=$(mktemp -d /tmp/kx_front_XXXXXX)
PIDS=()
cleanup() { for p in "${PIDS[@]}"; do kill -9 "$p" 2>/dev/null; done; rm -rf "$T"; }
trap cleanup EXIT
fail() { echo "FAIL: $*"; echo "--- o:"; cat "$T"/Work/*-o.txt 2>/dev/null; echo "--- e:"; cat "$T"/Work/*-e.txt 2>/dev/null; exit 1; }

mkdir -p "$T/App" "$T/Common" "$T/Cal" "$T/Work"
cat > "$T/KdoIntUse.ini" <<INI
[Application]
Size=1
Default=1
[Application/Entry1]
Name=Test
NameE=Test
Path=App
Path1=$T/Common
[Calibration]
Size=1
Default=1
[Calibration/Entry1]
Name=Cal
NameE=Cal
Path=Cal
[Startmacro]
Size=1
Default=1
[Startmacro/Entry1]
Name=Start
NameE=Start
[Work]
Size=1
Default=1
[Work/Entry1]
Path=Work
INI
printf 'echo("started\\n")\r\n' > "$T/App/Start.mac"
printf 'echo("bye\\n")\r\nexit()\r\n' > "$T/App/Beenden.mac"
printf 'echo("app\\n")\r\n' > "$T/App/over.mac"
printf 'echo("common\\n")\r\n' > "$T/Common/over.mac"
FIFO="$T/fifo"

start() {
  local before
  # A run's files are named by the second it starts in.
  sleep 1
  before=$(ls "$T"/Work/*-o.txt 2>/dev/null | wc -l)
  "$KDOINT" -u="$T/KdoIntUse.ini" -p="$FIFO" "$@" >"$T/out.txt" 2>"$T/err.txt" &
  PID=$!
  PIDS+=("$PID")
  for _ in $(seq 100); do
    [ -p "$FIFO" ] && [ "$(ls "$T"/Work/*-o.txt 2>/dev/null | wc -l)" -gt "$before" ] && return 0
    sleep 0.05
  done
  fail "no start"
}
# Waits until the newest -o.txt holds the text.
expect() {
  for _ in $(seq "${2:-200}"); do
    grep -q -- "$1" "$(ls -t "$T"/Work/*-o.txt | head -1)" 2>/dev/null && return 0
    sleep 0.025
  done
  fail "output lacks '$1'"
}
ends() {
  for _ in $(seq 200); do
    if ! kill -0 "$PID" 2>/dev/null; then wait "$PID"; RC=$?; [ "$RC" = "$1" ] && return 0; fail "exit code $RC, not $1"; fi
    sleep 0.025
  done
  fail "still running"
}

start
expect started
printf 'INT a(5)\r\necho(a)\r\n' > "$FIFO"
expect '^5\|started5\|5$'
printf 'echo("direct\\n")\r\n' >> "$(ls -t "$T"/Work/*-i.txt | head -1)"
expect direct
printf 'record("rec")\r\nINT b(7)\r\necho(b)\r\nend()\r\ndestroy("b")\r\nplay("rec")\r\necho("|")\r\n' > "$FIFO"
expect '77|'
grep -q 'INT b(7)' "$T/App/rec.mac" || fail "recorded macro"
printf 'play("over")\r\n' > "$FIFO"
expect common
if [ $# -ge 2 ]; then
  printf 'use("kxhost.dll")\r\nPICTURE p\r\nINT w\r\nw=p.width()\r\necho(w)\r\necho("host\\n")\r\n' > "$FIFO"
  expect host
fi
printf 'exit()\r\n' > "$FIFO"
ends 0

# A second start removes the empty and two-day-old files of the first.
touch -d '2 days ago' "$T/Work/old.txt"
: > "$T/Work/empty.txt"
FIRST_O=$(ls "$T"/Work/*-o.txt | head -1)
start
[ -e "$T/Work/old.txt" ] && fail "old file kept"
[ -e "$T/Work/empty.txt" ] && fail "empty file kept"
[ -s "$FIRST_O" ] || fail "output of the first run lost"
kill -TERM "$PID"
expect bye
ends 0

# Bad input through the FIFO: garbage, a long line, a writer gone mid-line.
start
head -c 200000 /dev/urandom > "$FIFO"
head -c 1000000 /dev/zero | tr '\0' 'a' > "$FIFO"
printf 'echo("ha' > "$FIFO"
printf 'lf")\r\n\r\necho("alive")\r\nexit()\r\n' > "$FIFO"
expect alive 2400  # thousands of failing lines: slow under the sanitizers
ends 0

# A non-empty input file of the name the start would make is refused (109).
for s in 0 1 2 3; do
  name=$(date -d "+$s seconds" '+%Y-%m-%d-%H-%M-%S')
  echo 'x' > "$T/Work/$name-i.txt"
done
"$KDOINT" -u="$T/KdoIntUse.ini" -p="$FIFO" >"$T/out.txt" 2>"$T/err.txt"
[ $? = 1 ] || fail "start with a used input file"
grep -q 'Datei bereits vorhanden\|allready exists' "$T/err.txt" || fail "message 109: $(cat "$T/err.txt")"

# A missing and a malformed start ini.
"$KDOINT" -u="$T/none.ini" -p="$FIFO" >"$T/out.txt" 2>"$T/err.txt"
[ $? = 1 ] || fail "missing ini"
grep -q 'nicht gefunden\|not found' "$T/err.txt" || fail "missing ini message"
printf '[Application]\nSize=0\n' > "$T/bad.ini"
"$KDOINT" -u="$T/bad.ini" -p="$FIFO" >"$T/out.txt" 2>"$T/err.txt"
[ $? = 1 ] || fail "malformed ini"
grep -q 'Application' "$T/err.txt" || fail "malformed ini message"
echo "front end: all passed"
