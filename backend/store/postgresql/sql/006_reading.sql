-- The functions by which clients read. Each is one statement, so it shows one state of the store,
-- and only what the caller (session_user) may know.
SET LOCAL ROLE authsetting_owner;

-- One row of read_model(). side: 0 the caller (the first row: version, enabled, today, has_overdue,
-- is_full), 1 an own account, 2 a received account, 3 a sub-user (other_id, other_name, enabled).
-- reference to source are the current grant of the account, empty without one; other is its
-- grantee on side 1 and its grantor on side 2. is_current is false for a received grant that has
-- gone (then only reference is filled).
CREATE TYPE authsetting.model_row AS (
    side smallint,
    version bigint,
    enabled boolean,
    today date,
    has_overdue boolean,
    is_full boolean,
    account_id bigint,
    account_type integer,
    platform_id integer,
    broker_id text,
    account_sub_type integer,
    account_number text,
    account_private text,
    account_alias text,
    is_sub_account boolean,
    has_sub_account boolean,
    reference text,
    other_id bigint,
    other_name text,
    first_day date,
    last_day date,
    ratio double precision,
    source smallint,
    is_current boolean
);

-- Notes that the caller signed in and tells who he is.
CREATE FUNCTION authsetting.sign_in()
RETURNS TABLE (user_id bigint, user_name text, enabled boolean, version bigint, today date,
               exchange_zone text, schema integer)
LANGUAGE sql VOLATILE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
AS $$
    WITH me AS (
        SELECT u.id, u.name, u.enabled, u.data_version
        FROM authsetting.users AS u WHERE u.login = session_user::text
    ), written AS (
        INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, action, error)
        SELECT authsetting.server_time(), me.id, me.id, 'sign_in',
               CASE WHEN me.enabled THEN '' ELSE 'caller_disabled' END
        FROM me
    )
    SELECT me.id, me.name, me.enabled, me.data_version,
           authsetting.exchange_day(authsetting.server_time()), s.exchange_zone, v.version
    FROM me, authsetting.settings AS s, authsetting.schema_version AS v
$$;

-- The cheap question whether anything has changed: version grows with every change of what the
-- caller sees, and so does what read_model() returns when the day changes.
CREATE FUNCTION authsetting.my_version()
RETURNS TABLE (version bigint, today date, enabled boolean)
LANGUAGE sql STABLE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
AS $$
    SELECT u.data_version, authsetting.exchange_day(authsetting.server_time()), u.enabled
    FROM authsetting.users AS u WHERE u.login = session_user::text
$$;

-- The own accounts of everybody with their current grants; place orders those of one owner. This
-- and the next function become part of the statement that uses them, whose planner takes the row
-- apart again as long as every text has the order of the type's.
CREATE FUNCTION authsetting.own_account_rows(today date)
RETURNS TABLE (owner_id bigint, place bigint, account_id bigint, model authsetting.model_row)
LANGUAGE sql STABLE
AS $$
    SELECT a.owner_id, a.position::bigint, a.id,
           ROW (1::smallint, NULL, NULL, NULL, NULL, NULL,
                a.id, a.account_type, a.platform_id, a.broker_id::text COLLATE "default",
                a.account_sub_type, a.account_number::text COLLATE "default",
                a.account_private::text, a.account_alias::text,
                EXISTS (SELECT FROM authsetting.sub_accounts AS s WHERE s.child_id = a.id),
                EXISTS (SELECT FROM authsetting.sub_accounts AS s WHERE s.parent_id = a.id),
                replace(g.reference::text, '-', ''), g.grantee_id, u.name COLLATE "default",
                g.first_day, g.last_day, g.ratio, g.source,
                g.reference IS NOT NULL)::authsetting.model_row
    FROM authsetting.accounts AS a
    LEFT JOIN authsetting.grants AS g
           ON g.account_id = a.id AND g.state = 2 AND g.last_day >= today
    LEFT JOIN authsetting.users AS u ON u.id = g.grantee_id
$$;

-- The grants that everybody has received and was told of, also those that have gone.
CREATE FUNCTION authsetting.received_rows(today date)
RETURNS TABLE (grantee_id bigint, key uuid, place bigint, state smallint, is_current boolean,
               model authsetting.model_row)
