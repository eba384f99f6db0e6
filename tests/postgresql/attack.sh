#!/usr/bin/env bash
# Runs every attempt of attack.sql as a hostile user with his own login. Each must end exactly as
# it says, must not show a single text of somebody else, and must leave everything that is not the
# attacker's as it was; the same statement must work for whom it is right, so that it is not refused
# for a mistake in it. Run by with-postgresql.sh; an argument runs only the attempts whose title
# contains it.
set -euo pipefail
# shellcheck source=tests/postgresql/store-fixture.sh
. "$(dirname "${BASH_SOURCE[0]}")/store-fixture.sh"
new_store
work=$(mktemp -d)
trap 'rm -rf "$work"; kill $(jobs -p) 2>/dev/null || true' EXIT

# What there is to be stolen: grants of all kinds, audit entries, results of requests, a session.
alice_request=$(cat /proc/sys/kernel/random/uuid)
alice_export=$(cat /proc/sys/kernel/random/uuid)
server_grant=$(run_as aliceKEEPOUT "[$(grant bobKEEPOUT A-KEEPOUT-1 true)]" "$alice_request" | reference_in)
file_grant=$(run_as aliceKEEPOUT "[$(grant bobKEEPOUT A-KEEPOUT-2 false)]" | reference_in)
prepared_grant=$(run_as aliceKEEPOUT "[$(grant bobKEEPOUT A-KEEPOUT-3 false)]" | reference_in)
terms='"user":"bobKEEPOUT","first_day":"2026-03-01","last_day":"2026-04-30","ratio":0.5'
as aliceKEEPOUT -v ON_ERROR_STOP=1 -c "SELECT authsetting.commit_export('$alice_export', '[{\"reference\":\"$file_grant\",$(account A-KEEPOUT-2),$terms}]', false)" >"$work/export"
grep -q '"ok": true' "$work/export" || fail "export: $(cat "$work/export")"
as aliceKEEPOUT -c "SELECT * FROM authsetting.sign_in()" >/dev/null
run_as bobKEEPOUT "[$(grant aliceKEEPOUT B-KEEPOUT-1 true)]" >/dev/null
# Files of the attacker's own, so that he has something to lie about.
own_file=$(run_as mallory "[$(grant eve M-1 false)]" | reference_in)
admin -c "ANALYZE" >/dev/null
as aliceKEEPOUT -c "SELECT 'KEEPOUT in a query', pg_sleep(3600)" >/dev/null 2>&1 &
admin_connections() { admin -c "SELECT count(*) FROM pg_stat_activity WHERE usename = '$(login_of aliceKEEPOUT)' AND state = 'active'"; }
for _ in $(seq 200); do [ "$(admin_connections)" = 1 ] && break; sleep 0.05; done

variables=(
    -v "alice=$(login_of aliceKEEPOUT)" -v "bob=$(login_of bobKEEPOUT)" -v "carol=$(login_of carolKEEPOUT)"
    -v "mallory=$(login_of mallory)" -v "eve=$(login_of eve)"
    -v "alice_name=alice""KEEPOUT" -v "bob_name=bob""KEEPOUT" -v "carol_name=carol""KEEPOUT"
    -v "alice_request=$alice_request" -v "alice_export=$alice_export" -v "server_grant=$server_grant"
    -v "file_grant=$file_grant"
    -v "prepared_grant=$prepared_grant" -v "own_file=$own_file"
    -v "alice_id=$(admin -c "SELECT id FROM authsetting.users WHERE name = 'aliceKEEPOUT'")"
    -v "mallory_id=$(admin -c "SELECT id FROM authsetting.users WHERE name = 'mallory'")"
    -v "account_id=$(admin -c "SELECT id FROM authsetting.accounts WHERE account_number = 'A-KEEPOUT-1'")"
    -v "alice_pid=$(admin -c "SELECT pid FROM pg_stat_activity WHERE usename = '$(login_of aliceKEEPOUT)'")"
    -v "verifier=$(verifier_of stolen)")

# Everything that is not the attacker's, his accomplice's, or the request that he made of both, and
# every right in the database, as one checksum: asked of one session that stays open.
mkfifo "$work/ask" "$work/answer"
admin <"$work/ask" >"$work/answer" &
exec {ask}>"$work/ask" {answer}<"$work/answer"
fingerprint_query=$(tr '\n' ' ' <"$here/attack-fingerprint.sql")
fingerprint() {
    echo "$fingerprint_query" >&"$ask"
    read -r -t 60 -u "$answer" REPLY || fail "the administrator's session is gone"
}

attempts=0
failures=0
only=${1:-}

# One failed attempt does not hide the others.
complain() {
    echo "FAILED: $*" >&2
    failures=$((failures + 1))
}

