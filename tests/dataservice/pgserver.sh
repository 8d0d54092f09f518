#!/usr/bin/env bash
# Starts or stops a throw-away PostgreSQL server for the data service tests.
#   pgserver.sh start STATE_FILE SAMPLE_SQL   writes connection parameters to STATE_FILE
#   pgserver.sh stop STATE_FILE               stops the server and removes its files
# When the server binaries are missing, STATE_FILE says "unavailable: <why>" and the
# PostgreSQL rows of the tests skip with that text.
set -euo pipefail

action="$1"
state="$2"

as_owner() {
    # initdb refuses to run as root; CI runs as root, so hand the work to the postgres user.
    if [ "$(id -u)" -eq 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

find_bindir() {
    local dir
    for dir in /usr/lib/postgresql/*/bin; do
        [ -x "$dir/initdb" ] && [ -x "$dir/pg_ctl" ] && { echo "$dir"; return 0; }
    done
    return 1
}

start() {
    local sample="$1" bindir workdir port
    mkdir -p "$(dirname "$state")"
    if ! bindir="$(find_bindir)"; then
        echo "unavailable: no initdb/pg_ctl under /usr/lib/postgresql/*/bin (install the postgresql package)" >"$state"
        return 0
    fi
    if [ "$(id -u)" -eq 0 ] && ! id postgres >/dev/null 2>&1; then
        echo "unavailable: running as root and there is no postgres user to run initdb" >"$state"
        return 0
    fi
    workdir="$(mktemp -d /tmp/veldra-pg.XXXXXX)"
    chmod 755 "$workdir"
    [ "$(id -u)" -eq 0 ] && chown postgres: "$workdir"
    # A Unix socket in our own directory: no TCP port to collide with, nothing reachable from outside.
    port=54329
    as_owner "$bindir/initdb" -D "$workdir/data" -A trust -U veldra -E UTF8 --no-sync >"$workdir/initdb.log" 2>&1
    # Each server process may map at most 1 GB, as docs/datasources.md tells an administrator
    # to bound a backend: a query that needs more fails with "out of memory" on its own.
    (ulimit -v 1048576; as_owner "$bindir/pg_ctl" -D "$workdir/data" -l "$workdir/server.log" -w -t 60 \
        -o "-k $workdir -c listen_addresses= -p $port -c fsync=off" start >/dev/null)
    local psql=(psql -X -q -v ON_ERROR_STOP=1 -h "$workdir" -p "$port" -U veldra)
    "${psql[@]}" -d postgres -c "CREATE DATABASE veldra_sample" >/dev/null
    "${psql[@]}" -d veldra_sample -c "CREATE SCHEMA sales; CREATE SCHEMA hr;
        CREATE TABLE hr.salaries (staff_id INTEGER PRIMARY KEY, salary NUMERIC(10,2));
        INSERT INTO hr.salaries VALUES (1, 91000), (2, 87000);" >/dev/null
    PGOPTIONS="-c search_path=sales" "${psql[@]}" -d veldra_sample -f "$sample" >/dev/null
    # A function that writes, and domains whose checks call what a request may not (a yes/no
    # oracle on another schema, a sleep), for the tests that prove a request cannot.
    "${psql[@]}" -d veldra_sample -c "CREATE FUNCTION sales.mark_cancelled(integer) RETURNS integer
        LANGUAGE sql VOLATILE AS 'UPDATE sales.orders SET status = ''cancelled'' WHERE id = \$1 RETURNING id';
        CREATE FUNCTION sales.salary_above(numeric) RETURNS boolean LANGUAGE sql STABLE SECURITY DEFINER
        AS 'SELECT EXISTS (SELECT 1 FROM hr.salaries WHERE salary > \$1)';
        CREATE DOMAIN sales.known_salary AS numeric CHECK (sales.salary_above(VALUE));
        CREATE DOMAIN sales.slow_number AS integer CHECK (pg_catalog.pg_sleep(VALUE) IS NOT NULL);" >/dev/null
    # The role the data sources connect as: the grants docs/datasources.md tells an
    # administrator to run.
    "${psql[@]}" -d veldra_sample -c "CREATE ROLE veldra_reader LOGIN;
        REVOKE ALL ON DATABASE veldra_sample FROM PUBLIC;
        GRANT CONNECT, TEMPORARY ON DATABASE veldra_sample TO veldra_reader;
        REVOKE CREATE ON SCHEMA public FROM PUBLIC;
        GRANT USAGE ON SCHEMA sales TO veldra_reader;
        GRANT SELECT ON ALL TABLES IN SCHEMA sales TO veldra_reader;
        GRANT EXECUTE ON FUNCTION sales.mark_cancelled(integer) TO veldra_reader;
        GRANT SET ON PARAMETER temp_file_limit TO veldra_reader;" >/dev/null
    # Roles the service must refuse, each for one reason, a reader whose role reads quotes the
    # old way, and an extension whose functions run SQL on other connections, when the server
    # has it.
    "${psql[@]}" -d veldra_sample -c "CREATE ROLE veldra_signaller LOGIN IN ROLE pg_signal_backend;
        CREATE ROLE veldra_writer LOGIN; CREATE ROLE veldra_creator LOGIN;
        GRANT CONNECT, TEMPORARY ON DATABASE veldra_sample TO veldra_signaller, veldra_writer, veldra_creator;
        CREATE ROLE veldra_oldstrings LOGIN; ALTER ROLE veldra_oldstrings SET standard_conforming_strings = off;
        GRANT CONNECT, TEMPORARY ON DATABASE veldra_sample TO veldra_oldstrings;
        GRANT USAGE ON SCHEMA sales TO veldra_oldstrings;
        GRANT SELECT ON ALL TABLES IN SCHEMA sales TO veldra_oldstrings;
        GRANT SET ON PARAMETER temp_file_limit TO veldra_oldstrings;
        GRANT USAGE ON SCHEMA sales TO veldra_signaller, veldra_writer;
        GRANT SELECT ON ALL TABLES IN SCHEMA sales TO veldra_signaller, veldra_writer, veldra_creator;
        GRANT INSERT ON sales.orders TO veldra_writer;
        GRANT USAGE, CREATE ON SCHEMA sales TO veldra_creator;" >/dev/null
    "${psql[@]}" -d veldra_sample -c "CREATE EXTENSION IF NOT EXISTS dblink SCHEMA public" >/dev/null 2>&1 || true
    {
        echo "workdir=$workdir"
        echo "bindir=$bindir"
        echo "host=$workdir"
        echo "port=$port"
        echo "user=veldra"
        echo "reader=veldra_reader"
        echo "dbname=veldra_sample"
    } >"$state"
}

stop() {
    [ -f "$state" ] || return 0
    local workdir bindir
    workdir="$(sed -n 's/^workdir=//p' "$state")"
    bindir="$(sed -n 's/^bindir=//p' "$state")"
    rm -f "$state"
    [ -n "$workdir" ] || return 0
    if [ -f "$workdir/data/postmaster.pid" ]; then
        as_owner "$bindir/pg_ctl" -D "$workdir/data" -m immediate -w stop >/dev/null 2>&1 || true
    fi
    rm -rf "$workdir"
}

case "$action" in
    start) start "$3" ;;
    stop) stop ;;
    *) echo "usage: $0 start STATE_FILE SAMPLE_SQL | stop STATE_FILE" >&2; exit 2 ;;
esac
