-- What happens to grants. Called by the functions of 005 only, inside their transaction, once
-- start_change() has locked the rows of everybody concerned. The rules and their order are those of
-- the embedded store; a refusal is a short code:
--   account_missing, account_is_sub, account_has_subs, account_granted; user_missing, user_is_self,
--   user_disabled; days_inverted, days_past; ratio_invalid; not_granted, granted_to_other;
--   reference_missing, not_for_caller, cancelled, expired, not_effective, not_a_file,
--   redeemed_already, owner_changed, altered; request_invalid.
SET LOCAL ROLE authsetting_owner;

-- One request, as a burst lists them.
CREATE TYPE authsetting.request_item AS (
    kind text,
    "user" text,
    platform_id integer,
    broker_id text,
    account_sub_type integer,
    account_number text,
    first_day date,
    last_day date,
    ratio double precision,
    on_server boolean,
    enabled boolean,
    password_failed boolean,
    verifier text,
    reference text,
    grants jsonb
);

-- What the requests of one transaction share. touched: whose data_version has to grow.
CREATE TYPE authsetting.change AS (
    caller_id bigint,
    enabled boolean,
    next_version bigint,
    at timestamptz,
    today date,
    touched bigint[]
);

CREATE TYPE authsetting.outcome AS (
    results jsonb,
    touched bigint[]
);

CREATE FUNCTION authsetting.caller_id() RETURNS bigint
LANGUAGE plpgsql STABLE
AS $$
DECLARE
    found_id bigint;
BEGIN
    SELECT u.id INTO found_id FROM authsetting.users AS u WHERE u.login = session_user::text;
    IF found_id IS NULL THEN
        RAISE EXCEPTION 'this login is no user' USING ERRCODE = 'insufficient_privilege';
    END IF;
    RETURN found_id;
END
$$;

-- A reference as clients write it, null when it cannot be one.
CREATE FUNCTION authsetting.parsed_reference(reference text) RETURNS uuid
LANGUAGE sql IMMUTABLE
RETURN CASE WHEN reference ~ '^[0-9a-f]{32}$' THEN reference::uuid END;

-- Why a user cannot receive grants of the caller; null when he can.
CREATE FUNCTION authsetting.grantee_problem(grantee bigint, enabled boolean, caller bigint)
RETURNS text
LANGUAGE sql IMMUTABLE
RETURN CASE WHEN grantee IS NULL THEN 'user_missing'
            WHEN grantee = caller THEN 'user_is_self'
            WHEN NOT enabled THEN 'user_disabled' END;

CREATE FUNCTION authsetting.days_problem(first_day date, last_day date, today date) RETURNS text
LANGUAGE sql IMMUTABLE
RETURN CASE WHEN first_day IS NULL OR last_day IS NULL THEN 'request_invalid'
            WHEN first_day > last_day THEN 'days_inverted'
            WHEN last_day < today THEN 'days_past'
            WHEN first_day < '1901-12-13' OR last_day > '2038-01-19' THEN 'request_invalid' END;

-- Begins a change: locks the rows of the caller, of everybody named and of both sides of the grants
-- referred to, always in the order of their keys, so that two changes wait for each other instead
-- of blocking each other, and ends the grants whose last day has passed. Every change of a grant
-- holds the locks of both its sides; whatever is read after this stays as it is. Somebody who keeps
-- a transaction open makes others wait for no more than the time below, which is less than clients
-- wait for a reply.
CREATE FUNCTION authsetting.start_change(names text[], refs uuid[]) RETURNS authsetting.change
LANGUAGE plpgsql VOLATILE SET enable_seqscan = off SET lock_timeout = '7s'
AS $$
DECLARE
    work authsetting.change;
    people bigint[];
