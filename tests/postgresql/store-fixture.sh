# shellcheck shell=bash
# A store with a few people, for scripts that with-postgresql.sh runs. Sourced.
#
#   alice    owns accounts: one granted to bob on the server, one by a file that bob has not redeemed,
#            one prepared, one free, a parent with a sub-account; manages carol and dora
#   bob      receives; has one account
#   mallory  the hostile one; has an account and an accomplice, eve, whom she manages
# What nobody but its owner may see contains the text KEEPOUT.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
sql_folder=$here/../../backend/store/postgresql/sql
store=authsetting
export PGCONNECT_TIMEOUT=20
people=(aliceKEEPOUT bobKEEPOUT carolKEEPOUT doraKEEPOUT mallory eve)

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# As the administrator.
admin() {
    psql -X -q -At -v ON_ERROR_STOP=1 -d "$store" "$@"
}

login_of() {
    printf 'as_%s' "$(printf '%s' "$1" | sha256sum | cut -c1-40)"
}

digest_of() {
    printf '%s' "password of $1" | sha1sum | cut -c1-40
}

# As a user, with his own login and password: as <user> <psql arguments...>
as() {
    local user=$1
    shift
    PGUSER=$(login_of "$user") PGPASSWORD=$(digest_of "$user") \
        psql -X -q -At -v VERBOSITY=verbose -d "$store" "$@"
}

# The server itself makes the verifier, of a role that lives for that long only.
verifier_of() {
    psql -X -q -At -v ON_ERROR_STOP=1 -d postgres <<SQL
BEGIN;
SET LOCAL password_encryption = 'scram-sha-256';
CREATE ROLE verifier_maker PASSWORD '$(digest_of "$1")';
SELECT rolpassword FROM pg_authid WHERE rolname = 'verifier_maker';
ROLLBACK;
SQL
}

# One change by a user: run_as <user> <requests as JSON> [request_id]
run_as() {
    as "$1" -v ON_ERROR_STOP=1 -v "requests=$2" -v "id=${3:-$(cat /proc/sys/kernel/random/uuid)}" <<'SQL'
SELECT authsetting.run_requests(:'id', :'requests');
SQL
}

account() {
    printf '"platform_id":1,"broker_id":"9999","account_sub_type":0,"account_number":"%s"' "$1"
}

grant() {
    printf '{"kind":"add","user":"%s",%s,"first_day":"2026-03-01","last_day":"2026-04-30","ratio":0.5,"on_server":%s}' \
        "$1" "$(account "$2")" "$3"
}

new_store() {
    psql -X -q -At -v ON_ERROR_STOP=1 -d postgres -c "CREATE DATABASE $store" >/dev/null
    {
        echo "BEGIN;"
        cat "$sql_folder"/[0-9]*.sql
        echo "UPDATE authsetting.schema_version SET version = $(find "$sql_folder" -name '[0-9]*.sql' | wc -l);"
        # A day on which the grants below are good.
        echo "UPDATE authsetting.settings SET test_now = '2026-03-02 02:00:00+00';"
        echo "COMMIT;"
    } | admin -f - >/dev/null
    local person owner
    for person in "${people[@]}"; do
        owner=null
        case $person in
        carol* | dora*) owner="'aliceKEEPOUT'" ;;
        eve) owner="'mallory'" ;;
        esac
        admin -c "SELECT authsetting.admin_add_user('$person', $owner, '$(verifier_of "$person")', true)" >/dev/null
    done
    admin >/dev/null <<'SQL'
INSERT INTO authsetting.platforms VALUES (1, 1, 'platform'), (2, 1, 'stock platform');
INSERT INTO authsetting.brokers VALUES (1, 1, '9999', 'broker');
SELECT authsetting.admin_add_account('aliceKEEPOUT', 1, 1, '9999', 0, 'A-KEEPOUT-' || i, 'S-KEEPOUT-' || i,
                                     'alias KEEPOUT ' || i)
FROM generate_series(1, 8) AS i;
SELECT authsetting.admin_add_account('bobKEEPOUT', 1, 1, '9999', 0, 'B-KEEPOUT-1', 'S-KEEPOUT-b', '');
SELECT authsetting.admin_add_account('mallory', 1, 1, '9999', 0, 'M-1', 'secret of M-1', '');
SELECT authsetting.admin_add_account('mallory', 1, 1, '9999', 0, 'M-2', 'secret of M-2', '');
SELECT authsetting.admin_add_sub_account(1, '9999', 0, 'A-KEEPOUT-7', 1, '9999', 0, 'A-KEEPOUT-8');
SQL
}

# The part after "key" of the first result of a burst.
reference_in() {
    sed -n 's/.*"reference": "\([0-9a-f]*\)".*/\1/p'
}
