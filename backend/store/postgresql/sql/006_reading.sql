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
               exchange_zone text)
LANGUAGE sql VOLATILE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on
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
           authsetting.exchange_day(authsetting.server_time()), s.exchange_zone
    FROM me, authsetting.settings AS s
$$;

-- The cheap question whether anything has changed: version grows with every change of what the
-- caller sees, and so does what read_model() returns when the day changes.
CREATE FUNCTION authsetting.my_version()
RETURNS TABLE (version bigint, today date, enabled boolean)
LANGUAGE sql STABLE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on
AS $$
    SELECT u.data_version, authsetting.exchange_day(authsetting.server_time()), u.enabled
    FROM authsetting.users AS u WHERE u.login = session_user::text
$$;

-- Everything that the caller may know, or with `since` (a version that he has read on the same day)
-- only the accounts whose grant has changed after it; the sub-users always. A received account's
-- secret is shown from the first day of a server grant on, and after redeeming a file. A disabled
-- caller gets the first row only.
CREATE FUNCTION authsetting.read_model(since bigint) RETURNS SETOF authsetting.model_row
LANGUAGE sql STABLE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on
AS $$
    WITH me AS MATERIALIZED (
        SELECT u.id, u.data_version, u.enabled,
               authsetting.exchange_day(authsetting.server_time()) AS today,
               since < u.structure_version OR since > u.data_version AS is_full
        FROM authsetting.users AS u WHERE u.login = session_user::text
    ), own_accounts AS (
        SELECT a.*
        FROM me JOIN authsetting.accounts AS a ON a.owner_id = me.id
        WHERE me.enabled AND me.is_full
        UNION ALL
        SELECT a.*
        FROM (SELECT DISTINCT g.account_id
              FROM me JOIN authsetting.grants AS g
                ON g.grantor_id = me.id AND g.grantor_version > since
              WHERE me.enabled AND NOT me.is_full) AS changed
        JOIN authsetting.accounts AS a ON a.id = changed.account_id
        WHERE a.owner_id = (SELECT me.id FROM me)
    ), received_grants AS (
        SELECT g.*,
               g.state = 2 AND (g.source = 1 OR g.redeemed_at IS NOT NULL)
                   AND g.last_day >= me.today AS is_current
        FROM me JOIN authsetting.grants AS g
          ON g.grantee_id = me.id AND g.state = 2
        WHERE me.enabled AND me.is_full
        UNION ALL
        SELECT g.*, g.state = 2 AND g.last_day >= me.today AS is_current
        FROM me JOIN authsetting.grants AS g
          ON g.grantee_id = me.id AND g.grantee_version > since
        WHERE me.enabled AND NOT me.is_full AND (g.source = 1 OR g.redeemed_at IS NOT NULL)
    ), model AS (
        SELECT 0::smallint AS side, 0::bigint AS place,
               me.data_version AS version, me.enabled, me.today,
               EXISTS (SELECT FROM authsetting.grants AS g
                       WHERE g.state = 2 AND g.last_day < me.today
                         AND me.id IN (g.grantor_id, g.grantee_id)) AS has_overdue,
               me.is_full,
               NULL::bigint AS account_id, NULL::integer AS account_type,
               NULL::integer AS platform_id, NULL::text AS broker_id,
               NULL::integer AS account_sub_type, NULL::text AS account_number,
               NULL::text AS account_private, NULL::text AS account_alias,
               NULL::boolean AS is_sub_account, NULL::boolean AS has_sub_account,
               NULL::text AS reference, NULL::bigint AS other_id, NULL::text AS other_name,
               NULL::date AS first_day, NULL::date AS last_day, NULL::double precision AS ratio,
               NULL::smallint AS source, NULL::boolean AS is_current
        FROM me
        UNION ALL
        SELECT 1::smallint, a.position,
               NULL, NULL, NULL, NULL, NULL,
               a.id, a.account_type, a.platform_id, a.broker_id, a.account_sub_type,
               a.account_number, a.account_private, a.account_alias,
               EXISTS (SELECT FROM authsetting.sub_accounts AS s WHERE s.child_id = a.id),
               EXISTS (SELECT FROM authsetting.sub_accounts AS s WHERE s.parent_id = a.id),
               replace(g.reference::text, '-', ''), g.grantee_id, u.name, g.first_day, g.last_day,
               g.ratio, g.source, g.reference IS NOT NULL
        FROM own_accounts AS a
        LEFT JOIN authsetting.grants AS g
               ON g.account_id = a.id AND g.state = 2 AND g.last_day >= (SELECT me.today FROM me)
        LEFT JOIN authsetting.users AS u ON u.id = g.grantee_id
        UNION ALL
        SELECT 2::smallint, g.serial,
               NULL, NULL, NULL, NULL, NULL,
               a.id, a.account_type, a.platform_id, a.broker_id, a.account_sub_type,
               a.account_number,
               CASE WHEN g.source = 2 OR g.first_day <= (SELECT me.today FROM me)
                    THEN a.account_private WHEN g.is_current THEN '' END,
               a.account_alias, NULL, NULL,
               replace(g.reference::text, '-', ''), u.id, u.name, g.first_day, g.last_day,
               g.ratio, g.source, true
        FROM received_grants AS g
        JOIN authsetting.accounts AS a ON a.id = g.account_id
        JOIN authsetting.users AS u ON u.id = g.grantor_id
        WHERE g.is_current
        UNION ALL
        SELECT 2::smallint, g.serial,
               NULL, NULL, NULL, NULL, NULL,
               NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
               replace(g.reference::text, '-', ''), NULL, NULL, NULL, NULL, NULL, NULL, false
        FROM received_grants AS g
        WHERE NOT g.is_current AND NOT (SELECT me.is_full FROM me)
        UNION ALL
        SELECT 3::smallint, s.position,
               NULL, s.enabled, NULL, NULL, NULL,
               NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
               NULL, s.id, s.name, NULL, NULL, NULL, NULL, NULL
        FROM me JOIN authsetting.users AS s ON s.owner_id = me.id
        WHERE me.enabled
    )
    SELECT m.side, m.version, m.enabled, m.today, m.has_overdue, m.is_full, m.account_id,
           m.account_type, m.platform_id, m.broker_id, m.account_sub_type, m.account_number,
           m.account_private, m.account_alias, m.is_sub_account, m.has_sub_account, m.reference,
           m.other_id, m.other_name, m.first_day, m.last_day, m.ratio, m.source, m.is_current
    FROM model AS m
    ORDER BY m.side, m.place
$$;

-- The platforms (what = 1) and brokers (what = 2), futures (kind = 1) and stock (kind = 2) apart.
CREATE FUNCTION authsetting.read_environment()
RETURNS TABLE (what smallint, kind smallint, platform_id integer, broker_id text, name text)
LANGUAGE sql STABLE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on
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
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on
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
