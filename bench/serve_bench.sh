#!/usr/bin/env bash
# veldra serve against a minimal Go server (serve_baseline/main.go) answering the same
# parametrised SELECT, loaded with wrk at 1, 16 and 64 connections, on SQLite and on a
# throw-away PostgreSQL server; then 1M rows as CSV against veldra run --format csv.
# Installs its own tools (wrk, Go and the Go drivers, all Debian packages) when missing.
#   serve_bench [SECONDS]     seconds per wrk run (default 10); REPEAT=n repeats each run
set -euo pipefail

VELDRA="@VELDRA_BINARY@"
SOURCE="@PROJECT_SOURCE_DIR@"
SAMPLE_DB="@VELDRA_SAMPLE_DB@"
seconds="${1:-10}"
repeat="${REPEAT:-1}"

need=()
for package in wrk bc curl golang-go golang-github-mattn-go-sqlite3-dev golang-github-lib-pq-dev; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || need+=("$package")
done
if [ ${#need[@]} -gt 0 ]; then
    sudo=""; [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${need[@]}" >/dev/null
fi

work="$(mktemp -d /tmp/veldra-serve-bench.XXXXXX)"
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    "$SOURCE/tests/dataservice/pgserver.sh" stop "$work/pg.state" || true
    rm -rf "$work"
}
trap cleanup EXIT

echo "building the Go baseline"
(cd "$SOURCE/bench/serve_baseline" && GOPATH=/usr/share/gocode GO111MODULE=off GOCACHE="$work/gocache" \
    go build -o "$work/serve_baseline" .)

"$SOURCE/tests/dataservice/pgserver.sh" start "$work/pg.state" "$SOURCE/samples/sample.sql"
state() { sed -n "s/^$1=//p" "$work/pg.state"; }
have_pg=false
grep -q '^port=' "$work/pg.state" && have_pg=true

mkdir -p "$work/components" "$work/config/veldra"
cp "$SOURCE/samples/sales-by-region.component.xml" "$work/components/"
sqlite3 "$work/big.db" "CREATE TABLE big AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n
    LIMIT 1000000) SELECT i, 'row number ' || i AS label, i * 0.25 AS amount FROM n"
cp "$SOURCE/tests/server/big.component.xml" "$work/components/"
{
    echo "[Big]"; echo "provider=SQLite"; echo "path=$work/big.db"; echo "rowcap=2000000"
    if $have_pg; then
        echo "[Shared]"; echo "provider=PostgreSQL"; echo "host=$(state host)"; echo "port=$(state port)"
        echo "user=$(state reader)"; echo "dbname=$(state dbname)"; echo "catalogs=sales"; echo "pool_size=8"
    fi
} >"$work/config/veldra/datasources.ini"
if $have_pg; then
    sed -e 's|<provider>SQLite</provider>|<provider>PostgreSQL</provider>|' -e 's|<dsn>Sample</dsn>|<dsn>Shared</dsn>|' \
        -e 's|<catalog>main</catalog>|<catalog>sales</catalog>|' "$SOURCE/samples/sales-by-region.component.xml" \
        >"$work/components/shared.component.xml"
fi
export XDG_CONFIG_HOME="$work/config"

"$VELDRA" serve "$work/components" --port 0 --access-log /dev/null >"$work/serve.out" 2>&1 &
serve_pid=$!; pids+=("$serve_pid")
sleep 1
serve_url="$(grep -o 'http://[^ ]*' "$work/serve.out")"
export SERVE_TOKEN="$(cat "$work/config/veldra/serve.token")"

# The largest resident size of process $1 until the file $2 appears, in MB, into $3.
watch_rss() {
    local pid="$1" stop="$2" out="$3" most=0 now
    while [ ! -e "$stop" ]; do
        now=$(awk '/VmRSS/ {print $2}' "/proc/$pid/status" 2>/dev/null || echo 0)
        [ "${now:-0}" -gt "$most" ] && most="$now"
        sleep 0.1
    done
    echo $((most / 1024)) >"$out"
}

# The most connections veldra's pool held on the server until the file $1 appears, into $2.
watch_pg() {
    local stop="$1" out="$2" most=0 now
    while [ ! -e "$stop" ]; do
        now=$(psql -X -A -t -h "$(state host)" -p "$(state port)" -U "$(state user)" -d "$(state dbname)" -c \
            "SELECT count(*) FROM pg_stat_activity WHERE application_name = 'veldra-dataservice'" 2>/dev/null || echo 0)
        [ "${now:-0}" -gt "$most" ] && most="$now"
        sleep 0.2
    done
    echo "$most" >"$out"
}

load() { # target url connections component -> "rps p99 errors"
    local threads=2
    [ "$3" -eq 1 ] && threads=1
    SERVE_TARGET="$1" SERVE_COMPONENT="$4" wrk -t"$threads" -c"$3" -d"${seconds}s" --timeout 10s \
        -s "$SOURCE/bench/serve_bench.lua" "$2" | sed -n 's/^RESULT //p'
}

field() { echo "$1" | tr ' ' '\n' | sed -n "s/^$2=//p"; }

compare() { # engine component baseline-url
    local engine="$1" component="$2" go_url="$3" c run v g
    printf '\n%s: requests/s and p99 latency, veldra serve against the Go baseline (%ss runs)\n' "$engine" "$seconds"
    printf '%-6s %-4s %10s %10s %7s %9s %9s %7s %7s\n' conns run veldra go ratio "p99 v ms" "p99 g ms" "err v" "err g"
    rm -f "$work/stop"
    watch_rss "$serve_pid" "$work/stop" "$work/rss" &
    local watcher=$!
    local pg_watcher=""
    if [ "$engine" = PostgreSQL ]; then watch_pg "$work/stop" "$work/pgmax" & pg_watcher=$!; fi
    for c in 1 16 64; do
        for run in $(seq "$repeat"); do
            v="$(load veldra "$serve_url" "$c" "$component")"
            g="$(load go "$go_url" "$c" "$component")"
            printf '%-6s %-4s %10s %10s %7.2f %9s %9s %7s %7s\n' "$c" "$run" "$(field "$v" rps)" "$(field "$g" rps)" \
                "$(echo "$(field "$v" rps) / $(field "$g" rps)" | bc -l)" "$(field "$v" p99_ms)" "$(field "$g" p99_ms)" \
                "$(field "$v" errors)" "$(field "$g" errors)"
        done
    done
    touch "$work/stop"
    wait "$watcher"
    echo "veldra serve's largest resident size: $(cat "$work/rss") MB (limit 200 MB)"
    if [ -n "$pg_watcher" ]; then
        wait "$pg_watcher"
        echo "most server connections veldra held: $(cat "$work/pgmax") (pool_size 8)"
    fi
}

"$work/serve_baseline" -driver sqlite3 -dsn "file:$SAMPLE_DB?mode=ro" >"$work/go-sqlite.out" 2>&1 &
pids+=($!)
sleep 0.5
echo "load: $(uptime)"
compare SQLite sales-by-region "$(grep -o 'http://[^ ]*' "$work/go-sqlite.out")"

if $have_pg; then
    "$work/serve_baseline" -driver postgres -dsn "host=$(state host) port=$(state port) user=$(state reader) \
dbname=$(state dbname) sslmode=disable" >"$work/go-pg.out" 2>&1 &
    pids+=($!)
    sleep 0.5
    compare PostgreSQL shared "$(grep -o 'http://[^ ]*' "$work/go-pg.out")"
else
    echo "PostgreSQL skipped: $(cat "$work/pg.state")"
fi

printf '\n1M rows as CSV: veldra serve (curl) against veldra run --format csv, best of 3\n'
best() { sort -n | head -1; }
seconds_of() { local start end; start=$(date +%s.%N); "$@" >/dev/null; end=$(date +%s.%N); echo "$end - $start" | bc -l; }
cli=$( for i in 1 2 3; do seconds_of "$VELDRA" run --format csv "$work/components/big.component.xml"; done | best)
rm -f "$work/stop"
watch_rss "$serve_pid" "$work/stop" "$work/rss" &
watcher=$!
http=$( for i in 1 2 3; do curl -s -o "$work/big.csv" -w '%{time_total}\n' -H "Authorization: Bearer $SERVE_TOKEN" \
    "${serve_url}api/components/big/rows?format=csv"; done | best)
touch "$work/stop"; wait "$watcher"
"$VELDRA" run --format csv "$work/components/big.component.xml" >"$work/cli.csv"
same="no"; cmp -s "$work/cli.csv" "$work/big.csv" && same="yes"
printf 'veldra run %.2f s, veldra serve %.2f s, ratio %.2f (limit 1.30); same bytes: %s; serve peak %s MB\n' \
    "$cli" "$http" "$(echo "$http / $cli" | bc -l)" "$same" "$(cat "$work/rss")"
