-- name: grants.next_id
SELECT COALESCE(MAX(id), 0) + 1 FROM grants
-- name: grants.insert
INSERT INTO grants (id, reference, grantor_id, grantee_id, account_id, first_day, last_day, ratio,
                    source, state, created_at)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
-- name: grants.insert_whole
INSERT INTO grants (id, reference, grantor_id, grantee_id, account_id, first_day, last_day, ratio,
                    source, state, created_at, ended_at, redeemed_at)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
-- name: grants.forget_prepared
DELETE FROM grants WHERE account_id = ? AND state = 1
-- name: grants.end
UPDATE grants SET state = ?, ended_at = ? WHERE id = ? AND state = 2
-- name: grants.make_current
UPDATE grants SET state = 2 WHERE id = ? AND state = 1
-- name: grants.take_back
UPDATE grants SET state = 1 WHERE id = ? AND state = 2 AND redeemed_at IS NULL
-- name: grants.redeem
UPDATE grants SET redeemed_at = ? WHERE id = ? AND state = 2 AND redeemed_at IS NULL
-- name: grants.by_reference
SELECT g.id, g.grantor_id, g.grantee_id, g.account_id, g.first_day, g.last_day, g.ratio, g.source,
       g.state, g.redeemed_at, a.owner_id, a.platform_id, a.broker_id, a.account_sub_type,
       a.account_number, a.account_private, u.name, u.enabled
FROM grants g
JOIN accounts a ON a.id = g.account_id
JOIN users u ON u.id = g.grantee_id
WHERE g.reference = ?
-- name: grants.overdue
SELECT id, grantor_id, grantee_id, account_id, first_day, last_day
FROM grants
WHERE state = 2 AND last_day < ?
ORDER BY id
-- name: grants.all
SELECT g.reference, o.name, u.name, a.account_type, a.platform_id, a.broker_id,
       a.account_sub_type, a.account_number, a.account_alias, g.first_day, g.last_day, g.ratio,
       g.source, g.state, g.redeemed_at
FROM grants g
JOIN users o ON o.id = g.grantor_id
JOIN users u ON u.id = g.grantee_id
JOIN accounts a ON a.id = g.account_id
ORDER BY g.id
-- name: grants.not_of_owner
SELECT COUNT(*) FROM grants g JOIN accounts a ON a.id = g.account_id
WHERE g.state = 2 AND a.owner_id <> g.grantor_id
-- name: grants.of_related_accounts
SELECT COUNT(*) FROM grants g
WHERE g.state = 2
  AND EXISTS (SELECT 1 FROM sub_accounts s
              WHERE s.parent_id = g.account_id OR s.child_id = g.account_id)
