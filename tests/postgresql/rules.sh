#!/usr/bin/env bash
# What the server decides about requests, alone and among others of their burst, day by day. Run by
# with-postgresql.sh.
set -euo pipefail
# shellcheck source=tests/postgresql/store-fixture.sh
. "$(dirname "${BASH_SOURCE[0]}")/store-fixture.sh"
new_store
# A quarter to midnight and a quarter past it in the exchange time zone, on the same day in UTC.
evening='2026-03-02 15:45:00+00'
night='2026-03-02 16:15:00+00'

expect() {
    [ "$2" = "$3" ] || fail "$1: expected '$2', got '$3'"
}
clock() {
    admin -c "UPDATE authsetting.settings SET test_now = '$1'"
}
# The results of a burst: ok or the code of each, separated by blanks.
verdicts() {
    as "$1" -v ON_ERROR_STOP=1 -v "requests=$2" <<'SQL'
SELECT string_agg(CASE WHEN (r -> 'ok')::boolean THEN 'ok'
                       WHEN r ? 'grants' THEN (SELECT string_agg(coalesce(g ->> 'error_code', 'ok'), '+')
                                               FROM jsonb_array_elements(r -> 'grants') AS g)
                       ELSE r ->> 'error_code' END, ' ' ORDER BY ord)
FROM jsonb_array_elements(authsetting.run_requests(gen_random_uuid(), :'requests') -> 'results')
     WITH ORDINALITY AS x (r, ord);
SQL
}
# add <grantee> <account> [server|file] [first] [last] [ratio]
add() {
    printf '{"kind":"add","user":"%s",%s,"first_day":"%s","last_day":"%s","ratio":%s,"on_server":%s}' \
        "$1" "$(account "$2")" "${4:-2026-03-01}" "${5:-2026-04-30}" "${6:-null}" \
        "$([ "${3:-server}" = server ] && echo true || echo false)"
}
cancel() {
    printf '{"kind":"cancel","user":"%s",%s}' "$1" "$(account "$2")"
}
# States of an account's grants, oldest first.
states() {
    admin -c "SELECT string_agg(state || CASE WHEN redeemed THEN 'r' ELSE '' END, ' ') FROM authsetting.admin_grants() WHERE account_number = '$1'"
}
A=aliceKEEPOUT B=bobKEEPOUT C=carolKEEPOUT
clock "$evening"

# One rule each, and which comes first.
expect "no such account" account_missing "$(verdicts $A "[$(add nobody A-KEEPOUT-77)]")"
expect "another's account" account_missing "$(verdicts $A "[$(add $B B-KEEPOUT-1)]")"
expect "sub-account" account_is_sub "$(verdicts $A "[$(add nobody A-KEEPOUT-8)]")"
expect "account with sub-accounts" account_has_subs "$(verdicts $A "[$(add nobody A-KEEPOUT-7)]")"
expect "unknown grantee" user_missing "$(verdicts $A "[$(add nobody A-KEEPOUT-1 server 2026-05-01 2026-04-01)]")"
expect "oneself" user_is_self "$(verdicts $A "[$(add $A A-KEEPOUT-1)]")"
expect "inverted days" days_inverted "$(verdicts $A "[$(add $B A-KEEPOUT-1 server 2026-01-02 2026-01-01 7)]")"
expect "past days" days_past "$(verdicts $A "[$(add $B A-KEEPOUT-1 server 2026-01-01 2026-03-01 7)]")"
expect "ratios" "ratio_invalid ratio_invalid ratio_invalid ratio_invalid" "$(verdicts $A "[$(add $B A-KEEPOUT-1 server 2026-03-01 2026-03-05 0),$(add $B A-KEEPOUT-1 server 2026-03-01 2026-03-05 -0.5),$(add $B A-KEEPOUT-1 server 2026-03-01 2026-03-05 1.0001),$(add $B A-KEEPOUT-1 server 2026-03-01 2026-03-05 '"NaN"')]")"
expect "grants after refusals" "" "$(states A-KEEPOUT-1)"
expect "whole ratio, until today" "ok ok" "$(verdicts $A "[$(add $B A-KEEPOUT-1 server 2026-03-01 2026-03-02 1),$(add $C A-KEEPOUT-2)]")"
expect "granted already" account_granted "$(verdicts $A "[$(add nobody A-KEEPOUT-1 file)]")"

