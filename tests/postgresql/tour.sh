#!/usr/bin/env bash
# Walks the guided tour on a database of the server that with-postgresql.sh has started, filled by
# the client as its administrator. Usage: tour.sh client administrator's-command picture-folder
set -euo pipefail
[ $# = 3 ] || { echo "usage: $0 client administrators-command picture-folder" >&2; exit 2; }

# As on an administrator's machine: his password in a file that is his, nobody's in the environment.
PGPASSFILE=$(dirname "$AUTHSETTING_TEST_PGDATA")/pgpass
(umask 077 && printf '*:*:*:%s:%s\n' "$PGUSER" "$PGPASSWORD" >"$PGPASSFILE")
export PGPASSFILE
store=postgresql://$PGUSER@$PGHOST:$PGPORT/tour
unset PGPASSWORD AUTHSETTING_TEST_SUPERUSER_URL

createdb --encoding=UTF8 --template=template0 --locale=C.UTF-8 tour
QT_QPA_PLATFORM=offscreen "$2" --store "$store" create
# The server decides on "today", so that its clock stands where the client's begins.
psql -X -q -v ON_ERROR_STOP=1 -d tour \
    -c "UPDATE authsetting.settings SET test_now = '2026-03-02 02:30:00+00'"

exec "$(dirname "${BASH_SOURCE[0]}")/../with-xserver.sh" "$1" --tour --store "$store" \
    --clock 2026-03-02T10:30:00 --steps "$3"
