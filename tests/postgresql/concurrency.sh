#!/usr/bin/env bash
# Two and more sessions at the same moment: who wins, who waits, who reads why. Run by
# with-postgresql.sh.
set -euo pipefail
# shellcheck source=tests/postgresql/store-fixture.sh
. "$(dirname "${BASH_SOURCE[0]}")/store-fixture.sh"
new_store
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

expect() {
    [ "$2" = "$3" ] || fail "$1: expected '$2', got '$3'"
}

# Waits until so many sessions wait for a lock.
await_waiting() {
    for _ in $(seq 200); do
        [ "$(admin -c "SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock'")" -ge "$1" ] && return 0
        sleep 0.05
    done
    fail "nobody waits"
}

# A session that does one call, says so, and ends the transaction when told to:
# hold <name> <user> <SQL with its answer> ; release <name> COMMIT
hold() {
    mkfifo "$work/$1.in"
    as "$2" -v ON_ERROR_STOP=1 <"$work/$1.in" >"$work/$1.out" 2>&1 &
    eval "exec {fd_$1}>\"$work/$1.in\""
    local fd="fd_$1"
    printf 'BEGIN;\n%s;\n' "$3" >&"${!fd}"
    for _ in $(seq 200); do
        [ -s "$work/$1.out" ] && return 0
        sleep 0.05
    done
    fail "session $1 does not answer"
}
release() {
    local fd="fd_$1"
    printf '%s;\n' "$2" >&"${!fd}"
    eval "exec ${!fd}>&-"
}

# Two desks grant the same account: the first to come has it, the second waits and reads why not.
hold first aliceKEEPOUT "SELECT authsetting.run_requests(gen_random_uuid(), '[$(grant bobKEEPOUT A-KEEPOUT-1 true)]')->'results'->0->>'ok'"
run_as aliceKEEPOUT "[$(grant mallory A-KEEPOUT-1 true)]" >"$work/second" &
second=$!
await_waiting 1
[ ! -s "$work/second" ] || fail "the second desk did not wait"
release first COMMIT
wait "$second"
expect "first desk" true "$(cat "$work/first.out")"
grep -q '"error_code": "account_granted"' "$work/second" || fail "second desk: $(cat "$work/second")"
expect "grants of the account" 1 "$(admin -c "SELECT count(*) FROM authsetting.admin_grants() WHERE account_number = 'A-KEEPOUT-1'")"

# When the first gives up instead, the second has the account.
hold third aliceKEEPOUT "SELECT authsetting.run_requests(gen_random_uuid(), '[$(grant bobKEEPOUT A-KEEPOUT-2 true)]')->'results'->0->>'ok'"
run_as aliceKEEPOUT "[$(grant mallory A-KEEPOUT-2 true)]" >"$work/fourth" &
fourth=$!
await_waiting 1
release third ROLLBACK
wait "$fourth"
grep -q '"ok": true' "$work/fourth" || fail "after a rollback: $(cat "$work/fourth")"
expect "grantee after a rollback" mallory "$(admin -c "SELECT grantee FROM authsetting.admin_grants() WHERE account_number = 'A-KEEPOUT-2'")"

# A retry while the first attempt still runs waits for it and finds its result.
id=$(cat /proc/sys/kernel/random/uuid)
hold fifth aliceKEEPOUT "SELECT authsetting.run_requests('$id', '[$(grant bobKEEPOUT A-KEEPOUT-3 true)]')"
run_as aliceKEEPOUT "[$(grant bobKEEPOUT A-KEEPOUT-3 true)]" "$id" >"$work/sixth" &
sixth=$!
await_waiting 1
release fifth COMMIT
wait "$sixth"
expect "result of a retry" "$(cat "$work/fifth.out")" "$(cat "$work/sixth")"
grep -q '"ok": true' "$work/sixth" || fail "retry: $(cat "$work/sixth")"
expect "grants after a retry" 1 "$(admin -c "SELECT count(*) FROM authsetting.admin_grants() WHERE account_number = 'A-KEEPOUT-3'")"
expect "audit after a retry" 1 "$(admin -c "SELECT count(*) FROM authsetting.audit_trail WHERE action = 'grant' AND error = '' AND account_id = authsetting.admin_account_id(1, '9999', 0, 'A-KEEPOUT-3')")"
# Another user's identical identifier is a request of its own.
run_as mallory "[$(grant eve M-1 true)]" "$id" >"$work/other"
[ "$(reference_in <"$work/other")" != "$(reference_in <"$work/sixth")" ] || fail "one user read another's result"

# A file is redeemed once, however many try at the same moment.
prepared=$(run_as aliceKEEPOUT "[$(grant bobKEEPOUT A-KEEPOUT-4 false)]" | reference_in)
file="{\"reference\":\"$prepared\",$(account A-KEEPOUT-4)"
as aliceKEEPOUT -v ON_ERROR_STOP=1 -c "SELECT authsetting.commit_export(gen_random_uuid(), '[$file,\"user\":\"bobKEEPOUT\",\"first_day\":\"2026-03-01\",\"last_day\":\"2026-04-30\",\"ratio\":0.5}]', false)" >"$work/export"
grep -q '"ok": true' "$work/export" || fail "export: $(cat "$work/export")"
jobs_of_redeem=()
for i in 1 2 3 4 5 6; do
    run_as bobKEEPOUT "[{\"kind\":\"redeem\",\"grants\":[$file}]}]" >"$work/redeem.$i" &
    jobs_of_redeem+=($!)
done
for job in "${jobs_of_redeem[@]}"; do wait "$job"; done
expect "redeemed" 1 "$(cat "$work"/redeem.? | grep -c '"secret": "S-KEEPOUT-4"')"
expect "redeemed already" 5 "$(cat "$work"/redeem.? | grep -c '"error_code": "redeemed_already"')"

# The file's maker takes it back while it is being redeemed: one of the two happens, not both.
prepared=$(run_as aliceKEEPOUT "[$(grant bobKEEPOUT A-KEEPOUT-5 false)]" | reference_in)
file="{\"reference\":\"$prepared\",$(account A-KEEPOUT-5)"
as aliceKEEPOUT -v ON_ERROR_STOP=1 -c "SELECT authsetting.commit_export(gen_random_uuid(), '[$file,\"user\":\"bobKEEPOUT\",\"first_day\":\"2026-03-01\",\"last_day\":\"2026-04-30\",\"ratio\":0.5}]', false)" >/dev/null
hold seventh bobKEEPOUT "SELECT authsetting.run_requests(gen_random_uuid(), '[{\"kind\":\"redeem\",\"grants\":[$file}]}]')->'results'->0->>'ok'"
as aliceKEEPOUT -v ON_ERROR_STOP=1 -c "SELECT authsetting.revert_export('{$prepared}')" >/dev/null &
revert=$!
await_waiting 1
release seventh COMMIT
wait "$revert"
expect "redeemed before taken back" true "$(cat "$work/seventh.out")"
expect "state after both" "2|t" "$(admin -c "SELECT state, redeemed FROM authsetting.admin_grants() WHERE reference = '$prepared'")"

# Users who grant to each other at the same time wait for each other and never block each other.
crossing() {
    local i
    for i in $(seq 25); do
        run_as "$1" "[$(grant "$2" "$3" true),{\"kind\":\"cancel\",\"user\":\"$2\",$(account "$3")}]" || return 1
    done
}
crossing aliceKEEPOUT bobKEEPOUT A-KEEPOUT-6 >"$work/cross.1" 2>&1 &
one=$!
crossing bobKEEPOUT aliceKEEPOUT B-KEEPOUT-1 >"$work/cross.2" 2>&1 &
two=$!
crossing mallory bobKEEPOUT M-2 >"$work/cross.3" 2>&1 &
three=$!
for job in $one $two $three; do wait "$job" || fail "crossing grants: $(cat "$work"/cross.?)"; done
expect "crossing grants" 75 "$(cat "$work"/cross.? | grep -c '"ok": true.*"ok": true')"

# Who keeps a transaction open makes another wait, but not for long, and changes nothing of his.
hold eighth mallory "SELECT authsetting.run_requests(gen_random_uuid(), '[$(grant aliceKEEPOUT M-2 true)]')->'results'->0->>'ok'"
started=$SECONDS
run_as aliceKEEPOUT "[$(grant bobKEEPOUT A-KEEPOUT-6 true)]" >"$work/ninth" 2>&1 && fail "nobody waited"
grep -q 'ERROR:  55P03' "$work/ninth" || fail "waiting: $(cat "$work/ninth")"
[ $((SECONDS - started)) -le 12 ] || fail "waited for $((SECONDS - started)) s"
expect "reading meanwhile" 8 "$(as aliceKEEPOUT -c "SELECT count(*) FROM authsetting.read_model(-1) WHERE side = 1")"
release eighth ROLLBACK
run_as aliceKEEPOUT "[$(grant bobKEEPOUT A-KEEPOUT-6 true)]" >"$work/ninth" 2>&1
grep -q '"ok": true' "$work/ninth" || fail "after waiting: $(cat "$work/ninth")"

# A sub-user who is signed in loses the connection when he is disabled, and cannot come back.
hold carol carolKEEPOUT "SELECT 1"
run_as aliceKEEPOUT '[{"kind":"enable","user":"carolKEEPOUT","enabled":false}]' >"$work/disable"
grep -q '"ok": true' "$work/disable" || fail "disable: $(cat "$work/disable")"
for _ in $(seq 200); do
    left=$(admin -c "SELECT count(*) FROM pg_stat_activity WHERE usename = '$(login_of carolKEEPOUT)'")
    [ "$left" = 0 ] && break
    sleep 0.05
done
expect "connections of a disabled sub-user" 0 "$left"
as carolKEEPOUT -c "SELECT 1" >"$work/refused" 2>&1 && fail "a disabled sub-user signed in"
grep -q 'is not permitted to log in' "$work/refused" || fail "refusal: $(cat "$work/refused")"
run_as aliceKEEPOUT '[{"kind":"enable","user":"carolKEEPOUT","enabled":true}]' >/dev/null
expect "enabled again" 1 "$(as carolKEEPOUT -c "SELECT 1")"
# A new password replaces the old one; both go as verifiers.
run_as aliceKEEPOUT "[{\"kind\":\"password\",\"user\":\"carolKEEPOUT\",\"verifier\":\"$(verifier_of someoneelse)\"}]" >"$work/password"
grep -q '"ok": true' "$work/password" || fail "password: $(cat "$work/password")"
as carolKEEPOUT -c "SELECT 1" >"$work/refused" 2>&1 && fail "the old password still holds"
grep -q 'password authentication failed' "$work/refused" || fail "old password: $(cat "$work/refused")"
expect "new password" 1 "$(PGUSER=$(login_of carolKEEPOUT) PGPASSWORD=$(digest_of someoneelse) psql -X -q -At -d "$store" -c "SELECT 1")"

# What happened and what is there agree.
expect "problems" "" "$(admin -c "SELECT * FROM authsetting.admin_verify()")"
expect "current grants by the audit trail" "0" "$(admin <<'SQL'
SELECT count(*) FROM authsetting.accounts AS a
WHERE (SELECT count(*) FROM authsetting.grants AS g WHERE g.account_id = a.id AND g.state = 2)
   <> (SELECT count(*) FILTER (WHERE t.action IN ('grant', 'export'))
            - count(*) FILTER (WHERE t.action IN ('cancel', 'expire'))
       FROM authsetting.audit_trail AS t WHERE t.account_id = a.id AND t.error = '');
SQL
)"
echo "concurrency: passed"
