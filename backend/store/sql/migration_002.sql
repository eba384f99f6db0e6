-- Failed sign-ins by a digest of the typed name, known or not, so that the slow-down tells nobody
-- which names exist and no mistyped secret is kept.
CREATE TABLE sign_in_failures (
    name_digest CHAR(64) NOT NULL PRIMARY KEY,
    failures INTEGER NOT NULL,
    last_at TIMESTAMP WITH TIME ZONE NOT NULL
)