LANGUAGE sql STABLE
AS $$
    SELECT g.grantee_id, g.reference, g.serial, g.state, g.state = 2 AND g.last_day >= today,
           ROW (2::smallint, NULL, NULL, NULL, NULL, NULL,
                a.id, a.account_type, a.platform_id, a.broker_id::text COLLATE "default",
                a.account_sub_type, a.account_number::text COLLATE "default",
                CASE WHEN g.source = 2 OR g.first_day <= today THEN a.account_private::text
                     ELSE '' END,
                a.account_alias::text, NULL, NULL,
                replace(g.reference::text, '-', ''), g.grantor_id, u.name COLLATE "default",
                g.first_day, g.last_day, g.ratio, g.source, true)::authsetting.model_row
    FROM authsetting.grants AS g
    JOIN authsetting.accounts AS a ON a.id = g.account_id
    JOIN authsetting.users AS u ON u.id = g.grantor_id
    WHERE g.source = 1 OR g.redeemed_at IS NOT NULL
$$;

-- The accounts of the model whose grant has changed after a version that the caller has read. Few
-- rows as a rule, and found by their keys however many there are of others, whatever the planner
-- makes of the numbers.
CREATE FUNCTION authsetting.model_changes(caller bigint, day date, since bigint)
RETURNS SETOF authsetting.model_row
LANGUAGE plpgsql STABLE
SET plan_cache_mode = force_generic_plan SET enable_seqscan = off SET enable_hashjoin = off
SET enable_mergejoin = off
AS $$
DECLARE
    accounts bigint[] := ARRAY(
        SELECT DISTINCT g.account_id FROM authsetting.grants AS g
        WHERE g.grantor_id = caller AND g.grantor_version > since);
    received uuid[] := ARRAY(
        SELECT g.reference FROM authsetting.grants AS g
        WHERE g.grantee_id = caller AND g.grantee_version > since);
BEGIN
    IF cardinality(accounts) > 0 THEN
        RETURN QUERY SELECT (r.model).* FROM authsetting.own_account_rows(day) AS r
                     WHERE r.account_id = ANY (accounts) AND r.owner_id = caller ORDER BY r.place;
    END IF;
    IF cardinality(received) > 0 THEN
        RETURN QUERY SELECT (r.model).* FROM authsetting.received_rows(day) AS r
                     WHERE r.key = ANY (received) AND r.is_current ORDER BY r.place;
        RETURN QUERY SELECT 2::smallint, NULL::bigint, NULL::boolean, NULL::date, NULL::boolean,
                            NULL::boolean, NULL::bigint, NULL::integer, NULL::integer, NULL::text,
                            NULL::integer, NULL::text, NULL::text, NULL::text, NULL::boolean,
                            NULL::boolean, (r.model).reference, NULL::bigint, NULL::text,
                            NULL::date, NULL::date, NULL::double precision, NULL::smallint, false
                     FROM authsetting.received_rows(day) AS r
                     WHERE r.key = ANY (received) AND NOT r.is_current ORDER BY r.place;
    END IF;
END
$$;

-- Whether a grant of that user has ended that is still written as current.
CREATE FUNCTION authsetting.has_overdue(caller bigint, day date) RETURNS boolean
LANGUAGE plpgsql STABLE SET enable_seqscan = off
AS $$
BEGIN
    RETURN EXISTS (SELECT FROM authsetting.grants AS g
                   WHERE g.state = 2 AND g.last_day < day
                     AND caller IN (g.grantor_id, g.grantee_id));
END
$$;

-- Everything that the caller may know, or with `since` (a version that he has read on the same day)
-- only the accounts whose grant has changed after it; the sub-users always. A received account's
-- secret is shown from the first day of a server grant on, and after redeeming a file. A disabled
-- caller gets the first row only.
CREATE FUNCTION authsetting.read_model(since bigint) RETURNS SETOF authsetting.model_row
LANGUAGE plpgsql STABLE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
SET standard_conforming_strings = on
AS $$
DECLARE
    me authsetting.model_row;
    caller bigint;
