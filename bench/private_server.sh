#!/bin/bash
# A private Firebird server on loopback for the server-mode benchmark:
#   private_server.sh start FOLDER PORT PASSWORD   copies the Firebird root into FOLDER with its own
#                                                  configuration and security database, and starts it
#   private_server.sh stop FOLDER                  stops it (SIGTERM, then SIGKILL after 5 s)
# The system's Firebird service is never touched.
set -e
command=$1
folder=$2
case "$command" in
start)
    port=$3
    password=$4
    root=$(dirname "$(readlink -f /usr/lib/*/firebird/3.0/plugins)")
    rm -rf "$folder"
    mkdir -p "$folder"
    cp -rL "$root/." "$folder/"
    cp /var/lib/firebird/3.0/system/security3.fdb "$folder/security3.fdb"
    chmod 600 "$folder/security3.fdb"
    cat >> "$folder/firebird.conf" <<CONF
RemoteServicePort = $port
RemoteBindAddress = 127.0.0.1
SecurityDatabase = $folder/security3.fdb
CONF
    sed -i "s|security.db = .*|security.db = $folder/security3.fdb|" "$folder/databases.conf"
    export FIREBIRD="$folder"
    echo "create or alter user SYSDBA password '$password' using plugin Srp; commit;" |
        isql-fb -q -user SYSDBA "$folder/security3.fdb"
    /usr/sbin/firebird >"$folder/server.log" 2>&1 &
    echo $! >"$folder/server.pid"
    for _ in 1 2 3 4 5 6 7 8 9 10; do
        if (exec 3<>/dev/tcp/127.0.0.1/"$port") 2>/dev/null; then exit 0; fi
        sleep 0.5
    done
    echo "the private Firebird server did not start; see $folder/server.log" >&2
    exit 1
    ;;
stop)
    pid=$(cat "$folder/server.pid" 2>/dev/null || true)
    [ -n "$pid" ] || exit 0
    kill "$pid" 2>/dev/null || true
    for _ in 1 2 3 4 5 6 7 8 9 10; do
        kill -0 "$pid" 2>/dev/null || exit 0
        sleep 0.5
    done
    kill -9 "$pid" 2>/dev/null || true
    ;;
esac
