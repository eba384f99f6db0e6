-- What the administrator's program does. The functions have the rights of whoever calls them: a
-- superuser, or a member of authsetting_owner who may make roles. Rows that the tables forbid fail
-- with the engine's own error; other refusals are P0002 (no such user or account) and 22023 (a
-- value that cannot be).
SET LOCAL ROLE authsetting_owner;

CREATE FUNCTION authsetting.admin_user_id(user_name text) RETURNS bigint
LANGUAGE plpgsql STABLE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
DECLARE
    found_id bigint;
BEGIN
    SELECT u.id INTO found_id FROM authsetting.users AS u WHERE u.name = user_name;
    IF found_id IS NULL THEN
        RAISE EXCEPTION 'no such user' USING ERRCODE = 'no_data_found';
    END IF;
    RETURN found_id;
END
$$;

CREATE FUNCTION authsetting.admin_account_id(platform_id integer, broker_id text,
                                             account_sub_type integer, account_number text)
RETURNS bigint
LANGUAGE plpgsql STABLE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
DECLARE
    found_id bigint;
BEGIN
    SELECT a.id INTO found_id FROM authsetting.accounts AS a
    WHERE a.platform_id = admin_account_id.platform_id
      AND a.broker_id = admin_account_id.broker_id
      AND a.account_sub_type = admin_account_id.account_sub_type
      AND a.account_number = admin_account_id.account_number;
    IF found_id IS NULL THEN
        RAISE EXCEPTION 'no such account' USING ERRCODE = 'no_data_found';
    END IF;
    RETURN found_id;
END
$$;

-- Notes that users see other accounts, relations or given grants than before; once per user and
-- transaction, because each further version of a row makes all later looks at it slower.
CREATE FUNCTION authsetting.admin_touch(users bigint[]) RETURNS void
LANGUAGE sql VOLATILE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
    UPDATE authsetting.users AS u
    SET data_version = u.data_version + 1, structure_version = u.data_version + 1,
        structure_change = pg_current_xact_id()
    WHERE u.id = ANY (users) AND u.structure_change IS DISTINCT FROM pg_current_xact_id();
    NOTIFY authsetting_changed;
$$;

-- Adds a user, managed by owner_name unless that is null, and his login; one that the server has
-- already, of another database, gets this password. Returns the id.
CREATE FUNCTION authsetting.admin_add_user(user_name text, owner_name text, verifier text,
                                           enabled boolean)
RETURNS bigint
LANGUAGE plpgsql VOLATILE
SET search_path = pg_catalog, authsetting, pg_temp SET standard_conforming_strings = on
AS $$
DECLARE
    user_login text := authsetting.login_name(user_name);
    owner bigint := CASE WHEN owner_name IS NOT NULL THEN authsetting.admin_user_id(owner_name) END;
    added bigint;
BEGIN
    IF authsetting.name_problem(user_name) <> '' THEN
        RAISE EXCEPTION 'not a user name' USING ERRCODE = 'invalid_parameter_value';
    ELSIF NOT authsetting.is_verifier(verifier) THEN
        RAISE EXCEPTION 'not a verifier' USING ERRCODE = 'invalid_parameter_value';
    END IF;
    INSERT INTO authsetting.users (name, owner_id, position, enabled)
    SELECT user_name, owner,
           CASE WHEN owner IS NULL THEN 0
                ELSE coalesce((SELECT max(u.position) + 1 FROM authsetting.users AS u
                               WHERE u.owner_id = owner), 1) END,
           admin_add_user.enabled
    RETURNING id INTO added;
    IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = user_login) THEN
        EXECUTE format('CREATE ROLE %I NOSUPERUSER NOCREATEDB NOCREATEROLE NOREPLICATION '
                       'NOBYPASSRLS INHERIT IN ROLE authsetting_user', user_login);
    END IF;
    EXECUTE format('ALTER ROLE %I PASSWORD %L', user_login, verifier);
    EXECUTE format(CASE WHEN enabled THEN 'ALTER ROLE %I LOGIN' ELSE 'ALTER ROLE %I NOLOGIN' END,
                   user_login);
    IF owner IS NOT NULL THEN
        PERFORM authsetting.admin_touch(ARRAY[owner]);
    END IF;
    RETURN added;
END
$$;

