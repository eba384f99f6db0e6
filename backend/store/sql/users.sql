-- name: users.by_name
SELECT id, owner_id, enabled, password_hash FROM users WHERE name = ?
-- name: users.all
SELECT id, name FROM users
-- name: users.list
SELECT u.name, o.name, u.enabled
FROM users u
LEFT JOIN users o ON o.id = u.owner_id
ORDER BY u.id
-- name: users.state
SELECT data_version, enabled FROM users WHERE id = ?
-- name: users.sub_users
SELECT id, name, enabled FROM users WHERE owner_id = ? ORDER BY id
-- name: users.next_id
SELECT COALESCE(MAX(id), 0) + 1 FROM users
-- name: users.insert
INSERT INTO users (id, name, owner_id, password_hash, enabled, data_version)
VALUES (?, ?, ?, ?, ?, 1)
-- name: users.touch
UPDATE users SET data_version = data_version + 1 WHERE id = ?
-- name: users.set_enabled
UPDATE users SET enabled = ? WHERE id = ? AND owner_id = ?
-- name: users.set_password
UPDATE users SET password_hash = ? WHERE id = ? AND owner_id = ?
-- name: users.admin_set_enabled
UPDATE users SET enabled = ? WHERE id = ?
-- name: users.admin_set_password
UPDATE users SET password_hash = ? WHERE id = ?
-- name: sign_in.failures
SELECT failures, last_at FROM sign_in_failures WHERE name_digest = ?
-- name: sign_in.add_first
INSERT INTO sign_in_failures (failures, last_at, name_digest) VALUES (?, ?, ?)
-- name: sign_in.set
UPDATE sign_in_failures SET failures = ?, last_at = ? WHERE name_digest = ?
-- name: sign_in.forget
DELETE FROM sign_in_failures WHERE name_digest = ?
-- name: sign_in.forget_old
DELETE FROM sign_in_failures WHERE last_at < ?