BEGIN
    work.caller_id := authsetting.caller_id();
    work.today := authsetting.exchange_day(authsetting.server_time());
    people := ARRAY(
        SELECT work.caller_id
        UNION SELECT u.id FROM authsetting.users AS u WHERE u.name = ANY (names)
        UNION SELECT s.id FROM authsetting.grants AS g,
                     LATERAL (VALUES (g.grantor_id), (g.grantee_id)) AS s (id)
              WHERE g.reference = ANY (refs)
        UNION SELECT s.id FROM authsetting.grants AS g,
                     LATERAL (VALUES (g.grantor_id), (g.grantee_id)) AS s (id)
              WHERE g.state = 2 AND g.last_day < work.today);
    PERFORM FROM authsetting.users AS u WHERE u.id = ANY (people) ORDER BY u.id
    FOR NO KEY UPDATE;
    SELECT u.enabled, u.data_version + 1 INTO work.enabled, work.next_version
    FROM authsetting.users AS u WHERE u.id = work.caller_id;
    work.at := authsetting.server_time();

    WITH ended AS (
        UPDATE authsetting.grants AS g
        SET state = 4, ended_at = work.at, grantor_version = o.data_version + 1,
            grantee_version = e.data_version + 1
        FROM authsetting.users AS o, authsetting.users AS e
        WHERE g.state = 2 AND g.last_day < work.today
          AND o.id = g.grantor_id AND e.id = g.grantee_id
          AND g.grantor_id = ANY (people) AND g.grantee_id = ANY (people)
        RETURNING g.serial, g.grantor_id, g.grantee_id, g.account_id, g.first_day, g.last_day
    ), written AS (
        INSERT INTO authsetting.audit_trail (happened_at, user_id, other_user_id, action,
                                             account_id, first_day, last_day, error)
        SELECT work.at, e.grantor_id, e.grantee_id, 'expire', e.account_id, e.first_day,
               e.last_day, ''
        FROM ended AS e ORDER BY e.serial
    )
    SELECT coalesce(array_agg(DISTINCT s.id), '{}') INTO work.touched
    FROM ended AS e, LATERAL (VALUES (e.grantor_id), (e.grantee_id)) AS s (id);
    RETURN work;
END
$$;

-- Ends a change: lets the versions of everybody concerned grow and says that something changed.
-- Returns the caller's version.
CREATE FUNCTION authsetting.finish_change(work authsetting.change) RETURNS bigint
LANGUAGE plpgsql VOLATILE
AS $$
BEGIN
    IF cardinality(work.touched) > 0 THEN
        UPDATE authsetting.users AS u SET data_version = u.data_version + 1
        WHERE u.id = ANY (work.touched);
        NOTIFY authsetting_changed;
    END IF;
    RETURN (SELECT u.data_version FROM authsetting.users AS u WHERE u.id = work.caller_id);
END
$$;

-- Grants, in the order given. Among the requests of one run the first that keeps all rules has the
-- account; of several prepared for a file the last replaces the others.
CREATE FUNCTION authsetting.add_grants(work authsetting.change, items authsetting.request_item[])
RETURNS authsetting.outcome
LANGUAGE plpgsql VOLATILE
AS $$
DECLARE
    done authsetting.outcome;
