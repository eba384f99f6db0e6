-- name: accounts.own
SELECT a.id, a.account_type, a.platform_id, a.broker_id, a.account_sub_type, a.account_number,
       a.account_private, a.account_alias,
       g.id, g.reference, g.grantee_id, u.name, g.first_day, g.last_day, g.ratio, g.source
FROM accounts a
LEFT JOIN grants g ON g.account_id = a.id AND g.state = 2
LEFT JOIN users u ON u.id = g.grantee_id
WHERE a.owner_id = ?
ORDER BY a.id
-- name: accounts.received
SELECT a.id, a.account_type, a.platform_id, a.broker_id, a.account_sub_type, a.account_number,
       CASE WHEN g.source = 2 OR g.first_day <= ? THEN a.account_private ELSE '' END,
       a.account_alias,
       g.id, g.reference, g.grantor_id, u.name, g.first_day, g.last_day, g.ratio, g.source
FROM grants g
JOIN accounts a ON a.id = g.account_id
JOIN users u ON u.id = g.grantor_id
WHERE g.grantee_id = ? AND g.state = 2 AND (g.source = 1 OR g.redeemed_at IS NOT NULL)
  AND g.last_day >= ?
ORDER BY g.id
-- name: accounts.relations
SELECT s.parent_id, s.child_id
FROM sub_accounts s
JOIN accounts a ON a.id = s.child_id
WHERE a.owner_id = ?
-- name: accounts.all_keys
SELECT id, owner_id, platform_id, broker_id, account_sub_type, account_number FROM accounts
-- name: accounts.list
SELECT o.name, a.account_type, a.platform_id, a.broker_id, a.account_sub_type, a.account_number,
       a.account_alias,
       (SELECT p.account_number FROM sub_accounts s JOIN accounts p ON p.id = s.parent_id
        WHERE s.child_id = a.id ORDER BY p.id LIMIT 1)
FROM accounts a
JOIN users o ON o.id = a.owner_id
ORDER BY a.owner_id, a.id
-- name: accounts.next_id
SELECT COALESCE(MAX(id), 0) + 1 FROM accounts
-- name: accounts.insert
INSERT INTO accounts (id, owner_id, account_type, platform_id, broker_id, account_sub_type,
                      account_number, account_private, account_alias)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)
-- name: accounts.relate
INSERT INTO sub_accounts (parent_id, child_id) VALUES (?, ?)
-- name: platforms.all
SELECT kind, platform_id, name FROM platforms ORDER BY kind, platform_id
-- name: platforms.insert
INSERT INTO platforms (kind, platform_id, name) VALUES (?, ?, ?)
-- name: brokers.all
SELECT kind, platform_id, broker_id, name FROM brokers ORDER BY kind, platform_id, broker_id
-- name: brokers.insert
INSERT INTO brokers (kind, platform_id, broker_id, name) VALUES (?, ?, ?, ?)
