-- What the tables need in this engine's own words.
CREATE TRIGGER audit_trail_keeps_rows BEFORE UPDATE ON audit_trail
BEGIN
    SELECT RAISE(ABORT, 'the audit trail is append-only');
END
--;
CREATE TRIGGER audit_trail_keeps_all BEFORE DELETE ON audit_trail
BEGIN
    SELECT RAISE(ABORT, 'the audit trail is append-only');
END