# One attempt: title, expectation, who controls it, what he has to see, the statements.
attempt() {
    local title=$1 expectation=$2 controller=$3 controlled=$4 body=$5 code=0 state
    if [ -n "$only" ] && [[ $title != *"$only"* ]]; then
        return 0
    fi
    attempts=$((attempts + 1))
    printf '%s\n' "$body" >"$work/body.sql"
    as mallory -v ON_ERROR_STOP=1 "${variables[@]}" -f "$work/body.sql" >"$work/out" 2>"$work/err" || code=$?
    # The server quotes the attacker's own statement back to him.
    grep -vE '^(psql:.*)?(LINE [0-9]+:|STATEMENT:|QUERY:)' "$work/err" >"$work/said" || true
    if grep -q KEEPOUT "$work/out" "$work/said"; then
        cat "$work/out" "$work/said" >&2
        complain "$title: shows what is not the attacker's"
    fi
    state=$(sed -n 's/^.*\(ERROR\|FATAL\):  \([0-9A-Z]\{5\}\): .*/\2/p' "$work/err" | head -1)
    case $expectation in
    empty) [ $code = 0 ] && [ ! -s "$work/out" ] || complain "$title: expected no row, got: $(head -5 "$work/out" "$work/err")" ;;
    says\ *) [ $code = 0 ] && [ "$(cat "$work/out")" = "${expectation#says }" ] || complain "$title: expected '${expectation#says }', got: $(head -5 "$work/out" "$work/err")" ;;
    harmless) [ $code = 0 ] || complain "$title: $(head -5 "$work/err")" ;;
    *) [ "$state" = "$expectation" ] || complain "$title: expected $expectation, got: $(head -5 "$work/out" "$work/err")" ;;
    esac
    fingerprint
    [ "$REPLY" = "$before" ] || complain "$title: changed what is not the attacker's"
    before=$REPLY

    [ "$controller" != none ] || return 0
    { echo "BEGIN;"; printf '%s\n' "$body"; echo "ROLLBACK;"; } >"$work/control.sql"
    code=0
    if [ "$controller" = administrator ]; then
        admin "${variables[@]}" -v VERBOSITY=verbose -f "$work/control.sql" >"$work/out" 2>"$work/err" || code=$?
    else
        as "$controller" -v ON_ERROR_STOP=1 "${variables[@]}" -f "$work/control.sql" >"$work/out" 2>"$work/err" || code=$?
    fi
    [ $code = 0 ] || complain "$title: does not work for $controller either: $(head -5 "$work/err")"
    case $controlled in
    works) ;;
    shows) grep -q KEEPOUT "$work/out" || complain "$title: $controller does not see it either: $(head -5 "$work/out")" ;;
    *) [ "$(cat "$work/out")" = "$controlled" ] || complain "$title: $controller expected '$controlled', got: $(head -5 "$work/out")" ;;
    esac
}

fingerprint
before=$REPLY
tables=$(admin -c "SELECT string_agg(tablename, ' ' ORDER BY tablename) FROM pg_tables WHERE schemaname = 'authsetting'")
[ "$(wc -w <<<"$tables")" -ge 10 ] || fail "tables: $tables"
# A column of each table and a value that it could be given.
column_of() {
    admin -c "SELECT attname FROM pg_attribute WHERE attrelid = 'authsetting.$1'::regclass AND attnum > 0 AND attidentity = '' AND attgenerated = '' ORDER BY attnum LIMIT 1"
}

title='' expectation='' controller='' controlled='' each='' body=''
flush() {
    [ -n "$title" ] || return 0
    local table
    if [ -n "$each" ]; then
        for table in $tables; do
            attempt "$title ($table)" "$expectation" "$controller" "$controlled" \
                "$(sed "s/{table}/authsetting.$table/g; s/{column}/$(column_of "$table")/g" <<<"$body")"
        done
    else
        attempt "$title" "$expectation" "$controller" "$controlled" "$body"
    fi
    title=''
}
while IFS= read -r line || [ -n "$line" ]; do
    case $line in
    '--# '*) flush; title=${line#--# } expectation='' controller=none controlled=works each='' body='' ;;
    '--@ each table') each=yes ;;
    '--@ attacker: '*) expectation=${line#--@ attacker: } ;;
    '--@ control: '*) read -r _ _ controller controlled <<<"$line"; controlled=${controlled:-works} ;;
    *) [ -z "$title" ] || body+=$line$'\n' ;;
    esac
done <"$here/attack.sql"
flush

