#!/usr/bin/env bash
# Measures the SNMP library beside net-snmp's (libsnmp-dev) and beside a hand-written floor, on the same messages:
# instructions by callgrind, times by Google Benchmark, and a get and a walk of 60 rows against a local snmpd.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
root=$(dirname "$(dirname "$here")")
build=$root/build/bench-snmp

if [ "${1:-}" != inside ]; then
  "$root/tools/install-packages.sh" build world printer test valgrind libsnmp-dev libbenchmark-dev
  cmake -G Ninja -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" >/dev/null
  cmake --build "$build" >/dev/null

  echo "== instructions of one operation"
  number=0
  "$build/bench_count" | while read -r name; do
    sum=$(valgrind --tool=callgrind --toggle-collect='measured(Case const&)' --callgrind-out-file=/dev/null \
      "$build/bench_count" $number 2>&1 </dev/null | sed -n 's/.*Collected : //p')
    printf '%-32s %8d\n' "$name" $((sum / 1000))
    number=$((number + 1))
  done
  echo "== times in memory"
  "$build/bench_time" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true 2>/dev/null | grep -E 'median|CPU'
  exec "$root/sim/bin/in-namespace" "$here/run.sh" inside
fi

folder=$(mktemp -d)
{
  echo "agentAddress udp:127.0.0.1:161"
  echo "rocommunity public"
  for row in $(seq 60); do echo "override 1.3.6.1.4.1.53017.98.$row integer $((row * 100))"; done
} >"$folder/snmpd.conf"
MIBS="" SNMP_PERSISTENT_DIR=$folder snmpd -f -Lo -C -c "$folder/snmpd.conf" -I -smux -p "$folder/pid" >"$folder/log" 2>&1 &
agent=$!
trap 'kill $agent; rm -rf "$folder"' EXIT
sleep 1
echo "== against a local agent"
"$build/bench_time" network --benchmark_repetitions=9 --benchmark_report_aggregates_only=true \
  --benchmark_enable_random_interleaving=true 2>/dev/null | grep -E 'median|CPU'
