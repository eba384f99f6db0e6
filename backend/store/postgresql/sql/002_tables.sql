-- The tables. Dates are calendar days in the exchange time zone.
--
-- Keys are random, so that one's own rows say nothing about how many others there are; orders are
-- kept in columns that no client function returns. No client role has any right on a table: clients
-- call functions. Row-level security is forced on every table, also on its owner, and its only
-- policy lets the owner's functions see the rows, so that a right granted by mistake shows none.
SET LOCAL ROLE authsetting_owner;

-- 60 random bits.
CREATE FUNCTION authsetting.random_key() RETURNS bigint
LANGUAGE sql VOLATILE
RETURN (SELECT ('x0' || left(u.hex, 12) || right(u.hex, 3))::bit(64)::bigint
        FROM (SELECT replace(gen_random_uuid()::text, '-', '') AS hex) AS u);

CREATE FUNCTION authsetting.login_name(user_name text) RETURNS text
LANGUAGE sql IMMUTABLE
RETURN 'as_' || left(encode(sha256(convert_to(user_name, 'UTF8')), 'hex'), 40);

-- One row. test_now is the time that a test has stopped the clock at.
CREATE TABLE authsetting.settings (
    exchange_zone text NOT NULL DEFAULT 'Asia/Shanghai',
    test_now timestamptz
);
CREATE UNIQUE INDEX settings_one_row ON authsetting.settings ((true));
INSERT INTO authsetting.settings DEFAULT VALUES;

-- data_version grows by one with every change of what the user sees, structure_version is its value
-- at the last change of anything else than grants and sub-users, which structure_change made.
-- position orders the sub-users of one owner.
CREATE TABLE authsetting.users (
    id bigint NOT NULL PRIMARY KEY DEFAULT authsetting.random_key(),
    name text COLLATE "C" NOT NULL UNIQUE
        CHECK (name <> '' AND octet_length(name) <= 63 AND name IS NFC NORMALIZED),
    login text COLLATE "C" NOT NULL UNIQUE
        GENERATED ALWAYS AS (authsetting.login_name(name)) STORED,
    owner_id bigint REFERENCES authsetting.users (id),
    position integer NOT NULL DEFAULT 0,
    enabled boolean NOT NULL,
    data_version bigint NOT NULL DEFAULT 1,
    structure_version bigint NOT NULL DEFAULT 1,
    structure_change xid8
);
CREATE INDEX users_of_owner ON authsetting.users (owner_id, position);

CREATE TABLE authsetting.platforms (
    kind smallint NOT NULL CHECK (kind IN (1, 2)),
    platform_id integer NOT NULL,
    name varchar(255) NOT NULL,
    PRIMARY KEY (kind, platform_id)
);

CREATE TABLE authsetting.brokers (
    kind smallint NOT NULL,
    platform_id integer NOT NULL,
    broker_id varchar(255) COLLATE "C" NOT NULL,
    name varchar(255) NOT NULL,
    PRIMARY KEY (kind, platform_id, broker_id),
    FOREIGN KEY (kind, platform_id) REFERENCES authsetting.platforms (kind, platform_id)
);

-- position orders the accounts of one owner.
CREATE TABLE authsetting.accounts (
    id bigint NOT NULL PRIMARY KEY DEFAULT authsetting.random_key(),
    owner_id bigint NOT NULL REFERENCES authsetting.users (id),
    position integer NOT NULL,
    account_type integer NOT NULL,
    platform_id integer NOT NULL,
    broker_id varchar(255) COLLATE "C" NOT NULL,
    account_sub_type integer NOT NULL,
    account_number varchar(255) COLLATE "C" NOT NULL,
    account_private varchar(255) NOT NULL,
    account_alias varchar(255) NOT NULL,
    UNIQUE (account_number, broker_id, platform_id, account_sub_type)
);
CREATE INDEX accounts_of_owner ON authsetting.accounts (owner_id, position);

CREATE TABLE authsetting.sub_accounts (
    parent_id bigint NOT NULL REFERENCES authsetting.accounts (id),
    child_id bigint NOT NULL REFERENCES authsetting.accounts (id),
    PRIMARY KEY (child_id, parent_id),
    CHECK (parent_id <> child_id)
);
CREATE INDEX sub_accounts_of_parent ON authsetting.sub_accounts (parent_id);

