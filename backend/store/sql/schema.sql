-- name: schema.version
SELECT version FROM schema_version
-- name: schema.set_first_version
INSERT INTO schema_version (version) VALUES (?)
-- name: schema.set_version
UPDATE schema_version SET version = ?
-- name: savepoint.begin
SAVEPOINT request
-- name: savepoint.release
RELEASE SAVEPOINT request
-- name: savepoint.undo
ROLLBACK TO SAVEPOINT request