# Among others of their burst.
expect "same account twice" "days_past ok account_granted account_granted" "$(verdicts $A "[$(add $B A-KEEPOUT-3 server 2026-01-01 2026-01-02),$(add $B A-KEEPOUT-3),$(add $C A-KEEPOUT-3),$(add nobody A-KEEPOUT-3 file)]")"
expect "same account twice, states" 2 "$(states A-KEEPOUT-3)"
expect "prepared twice" "ok ok" "$(verdicts $A "[$(add $B A-KEEPOUT-4 file),$(add $C A-KEEPOUT-4 file)]")"
expect "prepared twice, states" 1 "$(states A-KEEPOUT-4)"
expect "prepared twice, grantee" $C "$(admin -c "SELECT grantee FROM authsetting.admin_grants() WHERE account_number = 'A-KEEPOUT-4'")"
expect "prepared once more" ok "$(verdicts $A "[$(add $B A-KEEPOUT-4 file)]")"
expect "prepared once more, grantee" $B "$(admin -c "SELECT grantee FROM authsetting.admin_grants() WHERE account_number = 'A-KEEPOUT-4'")"
expect "prepared, then on the server" "ok ok account_granted" "$(verdicts $A "[$(add $B A-KEEPOUT-5 file),$(add $B A-KEEPOUT-5),$(add $B A-KEEPOUT-5 file)]")"
expect "prepared, then on the server, states" "2" "$(states A-KEEPOUT-5 | tr ' ' '\n' | grep -c '[12]')"
expect "cancelling" "granted_to_other ok not_granted not_granted account_missing" "$(verdicts $A "[$(cancel $C A-KEEPOUT-5),$(cancel $B A-KEEPOUT-5),$(cancel $B A-KEEPOUT-5),$(cancel $C A-KEEPOUT-5),$(cancel $B B-KEEPOUT-1)]")"
expect "in order" "ok ok ok account_granted ok ok" "$(verdicts $A "[$(cancel $B A-KEEPOUT-3),$(add $C A-KEEPOUT-3),{\"kind\":\"check\",\"user\":\"$B\"},$(add $B A-KEEPOUT-3),$(cancel $C A-KEEPOUT-3),$(add $B A-KEEPOUT-3)]")"
expect "in order, states" "3 3 2" "$(states A-KEEPOUT-3)"
expect "a long mixed burst" "600 600" "$(as $A -c "SELECT count(*) || ' ' || count(*) FILTER (WHERE (r -> 'ok')::boolean) FROM jsonb_array_elements(authsetting.run_requests(gen_random_uuid(), (SELECT jsonb_agg(CASE WHEN i % 2 = 0 THEN '$(add $B A-KEEPOUT-6)'::jsonb ELSE '$(cancel $B A-KEEPOUT-6)'::jsonb END ORDER BY i) FROM generate_series(0, 599) AS i)) -> 'results') AS r")"
expect "checking" "ok user_missing user_is_self request_invalid" "$(verdicts $A "[{\"kind\":\"check\",\"user\":\"$B\"},{\"kind\":\"check\",\"user\":\"nobody\"},{\"kind\":\"check\",\"user\":\"$A\"},{\"kind\":\"what\"}]")"

# What the two sides read, and what of it later.
version() {
    as "$1" -c "SELECT version FROM authsetting.my_version()"
}
# The changed rows since a version: side, account, other, current.
changes() {
    as "$1" -c "SELECT string_agg(concat_ws('/', side, account_number, other_name, is_current), ' ' ORDER BY side, account_number) FROM authsetting.read_model($2) WHERE side IN (1, 2)"
}
before=$(version $A) seen=$(version $B)
expect "nothing new" "" "$(changes $A "$before")"
expect "later first day" ok "$(verdicts $A "[$(add $B A-KEEPOUT-5 server 2026-03-03 2026-03-04)]")"
expect "changed for the grantor" "1/A-KEEPOUT-5/$B/t" "$(changes $A "$before")"
expect "changed for the grantee" "2/A-KEEPOUT-5/$A/t" "$(changes $B "$seen")"
expect "secret before the first day" "|2026-03-02" "$(as $B -c "SELECT m.account_private, v.today FROM authsetting.read_model(-1) AS m, authsetting.my_version() AS v WHERE m.account_number = 'A-KEEPOUT-5'")"
clock "$night"
expect "secret from the first day on" "S-KEEPOUT-5|2026-03-03" "$(as $B -c "SELECT m.account_private, v.today FROM authsetting.read_model(-1) AS m, authsetting.my_version() AS v WHERE m.account_number = 'A-KEEPOUT-5'")"

# Midnight of the exchange ended the first grant: nobody sees it, and the next change says so.
expect "ended, before it is written" "2" "$(states A-KEEPOUT-1)"
expect "ended, for the grantor" "t|" "$(as $A -c "SELECT (SELECT has_overdue FROM authsetting.read_model(-1) WHERE side = 0), (SELECT reference FROM authsetting.read_model(-1) WHERE account_number = 'A-KEEPOUT-1')")"
expect "ended, for the grantee" 0 "$(as $B -c "SELECT count(*) FROM authsetting.read_model(-1) WHERE account_number = 'A-KEEPOUT-1'")"
before=$(version $A) seen=$(version $B)
expect "granted anew at once" ok "$(verdicts $A "[$(add $C A-KEEPOUT-1)]")"
expect "ended and granted anew" "4 2" "$(states A-KEEPOUT-1)"
expect "entry of the end" "||expire|A-KEEPOUT-1|2026-03-01|2026-03-02|" "$(admin -c "SELECT actor_id, ratio, action, a.account_number, first_day, last_day, error FROM authsetting.audit_trail AS t JOIN authsetting.accounts AS a ON a.id = t.account_id WHERE action = 'expire'")"
expect "end told to the grantee" "2/f" "$(changes $B "$seen")"
clock '2026-03-10 02:00:00+00'
as eve -c "SELECT authsetting.settle()" >/dev/null
expect "settled by anybody" "3 4" "$(states A-KEEPOUT-5 | sed 's/^1 //')"

# Files: written all or none, redeemed once and by one.
terms="\"first_day\":\"2026-03-01\",\"last_day\":\"2026-04-30\",\"ratio\":null"
reference() {
    admin -c "SELECT reference FROM authsetting.admin_grants() WHERE account_number = '$1' AND state = 1"
}
file_of() {
    printf '{"reference":"%s",%s,"user":"%s",%s}' "$2" "$(account "$1")" "${3:-$B}" "$terms"
}
# ok or the code and index; then how many changed.
exported() {
    as "$1" -c "SELECT concat_ws(' ', coalesce(r ->> 'error_code', 'ok'), r ->> 'index', jsonb_array_length(r -> 'changed')) FROM (SELECT authsetting.commit_export('${4:-$(cat /proc/sys/kernel/random/uuid)}', '[$2]', ${3:-false}) AS r) AS s"
}
redeem() {
    printf '[{"kind":"redeem","grants":[{"reference":"%s",%s}]}]' "$2" "$(account "$1")"
}
expect "another file" "ok ok" "$(verdicts $A "[$(add $B A-KEEPOUT-4 file),$(cancel $B A-KEEPOUT-6 | sed 's/cancel/check/')]")"
four=$(reference A-KEEPOUT-4)
expect "not yet written" not_effective "$(verdicts $B "$(redeem A-KEEPOUT-4 "$four")")"
expect "other grantee" "altered 0" "$(exported $A "$(file_of A-KEEPOUT-4 "$four" $C)")"
expect "other account" "altered 0" "$(exported $A "$(file_of A-KEEPOUT-3 "$four")")"
expect "other ratio" "altered 0" "$(exported $A "$(file_of A-KEEPOUT-4 "$four" | sed 's/"ratio":null/"ratio":0.5/')")"
expect "all or none" "reference_missing 1" "$(exported $A "$(file_of A-KEEPOUT-4 "$four"),$(file_of A-KEEPOUT-4 00000000000000000000000000000000)")"
expect "still prepared" 1 "$(states A-KEEPOUT-4)"
expect "twice in a file" "not_prepared 1" "$(exported $A "$(file_of A-KEEPOUT-4 "$four"),$(file_of A-KEEPOUT-4 "$four")")"
id=$(cat /proc/sys/kernel/random/uuid)
expect "written" "ok 1" "$(exported $A "$(file_of A-KEEPOUT-4 "$four")" false "$id")"
expect "written, reply lost" "ok 1" "$(exported $A "$(file_of A-KEEPOUT-4 "$four")" false "$id")"
expect "written before" "not_prepared 0" "$(exported $A "$(file_of A-KEEPOUT-4 "$four")")"
expect "written again" "ok 0" "$(exported $A "$(file_of A-KEEPOUT-4 "$four")" true)"
as $A -c "SELECT authsetting.revert_export('{$four}')" >/dev/null
expect "taken back" 1 "$(states A-KEEPOUT-4)"
expect "written after all" "ok 1" "$(exported $A "$(file_of A-KEEPOUT-4 "$four")")"
expect "not seen before redeeming" 0 "$(as $B -c "SELECT count(*) FROM authsetting.read_model(-1) WHERE account_number = 'A-KEEPOUT-4'")"
expect "other account in the file" altered "$(verdicts $B "$(redeem A-KEEPOUT-3 "$four")")"
seen=$(version $B)
expect "redeemed" ok "$(verdicts $B "$(redeem A-KEEPOUT-4 "$four")")"
expect "seen after redeeming" "2/A-KEEPOUT-4/$A/t" "$(changes $B "$seen")"
expect "redeemed again" redeemed_already "$(verdicts $B "$(redeem A-KEEPOUT-4 "$four")")"
as $A -c "SELECT authsetting.revert_export('{$four}')" >/dev/null
expect "too late to take back" 2r "$(states A-KEEPOUT-4)"
expect "cancelled" ok "$(verdicts $A "[$(cancel $B A-KEEPOUT-4)]")"
expect "redeemed after cancelling" cancelled "$(verdicts $B "$(redeem A-KEEPOUT-4 "$four")")"
expect "gone for the grantee" "2/f" "$(changes $B "$seen")"

# Sub-users: a password that could not be set keeps its user disabled.
enable() {
    printf '{"kind":"enable","user":"%s","enabled":%s,"password_failed":%s}' "$1" "$2" "${3:-false}"
}
password() {
    printf '{"kind":"password","user":"%s","verifier":"%s"}' "$1" "$2"
}
good=$(verifier_of $C)
expect "disabled" "ok" "$(verdicts $A "[$(enable $C false)]")"
expect "disabled grantee" "user_disabled" "$(verdicts $A "[$(add $C A-KEEPOUT-4)]")"
expect "bad password, then enabled" "verifier_invalid password_not_set" "$(verdicts $A "[$(password $C clear),$(enable $C true)]")"
expect "bad password before, then enabled" "password_not_set" "$(verdicts $A "[$(enable $C true true)]")"
expect "login meanwhile" f "$(admin -c "SELECT rolcanlogin FROM pg_roles WHERE rolname = '$(login_of $C)'")"
expect "good password after a bad one" "verifier_invalid ok ok" "$(verdicts $A "[$(password $C clear),$(password $C "$good"),$(enable $C true)]")"
expect "enabled" 1 "$(as $C -c "SELECT 1")"
expect "another's sub-user" "sub_user_missing sub_user_missing" "$(verdicts mallory "[$(enable $C false),$(password $C "$good")]")"
expect "new sub-user" "" "$(as mallory -c "SELECT authsetting.create_sub_user('newcomer', '$(verifier_of newcomer)')")"
expect "new sub-user signs in" newcomer "$(as newcomer -c "SELECT user_name FROM authsetting.sign_in()")"
expect "new sub-user of a sub-user" not_allowed "$(as newcomer -c "SELECT authsetting.create_sub_user('another', '$good')")"
expect "sub-users in their order" "eve newcomer" "$(as mallory -c "SELECT string_agg(other_name, ' ') FROM authsetting.read_model(-1) WHERE side = 3")"

# Somebody who is disabled while he is signed in gets nothing more.
expect "disabled caller" "caller_disabled|caller_disabled|1|0" "$(admin <<SQL
UPDATE authsetting.users SET enabled = false WHERE name = 'bobKEEPOUT';
SET SESSION AUTHORIZATION "$(login_of $B)";
SELECT authsetting.run_requests(gen_random_uuid(), '[$(cancel $A B-KEEPOUT-1)]') -> 'results' -> 0 ->> 'error_code',
       authsetting.commit_export(gen_random_uuid(), '[]', false) ->> 'error_code',
       (SELECT count(*) FROM authsetting.read_model(-1)), (SELECT count(*) FROM authsetting.read_audit(10));
SQL
)"
expect "login out of step is found" "login_state|1" "$(admin -c "SELECT * FROM authsetting.admin_verify()")"
admin -c "SELECT authsetting.admin_set_enabled('bobKEEPOUT', true)" >/dev/null
expect "sound" "" "$(admin -c "SELECT * FROM authsetting.admin_verify()")"

# The trail shows each what concerns him.
expect "entries of the grantee" "cancel redeem" "$(as $B -c "SELECT string_agg(DISTINCT action, ' ') FROM authsetting.read_audit(3) WHERE action IN ('cancel', 'redeem')")"
expect "preparing stays with the grantor" 0 "$(as $B -c "SELECT count(*) FROM authsetting.read_audit(1000) WHERE action = 'prepare'")"
expect "refusals stay with the caller" 0 "$(as $B -c "SELECT count(*) FROM authsetting.read_audit(1000) WHERE NOT ok AND actor <> '$B'")"
expect "numbers without gaps" "t" "$(as $B -c "SELECT max(id) = count(*) AND min(id) = 1 FROM authsetting.read_audit(1000)")"
echo "rules: passed"