-- source: 1 server, 2 file; state: 1 prepared, 2 current, 3 cancelled, 4 expired. serial orders
-- the grants. grantor_version and grantee_version are the users' data_version since which a row is
-- as it is, 0 for what he does not see. The days are those that 32-bit seconds can name.
CREATE TABLE authsetting.grants (
    reference uuid NOT NULL PRIMARY KEY DEFAULT gen_random_uuid(),
    serial bigint NOT NULL GENERATED ALWAYS AS IDENTITY,
    grantor_id bigint NOT NULL REFERENCES authsetting.users (id),
    grantee_id bigint NOT NULL REFERENCES authsetting.users (id),
    account_id bigint NOT NULL REFERENCES authsetting.accounts (id),
    first_day date NOT NULL,
    last_day date NOT NULL,
    ratio double precision CHECK (ratio > 0 AND ratio <= 1),
    source smallint NOT NULL CHECK (source IN (1, 2)),
    state smallint NOT NULL CHECK (state IN (1, 2, 3, 4)),
    created_at timestamptz NOT NULL,
    ended_at timestamptz,
    redeemed_at timestamptz,
    grantor_version bigint NOT NULL,
    grantee_version bigint NOT NULL,
    CHECK (first_day <= last_day),
    CHECK (first_day >= '1901-12-13' AND last_day <= '2038-01-19'),
    CHECK (grantor_id <> grantee_id)
);
CREATE UNIQUE INDEX grants_current ON authsetting.grants (account_id) WHERE state = 2;
CREATE UNIQUE INDEX grants_prepared ON authsetting.grants (account_id) WHERE state = 1;
CREATE INDEX grants_made ON authsetting.grants (grantor_id, grantor_version);
CREATE INDEX grants_received ON authsetting.grants (grantee_id, grantee_version);
CREATE INDEX grants_ending ON authsetting.grants (last_day) WHERE state = 2;

-- actor_id is empty for what the system does by itself; user_id and other_user_id are whom an
-- entry concerns; serial orders the entries. error is the code of a refusal, empty after a success.
-- The ids are taken from rows that the writing function has locked, so nothing checks them again.
CREATE TABLE authsetting.audit_trail (
    serial bigint NOT NULL GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    happened_at timestamptz NOT NULL,
    actor_id bigint,
    user_id bigint NOT NULL,
    other_user_id bigint,
    action varchar(32) NOT NULL,
    account_id bigint,
    first_day date,
    last_day date,
    ratio double precision,
    detail varchar(32) NOT NULL DEFAULT '',
    error varchar(32) NOT NULL
);
CREATE INDEX audit_trail_of_user ON authsetting.audit_trail (user_id);
CREATE INDEX audit_trail_of_other ON authsetting.audit_trail (other_user_id) WHERE error = '';

CREATE FUNCTION authsetting.keep_audit_trail() RETURNS trigger
LANGUAGE plpgsql SET search_path = pg_catalog, pg_temp
AS $$
BEGIN
    RAISE EXCEPTION 'the audit trail is append-only' USING ERRCODE = 'insufficient_privilege';
END
$$;
CREATE TRIGGER audit_trail_keeps_rows
    BEFORE UPDATE OR DELETE OR TRUNCATE ON authsetting.audit_trail
    FOR EACH STATEMENT EXECUTE FUNCTION authsetting.keep_audit_trail();
ALTER TABLE authsetting.audit_trail ENABLE ALWAYS TRIGGER audit_trail_keeps_rows;

-- What became of a burst of requests, kept for a day for the client that never read the reply. The
-- key includes the user, so that nobody meets another's.
CREATE TABLE authsetting.requests (
    user_id bigint NOT NULL REFERENCES authsetting.users (id),
    request_id uuid NOT NULL,
    made_at timestamptz NOT NULL,
    result jsonb NOT NULL,
    PRIMARY KEY (user_id, request_id)
);

DO $$
DECLARE
    target name;
BEGIN
    FOR target IN SELECT tablename FROM pg_catalog.pg_tables WHERE schemaname = 'authsetting' LOOP
        EXECUTE pg_catalog.format('ALTER TABLE authsetting.%I ENABLE ROW LEVEL SECURITY', target);
        EXECUTE pg_catalog.format('ALTER TABLE authsetting.%I FORCE ROW LEVEL SECURITY', target);
        IF target <> 'audit_trail' THEN
            EXECUTE pg_catalog.format('CREATE POLICY owner_functions ON authsetting.%I '
                                      'TO authsetting_owner USING (true) WITH CHECK (true)',
                                      target);
        END IF;
    END LOOP;
END
$$;
CREATE POLICY owner_functions_read ON authsetting.audit_trail
    FOR SELECT TO authsetting_owner USING (true);
CREATE POLICY owner_functions_append ON authsetting.audit_trail
    FOR INSERT TO authsetting_owner WITH CHECK (true);

RESET ROLE;