# Nobody but the system may call what is not for clients; what is for clients is exactly this.
if [ -z "$only" ]; then
    allowed=$(admin -c "SELECT string_agg(p.proname, ' ' ORDER BY p.proname) FROM pg_proc p WHERE p.pronamespace IN ('authsetting'::regnamespace, 'authsetting_accounts'::regnamespace) AND has_function_privilege('$(login_of mallory)', p.oid, 'EXECUTE')")
    [ "$allowed" = "commit_export create_sub_user end_sub_user_connections my_version read_audit read_environment read_model revert_export run_requests settle sign_in" ] ||
        fail "a client may call: $allowed"
    [ "$(admin -c "SELECT count(*) FROM pg_proc p WHERE p.pronamespace IN ('authsetting'::regnamespace, 'authsetting_accounts'::regnamespace) AND (p.proacl IS NULL OR p.proacl::text ~ '[{,]=')")" = 0 ] || fail "a function is open to everybody"
    [ "$(admin -c "SELECT count(*) FROM pg_proc p WHERE p.pronamespace IN ('authsetting'::regnamespace, 'authsetting_accounts'::regnamespace) AND p.prosecdef AND NOT (coalesce(p.proconfig::text, '') ~ 'search_path=pg_catalog,')")" = 0 ] || fail "a function with its owner's rights has no fixed search_path"
    while read -r call; do
        attempt "call $call" 42501 none works "SELECT $call;"
    done < <(admin -c "SELECT p.oid::regproc || '(' || coalesce((SELECT string_agg('NULL::' || format_type(t.oid, NULL), ', ' ORDER BY t.ord) FROM unnest(p.proargtypes) WITH ORDINALITY AS t (oid, ord)), '') || ')' FROM pg_proc p WHERE p.pronamespace IN ('authsetting'::regnamespace, 'authsetting_accounts'::regnamespace) AND p.prorettype <> 'trigger'::regtype AND NOT has_function_privilege('$(login_of mallory)', p.oid, 'EXECUTE')")

    # Had he the right to call the functions that change logins, they would still refuse.
    for call in "create_login('carolKEEPOUT', :'verifier')" "set_login_enabled('carolKEEPOUT', false)" \
        "set_login_password('bobKEEPOUT', :'verifier')" "end_connections('aliceKEEPOUT')" "set_login_enabled('postgres', false)" \
        "set_login_password('postgres', :'verifier')" "set_login_enabled('mallory', false)"; do
        admin "${variables[@]}" -v VERBOSITY=verbose >"$work/out" 2>&1 <<SQL && fail "$call worked"
BEGIN;
GRANT USAGE ON SCHEMA authsetting_accounts TO authsetting_user;
GRANT EXECUTE ON ALL FUNCTIONS IN SCHEMA authsetting_accounts TO authsetting_user;
SET SESSION AUTHORIZATION :"mallory";
SELECT authsetting_accounts.$call;
SQL
        grep -q '42501: not a sub-user of the caller' "$work/out" || fail "$call: $(cat "$work/out")"
    done

    # Nobody rewrites the audit trail, not even its owner or a superuser.
    for role in authsetting_owner postgres; do
        for statement in "UPDATE authsetting.audit_trail SET error = ''" "DELETE FROM authsetting.audit_trail" \
            "TRUNCATE authsetting.audit_trail" "UPDATE authsetting.audit_trail SET error = '' WHERE false" \
            "SET session_replication_role = replica; DELETE FROM authsetting.audit_trail"; do
            admin -v VERBOSITY=verbose -c "BEGIN" -c "$([[ $statement == SET* ]] || echo "SET LOCAL ROLE $role")" -c "$statement" >"$work/out" 2>&1 &&
                fail "$role: $statement worked"
            grep -q '42501: the audit trail is append-only' "$work/out" || fail "$role: $statement: $(cat "$work/out")"
        done
    done

    # Who is to receive a file sees nothing of it before he has redeemed it.
    [ "$(as bobKEEPOUT -c "SELECT account_number, account_private FROM authsetting.read_model(-1) WHERE side = 2")" = "A-KEEPOUT-1|S-KEEPOUT-1" ] ||
        fail "received: $(as bobKEEPOUT -c "SELECT * FROM authsetting.read_model(-1)")"
    [ "$(as bobKEEPOUT -c "SELECT count(*) FROM authsetting.read_model(0) WHERE side = 2 AND account_number IN ('A-KEEPOUT-2', 'A-KEEPOUT-3')")" = 0 ] || fail "an unredeemed file shows"
    [ -z "$(admin -c "SELECT * FROM authsetting.admin_verify()")" ] || fail "verify: $(admin -c "SELECT * FROM authsetting.admin_verify()")"

    # A hint about a change says nothing: no payload, and the same channel for everybody.
    { echo "LISTEN authsetting_changed;"; for _ in $(seq 40); do sleep 0.1; echo "SELECT 1;"; done; } |
        as mallory >"$work/heard" 2>&1 &
    listener=$!
    for _ in $(seq 100); do [ -s "$work/heard" ] && break; sleep 0.05; done
    run_as bobKEEPOUT "[{\"kind\":\"cancel\",\"user\":\"aliceKEEPOUT\",$(account B-KEEPOUT-1)}]" >/dev/null
    wait "$listener"
    [ "$(grep -c '^Asynchronous notification "authsetting_changed" received from server process with PID [0-9]*\.$' "$work/heard")" = 1 ] ||
        fail "heard: $(grep -v '^1$' "$work/heard")"
fi
[ "$attempts" -gt 0 ] || fail "no attempt ran"
[ "$failures" = 0 ] || fail "$failures complaints about $attempts attempts"
echo "attack: $attempts attempts got nothing"
