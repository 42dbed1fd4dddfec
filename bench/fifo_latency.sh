#!/usr/bin/env bash
# The headless front end's latency and idle load: 1,000 lines written one at
# a time into the FIFO, each timed from the write to its echo in -o.txt
# (median and 90th percentile), then the CPU the idle process takes over 3 s.
# Usage: bench/fifo_latency.sh [build/bin/kdoint]
set -euo pipefail
KDOINT=${1:-build/bin/kdoint}
T=$(mktemp -d /tmp/kx_latency_XXXXXX)
trap 'kill -9 $PID 2>/dev/null; rm -rf "$T"' EXIT
mkdir -p "$T/App" "$T/Cal" "$T/Work"
printf '[Application]\nSize=1\nDefault=1\n[Application/Entry1]\nName=A\nNameE=A\nPath=App\n[Calibration]\nSize=1\nDefault=1\n[Calibration/Entry1]\nName=C\nNameE=C\nPath=Cal\n[Startmacro]\nSize=1\nDefault=1\n[Startmacro/Entry1]\nName=Start\nNameE=Start\n[Work]\nSize=1\nDefault=1\n[Work/Entry1]\nPath=Work\n' > "$T/Use.ini"
printf 'INT n\r\n' > "$T/App/Start.mac"
"$KDOINT" -u="$T/Use.ini" -p="$T/fifo" >/dev/null 2>&1 &
PID=$!
sleep 0.5
/usr/bin/python3 - "$T" "$PID" <<'PY'
import glob, os, statistics, sys, time
t, pid = sys.argv[1], int(sys.argv[2])
out = glob.glob(t + "/Work/*-o.txt")[0]
fifo = os.open(t + "/fifo", os.O_WRONLY)
f = open(out, "rb")
lat = []
for i in range(1000):
    token = b"<%d>" % i
    start = time.perf_counter()
    os.write(fifo, b'echo("<%d>")\r\n' % i)
    seen = b""
    while token not in seen:
        seen += f.read()
        if token not in seen:
            time.sleep(0.0002)
    lat.append((time.perf_counter() - start) * 1000)
lat.sort()
print("FIFO line to output: median %.2f ms, 90%% %.2f ms, max %.2f ms" % (statistics.median(lat), lat[899], lat[-1]))
tick = os.sysconf("SC_CLK_TCK")
def cpu():
    fields = open("/proc/%d/stat" % pid).read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / tick
c0, w0 = cpu(), time.time()
time.sleep(3)
c1, w1 = cpu(), time.time()
print("idle: %.2f %% of one core" % (100 * (c1 - c0) / (w1 - w0)))
os.write(fifo, b"exit()\r\n")
PY