CREATE FUNCTION authsetting.admin_set_password(user_name text, verifier text) RETURNS void
LANGUAGE plpgsql VOLATILE
SET search_path = pg_catalog, authsetting, pg_temp SET standard_conforming_strings = on
AS $$
BEGIN
    PERFORM authsetting.admin_user_id(user_name);
    IF NOT authsetting.is_verifier(verifier) THEN
        RAISE EXCEPTION 'not a verifier' USING ERRCODE = 'invalid_parameter_value';
    END IF;
    EXECUTE format('ALTER ROLE %I PASSWORD %L', authsetting.login_name(user_name), verifier);
END
$$;

-- Disabling also ends the user's connections.
CREATE FUNCTION authsetting.admin_set_enabled(user_name text, enabled boolean) RETURNS void
LANGUAGE plpgsql VOLATILE
SET search_path = pg_catalog, authsetting, pg_temp SET standard_conforming_strings = on
AS $$
DECLARE
    target bigint := authsetting.admin_user_id(user_name);
    user_login text := authsetting.login_name(user_name);
BEGIN
    UPDATE authsetting.users AS u SET enabled = admin_set_enabled.enabled WHERE u.id = target;
    EXECUTE format(CASE WHEN enabled THEN 'ALTER ROLE %I LOGIN' ELSE 'ALTER ROLE %I NOLOGIN' END,
                   user_login);
    PERFORM authsetting.admin_touch(
        ARRAY(SELECT s.id FROM authsetting.users AS u,
                     LATERAL (VALUES (u.id), (u.owner_id)) AS s (id)
              WHERE u.id = target AND s.id IS NOT NULL));
    IF NOT enabled THEN
        PERFORM pg_terminate_backend(a.pid) FROM pg_stat_activity AS a
        WHERE a.usename = user_login AND a.pid <> pg_backend_pid();
    END IF;
END
$$;

-- Adds an account behind those that its owner has. Returns the id.
CREATE FUNCTION authsetting.admin_add_account(owner_name text, account_type integer,
                                              platform_id integer, broker_id text,
                                              account_sub_type integer, account_number text,
                                              account_private text, account_alias text)
RETURNS bigint
LANGUAGE plpgsql VOLATILE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
DECLARE
    owner bigint := authsetting.admin_user_id(owner_name);
    added bigint;
BEGIN
    INSERT INTO authsetting.accounts (owner_id, position, account_type, platform_id, broker_id,
                                      account_sub_type, account_number, account_private,
                                      account_alias)
    SELECT owner,
           coalesce((SELECT max(a.position) + 1 FROM authsetting.accounts AS a
                     WHERE a.owner_id = owner), 1),
           account_type, platform_id, broker_id, account_sub_type, account_number, account_private,
           account_alias
    RETURNING id INTO added;
    PERFORM authsetting.admin_touch(ARRAY[owner]);
    RETURN added;
END
$$;

-- Makes one account a sub-account of another of the same owner.
CREATE FUNCTION authsetting.admin_add_sub_account(
    parent_platform_id integer, parent_broker_id text, parent_sub_type integer, parent_number text,
    child_platform_id integer, child_broker_id text, child_sub_type integer, child_number text)
RETURNS void
LANGUAGE plpgsql VOLATILE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
DECLARE
    parent bigint := authsetting.admin_account_id(parent_platform_id, parent_broker_id,
                                                  parent_sub_type, parent_number);
    child bigint := authsetting.admin_account_id(child_platform_id, child_broker_id,
                                                 child_sub_type, child_number);
    owners bigint[] := ARRAY(SELECT DISTINCT a.owner_id FROM authsetting.accounts AS a
                             WHERE a.id IN (parent, child));
BEGIN
    IF cardinality(owners) > 1 THEN
        RAISE EXCEPTION 'the accounts have different owners'
            USING ERRCODE = 'invalid_parameter_value';
    END IF;
    INSERT INTO authsetting.sub_accounts (parent_id, child_id) VALUES (parent, child);
    PERFORM authsetting.admin_touch(owners);
END
$$;

-- Adds a grant in any state, checked only for what the tables forbid; without a reference it gets
-- a random one. Returns the reference.
CREATE FUNCTION authsetting.admin_add_grant(
    reference text, grantor text, grantee text, platform_id integer, broker_id text,
    account_sub_type integer, account_number text, first_day date, last_day date,
    ratio double precision, source smallint, state smallint, redeemed boolean)
RETURNS text
LANGUAGE plpgsql VOLATILE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
DECLARE
    grantor_id bigint := authsetting.admin_user_id(grantor);
    grantee_id bigint := authsetting.admin_user_id(grantee);
    at timestamptz := authsetting.server_time();
    added uuid;