BEGIN
    WITH judged AS MATERIALIZED (
        SELECT q.ord, q.on_server, q.first_day, q.last_day, q.ratio,
               a.id AS account_id, u.id AS grantee_id, u.data_version AS grantee_now,
               gen_random_uuid() AS reference,
               CASE WHEN a.id IS NULL THEN 'account_missing'
                    WHEN EXISTS (SELECT FROM authsetting.sub_accounts AS s
                                 WHERE s.child_id = a.id) THEN 'account_is_sub'
                    WHEN EXISTS (SELECT FROM authsetting.sub_accounts AS s
                                 WHERE s.parent_id = a.id) THEN 'account_has_subs'
                    WHEN g.account_id IS NOT NULL THEN 'account_granted' END AS account_problem,
               coalesce(
                   authsetting.grantee_problem(u.id, u.enabled, work.caller_id),
                   authsetting.days_problem(q.first_day, q.last_day, work.today),
                   CASE WHEN NOT (q.ratio > 0 AND q.ratio <= 1) THEN 'ratio_invalid'
                        WHEN q.on_server IS NULL THEN 'request_invalid' END) AS other_problem
        FROM unnest(items) WITH ORDINALITY
             AS q (kind, name, platform_id, broker_id, account_sub_type, account_number, first_day,
                   last_day, ratio, on_server, enabled, password_failed, verifier, reference,
                   grants, ord)
        LEFT JOIN authsetting.accounts AS a
               ON a.account_number = q.account_number AND a.broker_id = q.broker_id
              AND a.platform_id = q.platform_id AND a.account_sub_type = q.account_sub_type
              AND a.owner_id = work.caller_id
        LEFT JOIN authsetting.users AS u ON u.name = q.name
        LEFT JOIN authsetting.grants AS g ON g.account_id = a.id AND g.state = 2
    ), decided AS MATERIALIZED (
        SELECT j.*,
               coalesce(j.account_problem,
                        CASE WHEN j.ord > min(j.ord) FILTER (
                                 WHERE j.on_server AND j.account_problem IS NULL
                                   AND j.other_problem IS NULL) OVER (PARTITION BY j.account_id)
                             THEN 'account_granted' END,
                        j.other_problem) AS problem
        FROM judged AS j
    ), last_prepared AS (
        SELECT max(d.ord) AS ord FROM decided AS d
        WHERE d.problem IS NULL AND NOT d.on_server GROUP BY d.account_id
    ), granted AS (
        INSERT INTO authsetting.grants (reference, grantor_id, grantee_id, account_id, first_day,
                                        last_day, ratio, source, state, created_at,
                                        grantor_version, grantee_version)
        SELECT d.reference, work.caller_id, d.grantee_id, d.account_id, d.first_day, d.last_day,
               d.ratio, 1, 2, work.at, work.next_version, d.grantee_now + 1
        FROM decided AS d
        WHERE d.problem IS NULL AND d.on_server
        ORDER BY d.ord
    ), prepared AS (
        INSERT INTO authsetting.grants AS g (reference, grantor_id, grantee_id, account_id,
                                             first_day, last_day, ratio, source, state, created_at,
                                             grantor_version, grantee_version)
        SELECT d.reference, work.caller_id, d.grantee_id, d.account_id, d.first_day, d.last_day,
               d.ratio, 2, 1, work.at, 0, 0
        FROM decided AS d
        WHERE d.ord IN (SELECT p.ord FROM last_prepared AS p)
        ORDER BY d.ord
        ON CONFLICT (account_id) WHERE state = 1 DO UPDATE
        SET reference = excluded.reference, serial = DEFAULT, grantor_id = excluded.grantor_id,
            grantee_id = excluded.grantee_id, first_day = excluded.first_day,
            last_day = excluded.last_day, ratio = excluded.ratio, created_at = excluded.created_at
    ), written AS (
        INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id, action,
                                             account_id, first_day, last_day, ratio, error)
        SELECT work.at, work.caller_id, work.caller_id, d.grantee_id,
               CASE WHEN d.on_server THEN 'grant' ELSE 'prepare' END, d.account_id,
               CASE WHEN d.problem IS NULL THEN d.first_day END,
               CASE WHEN d.problem IS NULL THEN d.last_day END,
               CASE WHEN d.problem IS NULL THEN d.ratio END, coalesce(d.problem, '')
        FROM decided AS d ORDER BY d.ord
    )
    SELECT jsonb_agg(
               CASE WHEN d.problem IS NULL
                    THEN jsonb_build_object('ok', true, 'reference',
                                            replace(d.reference::text, '-', ''))
                    ELSE jsonb_build_object('ok', false, 'error_code', d.problem) END
               ORDER BY d.ord),
           array_agg(DISTINCT d.grantee_id) FILTER (WHERE d.problem IS NULL AND d.on_server)
    INTO done.results, done.touched
    FROM decided AS d;
    IF cardinality(done.touched) > 0 THEN
        done.touched := done.touched || work.caller_id;
    END IF;
    RETURN done;
END
$$;

-- Cancels the caller's current grants, in the order given.
CREATE FUNCTION authsetting.cancel_grants(work authsetting.change,
                                          items authsetting.request_item[])
RETURNS authsetting.outcome
LANGUAGE plpgsql VOLATILE
AS $$
DECLARE
    done authsetting.outcome;
BEGIN
    WITH judged AS MATERIALIZED (
        SELECT q.ord, a.id AS account_id, g.reference, g.grantee_id, g.first_day, g.last_day,
               g.ratio, u.data_version AS grantee_now,
               CASE WHEN a.id IS NULL THEN 'account_missing'
                    WHEN g.reference IS NULL THEN 'not_granted'
                    WHEN u.name IS DISTINCT FROM q.name THEN 'granted_to_other' END AS problem
        FROM unnest(items) WITH ORDINALITY
             AS q (kind, name, platform_id, broker_id, account_sub_type, account_number, first_day,
                   last_day, ratio, on_server, enabled, password_failed, verifier, reference,
                   grants, ord)
        LEFT JOIN authsetting.accounts AS a
               ON a.account_number = q.account_number AND a.broker_id = q.broker_id
              AND a.platform_id = q.platform_id AND a.account_sub_type = q.account_sub_type
              AND a.owner_id = work.caller_id
        LEFT JOIN authsetting.grants AS g ON g.account_id = a.id AND g.state = 2
        LEFT JOIN authsetting.users AS u ON u.id = g.grantee_id
    ), decided AS MATERIALIZED (
        SELECT j.ord, j.account_id, j.reference, j.grantee_id, j.first_day, j.last_day, j.ratio,
               j.grantee_now,
               CASE WHEN j.account_id IS NOT NULL
                     AND j.ord > min(j.ord) FILTER (WHERE j.problem IS NULL)
                                 OVER (PARTITION BY j.account_id)
                    THEN 'not_granted' ELSE j.problem END AS problem
        FROM judged AS j
    ), ended AS (
        UPDATE authsetting.grants AS g
        SET state = 3, ended_at = work.at, grantor_version = work.next_version,
            grantee_version = d.grantee_now + 1
        FROM decided AS d
        WHERE d.problem IS NULL AND g.reference = d.reference
    ), written AS (
        INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id, action,
                                             account_id, first_day, last_day, ratio, error)
        SELECT work.at, work.caller_id, work.caller_id,
               CASE WHEN d.problem IS NULL THEN d.grantee_id END, 'cancel', d.account_id,
               CASE WHEN d.problem IS NULL THEN d.first_day END,
               CASE WHEN d.problem IS NULL THEN d.last_day END,
               CASE WHEN d.problem IS NULL THEN d.ratio END, coalesce(d.problem, '')
        FROM decided AS d ORDER BY d.ord
    )
    SELECT jsonb_agg(CASE WHEN d.problem IS NULL THEN jsonb_build_object('ok', true)
                          ELSE jsonb_build_object('ok', false, 'error_code', d.problem) END
                     ORDER BY d.ord),
           array_agg(DISTINCT d.grantee_id) FILTER (WHERE d.problem IS NULL)
    INTO done.results, done.touched
    FROM decided AS d;
    IF cardinality(done.touched) > 0 THEN
        done.touched := done.touched || work.caller_id;
    END IF;
    RETURN done;
