-- The tables. Dates are calendar days in the exchange time zone, times are UTC (both ISO 8601).
-- Statements are separated by a line of two dashes and a semicolon.
CREATE TABLE schema_version (
    version INTEGER NOT NULL
)
--;
CREATE TABLE users (
    id INTEGER NOT NULL PRIMARY KEY,
    name VARCHAR(255) NOT NULL UNIQUE,
    owner_id INTEGER REFERENCES users (id),
    password_hash VARCHAR(255) NOT NULL,
    enabled BOOLEAN NOT NULL,
    data_version BIGINT NOT NULL
)
--;
CREATE INDEX users_of_owner ON users (owner_id)
--;
CREATE TABLE platforms (
    kind SMALLINT NOT NULL CHECK (kind IN (1, 2)),
    platform_id INTEGER NOT NULL,
    name VARCHAR(255) NOT NULL,
    PRIMARY KEY (kind, platform_id)
)
--;
CREATE TABLE brokers (
    kind SMALLINT NOT NULL,
    platform_id INTEGER NOT NULL,
    broker_id VARCHAR(255) NOT NULL,
    name VARCHAR(255) NOT NULL,
    PRIMARY KEY (kind, platform_id, broker_id),
    FOREIGN KEY (kind, platform_id) REFERENCES platforms (kind, platform_id)
)
--;
CREATE TABLE accounts (
    id INTEGER NOT NULL PRIMARY KEY,
    owner_id INTEGER NOT NULL REFERENCES users (id),
    account_type INTEGER NOT NULL,
    platform_id INTEGER NOT NULL,
    broker_id VARCHAR(255) NOT NULL,
    account_sub_type INTEGER NOT NULL,
    account_number VARCHAR(255) NOT NULL,
    account_private VARCHAR(255) NOT NULL,
    account_alias VARCHAR(255) NOT NULL,
    UNIQUE (platform_id, broker_id, account_sub_type, account_number)
)
--;
CREATE INDEX accounts_of_owner ON accounts (owner_id)
--;
CREATE TABLE sub_accounts (
    parent_id INTEGER NOT NULL REFERENCES accounts (id),
    child_id INTEGER NOT NULL REFERENCES accounts (id),
    PRIMARY KEY (parent_id, child_id),
    CHECK (parent_id <> child_id)
)
--;
-- source: 1 server, 2 file; state: 1 prepared, 2 current, 3 cancelled, 4 expired.
CREATE TABLE grants (
    id INTEGER NOT NULL PRIMARY KEY,
    reference CHAR(32) NOT NULL UNIQUE,
    grantor_id INTEGER NOT NULL REFERENCES users (id),
    grantee_id INTEGER NOT NULL REFERENCES users (id),
    account_id INTEGER NOT NULL REFERENCES accounts (id),
    first_day DATE NOT NULL,
    last_day DATE NOT NULL,
    ratio DOUBLE PRECISION CHECK (ratio > 0 AND ratio <= 1),
    source SMALLINT NOT NULL CHECK (source IN (1, 2)),
    state SMALLINT NOT NULL CHECK (state IN (1, 2, 3, 4)),
    created_at TIMESTAMP WITH TIME ZONE NOT NULL,
    ended_at TIMESTAMP WITH TIME ZONE,
    redeemed_at TIMESTAMP WITH TIME ZONE,
    CHECK (first_day <= last_day),
    CHECK (grantor_id <> grantee_id)
)
--;
CREATE UNIQUE INDEX grants_current ON grants (account_id) WHERE state = 2
--;
CREATE UNIQUE INDEX grants_prepared ON grants (account_id) WHERE state = 1
--;
CREATE INDEX grants_received ON grants (grantee_id) WHERE state = 2
--;
-- actor_id is empty for what the system does by itself; user_id and other_user_id are whom an
-- entry concerns.
CREATE TABLE audit_trail (
    id INTEGER NOT NULL PRIMARY KEY,
    happened_at TIMESTAMP WITH TIME ZONE NOT NULL,
    actor_id INTEGER REFERENCES users (id),
    user_id INTEGER REFERENCES users (id),
    other_user_id INTEGER REFERENCES users (id),
    action VARCHAR(32) NOT NULL,
    account_id INTEGER REFERENCES accounts (id),
    detail VARCHAR(255) NOT NULL,
    ok BOOLEAN NOT NULL,
    error VARCHAR(255) NOT NULL
)