BEGIN
    SELECT u.id, u.data_version, u.enabled,
           coalesce(since < u.structure_version OR since > u.data_version, true)
    INTO caller, me.version, me.enabled, me.is_full
    FROM authsetting.users AS u WHERE u.login = session_user::text;
    IF caller IS NULL THEN
        RETURN;
    END IF;
    me.side := 0;
    me.today := authsetting.exchange_day(authsetting.server_time());
    me.has_overdue := authsetting.has_overdue(caller, me.today);
    RETURN NEXT me;
    IF NOT me.enabled THEN
        RETURN;
    END IF;
    IF me.is_full THEN
        RETURN QUERY SELECT (r.model).* FROM authsetting.own_account_rows(me.today) AS r
                     WHERE r.owner_id = caller ORDER BY r.place;
        RETURN QUERY SELECT (r.model).* FROM authsetting.received_rows(me.today) AS r
                     WHERE r.grantee_id = caller AND r.state = 2 AND r.is_current
                     ORDER BY r.place;
    ELSE
        RETURN QUERY SELECT * FROM authsetting.model_changes(caller, me.today, since);
    END IF;
    RETURN QUERY SELECT 3::smallint, NULL::bigint, s.enabled, NULL::date, NULL::boolean,
                        NULL::boolean, NULL::bigint, NULL::integer, NULL::integer, NULL::text,
                        NULL::integer, NULL::text, NULL::text, NULL::text, NULL::boolean,
                        NULL::boolean, NULL::text, s.id, s.name::text, NULL::date, NULL::date,
                        NULL::double precision, NULL::smallint, NULL::boolean
                 FROM authsetting.users AS s WHERE s.owner_id = caller ORDER BY s.position;
END
$$;

-- The platforms (what = 1) and brokers (what = 2), futures (kind = 1) and stock (kind = 2) apart.
CREATE FUNCTION authsetting.read_environment()
RETURNS TABLE (what smallint, kind smallint, platform_id integer, broker_id text, name text)
LANGUAGE sql STABLE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
AS $$
    SELECT 1::smallint, p.kind, p.platform_id, NULL, p.name FROM authsetting.platforms AS p
    UNION ALL
    SELECT 2::smallint, b.kind, b.platform_id, b.broker_id, b.name FROM authsetting.brokers AS b
    ORDER BY 1, 2, 3, 4
$$;

-- The audit trail as far as it concerns the caller, newest first: what he did himself, and what
-- others did to him with success. id counts his own entries only.
CREATE FUNCTION authsetting.read_audit(max_entries integer)
RETURNS TABLE (id bigint, happened_at timestamptz, actor text, action text, other_user text,
               account text, first_day date, last_day date, ratio double precision, detail text,
               ok boolean, error text)
LANGUAGE sql STABLE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
AS $$
    WITH me AS MATERIALIZED (
        SELECT u.id FROM authsetting.users AS u WHERE u.login = session_user::text AND u.enabled
    ), visible AS MATERIALIZED (
        SELECT t.serial FROM me JOIN authsetting.audit_trail AS t ON t.user_id = me.id
        UNION
        SELECT t.serial FROM me JOIN authsetting.audit_trail AS t
          ON t.other_user_id = me.id AND t.error = '' AND t.action <> 'prepare'
    ), numbered AS (
        SELECT v.serial, row_number() OVER (ORDER BY v.serial) AS number FROM visible AS v
        ORDER BY v.serial DESC LIMIT greatest(max_entries, 0)
    )
    SELECT n.number, t.happened_at, w.name, t.action,
           CASE WHEN t.user_id = me.id THEN o.name ELSE s.name END,
           CASE WHEN a.account_alias <> '' THEN a.account_alias ELSE a.account_number END,
           t.first_day, t.last_day, t.ratio, t.detail, t.error = '', t.error
    FROM numbered AS n
    JOIN authsetting.audit_trail AS t ON t.serial = n.serial
    CROSS JOIN me
    LEFT JOIN authsetting.users AS w ON w.id = t.actor_id
    LEFT JOIN authsetting.users AS s ON s.id = t.user_id
    LEFT JOIN authsetting.users AS o ON o.id = t.other_user_id
    LEFT JOIN authsetting.accounts AS a ON a.id = t.account_id
    ORDER BY n.number DESC
$$;

GRANT USAGE ON TYPE authsetting.model_row TO authsetting_user;
GRANT EXECUTE ON FUNCTION authsetting.sign_in(), authsetting.my_version(),
    authsetting.read_model(bigint), authsetting.read_environment(),
    authsetting.read_audit(integer)
    TO authsetting_user;
RESET ROLE;
