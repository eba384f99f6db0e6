-- name: audit.next_id
SELECT COALESCE(MAX(id), 0) + 1 FROM audit_trail
-- name: audit.insert
INSERT INTO audit_trail (id, happened_at, actor_id, user_id, other_user_id, action, account_id,
                         detail, ok, error)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
-- name: audit.of_user
SELECT t.id, t.happened_at, w.name, t.action, t.user_id, s.name, o.name, a.account_alias,
       a.account_number, t.detail, t.ok, t.error
FROM audit_trail t
LEFT JOIN users w ON w.id = t.actor_id
LEFT JOIN users s ON s.id = t.user_id
LEFT JOIN users o ON o.id = t.other_user_id
LEFT JOIN accounts a ON a.id = t.account_id
WHERE t.user_id = ? OR (t.other_user_id = ? AND t.ok AND t.action <> 'prepare')
ORDER BY t.id DESC
LIMIT ?