BEGIN
    INSERT INTO authsetting.grants (reference, grantor_id, grantee_id, account_id, first_day,
                                    last_day, ratio, source, state, created_at, ended_at,
                                    redeemed_at, grantor_version, grantee_version)
    VALUES (coalesce(nullif(admin_add_grant.reference, '')::uuid, gen_random_uuid()),
            grantor_id, grantee_id,
            authsetting.admin_account_id(platform_id, broker_id, account_sub_type, account_number),
            first_day, last_day, ratio, source, state, at, CASE WHEN state IN (3, 4) THEN at END,
            CASE WHEN redeemed THEN at END, 0, 0)
    RETURNING grants.reference INTO added;
    PERFORM authsetting.admin_touch(ARRAY[grantor_id, grantee_id]);
    RETURN replace(added::text, '-', '');
END
$$;

-- Every grant, oldest first.
CREATE FUNCTION authsetting.admin_grants()
RETURNS TABLE (reference text, grantor text, grantee text, account_type integer,
               platform_id integer, broker_id text, account_sub_type integer, account_number text,
               account_alias text, first_day date, last_day date, ratio double precision,
               source smallint, state smallint, redeemed boolean)
LANGUAGE sql STABLE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
    SELECT replace(g.reference::text, '-', ''), o.name, u.name, a.account_type, a.platform_id,
           a.broker_id, a.account_sub_type, a.account_number, a.account_alias, g.first_day,
           g.last_day, g.ratio, g.source, g.state, g.redeemed_at IS NOT NULL
    FROM authsetting.grants AS g
    JOIN authsetting.users AS o ON o.id = g.grantor_id
    JOIN authsetting.users AS u ON u.id = g.grantee_id
    JOIN authsetting.accounts AS a ON a.id = g.account_id
    ORDER BY g.serial
$$;

-- What contradicts itself or lies open, one code and its count per problem; no row when the store
-- is sound.
CREATE FUNCTION authsetting.admin_verify() RETURNS TABLE (problem text, count bigint)
LANGUAGE sql STABLE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
    SELECT p.problem, p.count
    FROM (
        SELECT 'grant_not_of_owner' AS problem, count(*) AS count
        FROM authsetting.grants AS g JOIN authsetting.accounts AS a ON a.id = g.account_id
        WHERE g.state = 2 AND a.owner_id <> g.grantor_id
        UNION ALL
        SELECT 'grant_of_related_account', count(*)
        FROM authsetting.grants AS g
        WHERE g.state = 2 AND EXISTS (SELECT FROM authsetting.sub_accounts AS s
                                      WHERE g.account_id IN (s.parent_id, s.child_id))
        UNION ALL
        SELECT 'relation_across_owners', count(*)
        FROM authsetting.sub_accounts AS s
        JOIN authsetting.accounts AS p ON p.id = s.parent_id
        JOIN authsetting.accounts AS c ON c.id = s.child_id
        WHERE p.owner_id <> c.owner_id
        UNION ALL
        SELECT 'login_missing', count(*)
        FROM authsetting.users AS u
        WHERE NOT EXISTS (SELECT FROM pg_roles AS r WHERE r.rolname = u.login)
        UNION ALL
        SELECT 'login_state', count(*)
        FROM authsetting.users AS u JOIN pg_roles AS r ON r.rolname = u.login
        WHERE r.rolcanlogin <> u.enabled
        UNION ALL
        SELECT 'login_with_power', count(*)
        FROM authsetting.users AS u JOIN pg_roles AS r ON r.rolname = u.login
        WHERE r.rolsuper OR r.rolcreaterole OR r.rolcreatedb OR r.rolreplication OR r.rolbypassrls
           OR pg_has_role(r.oid, 'authsetting_owner', 'MEMBER')
           OR pg_has_role(r.oid, 'authsetting_accounts_manager', 'MEMBER')
        UNION ALL
        SELECT 'row_security_off', count(*)
        FROM pg_class AS c JOIN pg_namespace AS n ON n.oid = c.relnamespace
        WHERE n.nspname = 'authsetting' AND c.relkind IN ('r', 'p')
          AND NOT (c.relrowsecurity AND c.relforcerowsecurity)
        UNION ALL
        SELECT 'audit_of_unknown', count(*)
        FROM authsetting.audit_trail AS t
        WHERE NOT EXISTS (SELECT FROM authsetting.users AS u WHERE u.id = t.user_id)
           OR t.account_id IS NOT NULL
              AND NOT EXISTS (SELECT FROM authsetting.accounts AS a WHERE a.id = t.account_id)
    ) AS p
    WHERE p.count > 0
    ORDER BY p.problem
$$;

RESET ROLE;