END
$$;

-- Redeems what a file holds: each grant by itself. A grant of which the caller is not the grantee
-- leaves no trace, and nothing but that is said about it.
CREATE FUNCTION authsetting.redeem_grants(work authsetting.change, file jsonb)
RETURNS authsetting.outcome
LANGUAGE plpgsql VOLATILE
AS $$
DECLARE
    done authsetting.outcome;
    item authsetting.request_item;
    row_of record;
    problem text;
    results jsonb[] := '{}';
BEGIN
    done.touched := '{}';
    FOR item IN SELECT * FROM jsonb_populate_recordset(NULL::authsetting.request_item, file) LOOP
        SELECT g.reference, g.grantor_id, g.grantee_id, g.account_id, g.first_day, g.last_day,
               g.ratio, g.source, g.state, g.redeemed_at, a.owner_id, a.account_private,
               (a.platform_id, a.broker_id::text, a.account_sub_type, a.account_number::text)
                   IS NOT DISTINCT FROM
               (item.platform_id, item.broker_id, item.account_sub_type, item.account_number)
                   AS is_account
        INTO row_of
        FROM authsetting.grants AS g
        JOIN authsetting.accounts AS a ON a.id = g.account_id
        WHERE g.reference = authsetting.parsed_reference(item.reference);
        problem := CASE
            WHEN row_of.reference IS NULL THEN 'reference_missing'
            WHEN row_of.grantee_id <> work.caller_id THEN 'not_for_caller'
            WHEN row_of.state = 3 THEN 'cancelled'
            WHEN row_of.state = 4 OR row_of.last_day < work.today THEN 'expired'
            WHEN row_of.state = 1 THEN 'not_effective'
            WHEN row_of.source <> 2 THEN 'not_a_file'
            WHEN row_of.redeemed_at IS NOT NULL THEN 'redeemed_already'
            WHEN row_of.owner_id <> row_of.grantor_id THEN 'owner_changed'
            WHEN NOT row_of.is_account THEN 'altered'
            ELSE '' END;
        IF problem = '' THEN
            UPDATE authsetting.grants AS g
            SET redeemed_at = work.at, grantee_version = work.next_version
            WHERE g.reference = row_of.reference AND g.state = 2 AND g.redeemed_at IS NULL;
            IF NOT FOUND THEN
                problem := 'redeemed_already';
            END IF;
        END IF;
        IF problem NOT IN ('reference_missing', 'not_for_caller') THEN
            INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id,
                                                 action, account_id, first_day, last_day, ratio,
                                                 error)
            VALUES (work.at, work.caller_id, work.caller_id, row_of.grantor_id, 'redeem',
                    row_of.account_id, row_of.first_day, row_of.last_day, row_of.ratio, problem);
        END IF;
        IF problem = '' THEN
            done.touched := ARRAY[work.caller_id];
            results := results || jsonb_build_object('ok', true, 'secret', row_of.account_private);
        ELSE
            results := results || jsonb_build_object('ok', false, 'error_code', problem);
        END IF;
    END LOOP;
    done.results := jsonb_build_array(jsonb_build_object(
        'ok', NOT EXISTS (SELECT FROM unnest(results) AS r (result) WHERE r.result ? 'error_code'),
        'grants', to_jsonb(results)));
    RETURN done;
END
$$;
RESET ROLE;
