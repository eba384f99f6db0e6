-- The functions by which clients change something. The caller is whoever signed in (session_user);
-- every function is one whole change, and whatever a session has set cannot bend it. Compiling the
-- statements takes longer than running them.
SET LOCAL ROLE authsetting_owner;

-- Enables or disables a sub-user of the caller.
CREATE FUNCTION authsetting.set_sub_user(work authsetting.change, item authsetting.request_item,
                                         password_failed boolean)
RETURNS authsetting.outcome
LANGUAGE plpgsql VOLATILE
AS $$
DECLARE
    done authsetting.outcome;
    sub_user record;
    problem text := '';
BEGIN
    done.touched := '{}';
    SELECT u.id, u.enabled INTO sub_user FROM authsetting.users AS u
    WHERE u.name = item."user" AND u.owner_id = work.caller_id;
    IF sub_user.id IS NULL THEN
        done.results := '[{"ok": false, "error_code": "sub_user_missing"}]';
        RETURN done;
    END IF;
    IF item.enabled IS NULL THEN
        problem := 'request_invalid';
    ELSIF item.enabled AND (password_failed OR coalesce(item.password_failed, false)) THEN
        problem := 'password_not_set';
    ELSE
        UPDATE authsetting.users AS u SET enabled = item.enabled WHERE u.id = sub_user.id;
        PERFORM authsetting_accounts.set_login_enabled(item."user", item.enabled);
        IF NOT item.enabled THEN
            PERFORM authsetting_accounts.end_connections(item."user");
        END IF;
        IF sub_user.enabled <> item.enabled THEN
            done.touched := ARRAY[work.caller_id, sub_user.id];
        END IF;
    END IF;
    INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id, action,
                                         detail, error)
    VALUES (work.at, work.caller_id, work.caller_id, sub_user.id, 'sub_user_state',
            CASE WHEN problem <> '' THEN '' WHEN item.enabled THEN 'enabled' ELSE 'disabled' END,
            problem);
    done.results := CASE WHEN problem = '' THEN '[{"ok": true}]'::jsonb
                         ELSE jsonb_build_array(jsonb_build_object('ok', false,
                                                                   'error_code', problem)) END;
    RETURN done;
END
$$;

-- Gives a sub-user of the caller the password behind a verifier.
CREATE FUNCTION authsetting.set_sub_user_password(work authsetting.change,
                                                  item authsetting.request_item)
RETURNS authsetting.outcome
LANGUAGE plpgsql VOLATILE
AS $$
DECLARE
    done authsetting.outcome;
    sub_user bigint;
    problem text := '';
BEGIN
    done.touched := '{}';
    SELECT u.id INTO sub_user FROM authsetting.users AS u
    WHERE u.name = item."user" AND u.owner_id = work.caller_id;
    IF sub_user IS NULL THEN
        done.results := '[{"ok": false, "error_code": "sub_user_missing"}]';
        RETURN done;
    END IF;
    IF authsetting.is_verifier(item.verifier) THEN
        PERFORM authsetting_accounts.set_login_password(item."user", item.verifier);
    ELSE
        problem := 'verifier_invalid';
    END IF;
    INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id, action,
                                         error)
    VALUES (work.at, work.caller_id, work.caller_id, sub_user, 'sub_user_password', problem);
    done.results := CASE WHEN problem = '' THEN '[{"ok": true}]'::jsonb
                         ELSE '[{"ok": false, "error_code": "verifier_invalid"}]'::jsonb END;
    RETURN done;
END
$$;

-- May the caller grant to that user?
CREATE FUNCTION authsetting.check_user(caller bigint, user_name text) RETURNS jsonb
LANGUAGE sql STABLE
RETURN (SELECT CASE WHEN p.problem IS NULL THEN '{"ok": true}'::jsonb
                    ELSE jsonb_build_object('ok', false, 'error_code', p.problem) END
        FROM (SELECT 1) AS one
        LEFT JOIN authsetting.users AS u ON u.name = user_name
        CROSS JOIN LATERAL
            (SELECT authsetting.grantee_problem(u.id, u.enabled, caller)) AS p (problem));

-- Requests of one kind that follow each other.
CREATE FUNCTION authsetting.run_of_kind(work authsetting.change, kind text,
                                        items authsetting.request_item[],
                                        failed_passwords text[])
RETURNS authsetting.outcome
LANGUAGE plpgsql VOLATILE
AS $$
DECLARE
    done authsetting.outcome;
BEGIN
    CASE kind
    WHEN 'add' THEN
        done := authsetting.add_grants(work, items);
    WHEN 'cancel' THEN
        done := authsetting.cancel_grants(work, items);
    WHEN 'redeem' THEN
        done := authsetting.redeem_grants(work, items[1].grants);
    WHEN 'enable' THEN
        done := authsetting.set_sub_user(work, items[1], items[1]."user" = ANY (failed_passwords));
    WHEN 'password' THEN
        done := authsetting.set_sub_user_password(work, items[1]);
    WHEN 'check' THEN
        done.results := jsonb_build_array(authsetting.check_user(work.caller_id, items[1]."user"));
    ELSE
        done.results := '[{"ok": false, "error_code": "request_invalid"}]';
    END CASE;
    RETURN done;
END
$$;

-- Runs a burst of requests in the order given, in one transaction, a refused one not failing the
-- others. What each kind takes:
--   add       user, platform_id, broker_id, account_sub_type, account_number, first_day, last_day,
--             ratio (null: none), on_server (otherwise prepared for a file)
--   cancel    user, platform_id, broker_id, account_sub_type, account_number
--   check     user
--   enable    user, enabled, password_failed (a password sent before could not be set)
--   password  user, verifier
--   redeem    grants: reference, platform_id, broker_id, account_sub_type, account_number of each
-- Returns {"version_before" and "version": the caller's data_version before and after, "results":
-- [...]}, one result per request: "ok", "error_code" of a refusal, "reference" of a new grant, for
-- a file "grants" with "ok", "error_code" and the account's "secret".
--
-- The same request_id again returns what the first call returned, also while that is still running.
CREATE FUNCTION authsetting.run_requests(request_id uuid, requests jsonb) RETURNS jsonb
LANGUAGE plpgsql VOLATILE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
SET standard_conforming_strings = on SET "DateStyle" = 'ISO, YMD' SET extra_float_digits = 1
AS $$
DECLARE
    items authsetting.request_item[] := ARRAY(
        SELECT r FROM jsonb_populate_recordset(NULL::authsetting.request_item, requests) AS r);
    kinds text[] := ARRAY(SELECT DISTINCT coalesce(i.kind, '') FROM unnest(items) AS i);
    work authsetting.change;
    done authsetting.outcome;
    answer jsonb;
    item authsetting.request_item;
    run authsetting.request_item[] := '{}';
    run_kind text;
    results jsonb[] := '{}';
    failed_passwords text[] := '{}';
BEGIN
    IF jsonb_typeof(requests) IS DISTINCT FROM 'array' OR request_id IS NULL THEN
        RAISE EXCEPTION 'not a burst of requests' USING ERRCODE = 'invalid_parameter_value';
    END IF;
    IF kinds <@ ARRAY['check'] THEN
        work.caller_id := authsetting.caller_id();
        SELECT u.enabled, u.data_version INTO work.enabled, work.next_version
        FROM authsetting.users AS u WHERE u.id = work.caller_id;
        RETURN jsonb_build_object('version_before', work.next_version,
                                  'version', work.next_version, 'results', coalesce(
            (SELECT jsonb_agg(CASE WHEN work.enabled
                                   THEN authsetting.check_user(work.caller_id, i."user")
                                   ELSE '{"ok": false, "error_code": "caller_disabled"}' END)
             FROM unnest(items) AS i), '[]'));
    END IF;

    work := authsetting.start_change(
        ARRAY(SELECT DISTINCT i."user" FROM unnest(items) AS i WHERE i."user" IS NOT NULL),
        CASE WHEN 'redeem' = ANY (kinds) THEN
            ARRAY(SELECT authsetting.parsed_reference(g.reference)
                  FROM unnest(items) AS i,
                       jsonb_populate_recordset(NULL::authsetting.request_item, i.grants) AS g
                  WHERE i.kind = 'redeem') END);
    IF NOT work.enabled THEN
        RETURN jsonb_build_object('version_before', work.next_version - 1,
                                  'version', authsetting.finish_change(work), 'results',
            (SELECT jsonb_agg('{"ok": false, "error_code": "caller_disabled"}'::jsonb)
             FROM unnest(items)));
    END IF;
    SELECT r.result INTO answer FROM authsetting.requests AS r
    WHERE r.user_id = work.caller_id AND r.request_id = run_requests.request_id;
    IF FOUND THEN
        PERFORM authsetting.finish_change(work);
        RETURN answer;
    END IF;

    IF kinds <@ ARRAY['add'] OR kinds <@ ARRAY['cancel'] THEN
        done := authsetting.run_of_kind(work, kinds[1], items, failed_passwords);
        work.touched := work.touched || done.touched;
        answer := done.results;
    ELSE
        FOREACH item IN ARRAY items LOOP
            IF run_kind IS NOT NULL
               AND (run_kind <> coalesce(item.kind, '') OR run_kind NOT IN ('add', 'cancel')) THEN
                done := authsetting.run_of_kind(work, run_kind, run, failed_passwords);
                work.touched := work.touched || done.touched;
                results := results || done.results;
                IF run_kind = 'password' THEN
                    failed_passwords := CASE
                        WHEN done.results -> 0 ? 'error_code'
                        THEN failed_passwords || run[1]."user"
                        ELSE array_remove(failed_passwords, run[1]."user") END;
                END IF;
                run := '{}';
            END IF;
            run_kind := coalesce(item.kind, '');
            run := run || item;
        END LOOP;
        done := authsetting.run_of_kind(work, run_kind, run, failed_passwords);
        work.touched := work.touched || done.touched;
        results := results || done.results;
        answer := (SELECT jsonb_agg(e.result ORDER BY r.ord, e.ord)
                   FROM unnest(results) WITH ORDINALITY AS r (results, ord),
                        jsonb_array_elements(r.results) WITH ORDINALITY AS e (result, ord));
    END IF;

    answer := jsonb_build_object('version_before', work.next_version - 1,
                                 'version', authsetting.finish_change(work), 'results', answer);
    DELETE FROM authsetting.requests AS r
    WHERE r.user_id = work.caller_id AND r.made_at < work.at - interval '1 day';
    INSERT INTO authsetting.requests (user_id, request_id, made_at, result)
    VALUES (work.caller_id, request_id, work.at, answer);
    RETURN answer;
END
$$;

-- Makes every one of the prepared grants, or none, the current grant of its account, because the
-- file that carries them has been written. Each of `grants` has reference, user, platform_id,
-- broker_id, account_sub_type, account_number, first_day, last_day, ratio as the file has them.
-- With `repeat`, those that a file made current already are fine as they are. Returns
-- {"version_before", "version", "ok", "changed": [references]}, or "error_code" and "index" of the
-- first that cannot be: reference_missing, altered, not_prepared, or the code of a rule.
CREATE FUNCTION authsetting.commit_export(request_id uuid, grants jsonb, repeat boolean)
RETURNS jsonb
LANGUAGE plpgsql VOLATILE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
SET standard_conforming_strings = on SET "DateStyle" = 'ISO, YMD'
AS $$
DECLARE
    work authsetting.change;
    answer jsonb;
    refused record;
    changed uuid[];
BEGIN
    IF jsonb_typeof(grants) IS DISTINCT FROM 'array' OR request_id IS NULL OR repeat IS NULL THEN
        RAISE EXCEPTION 'not a list of grants' USING ERRCODE = 'invalid_parameter_value';
    END IF;
    work := authsetting.start_change('{}', ARRAY(
        SELECT authsetting.parsed_reference(g.reference)
        FROM jsonb_populate_recordset(NULL::authsetting.request_item, grants) AS g));
    IF NOT work.enabled THEN
        RETURN jsonb_build_object('version_before', work.next_version - 1,
                                  'version', authsetting.finish_change(work), 'ok', false,
                                  'error_code', 'caller_disabled', 'index', 0);
    END IF;
    SELECT r.result INTO answer FROM authsetting.requests AS r
    WHERE r.user_id = work.caller_id AND r.request_id = commit_export.request_id;
    IF FOUND THEN
        PERFORM authsetting.finish_change(work);
        RETURN answer;
    END IF;

    WITH judged AS MATERIALIZED (
        SELECT q.ord, g.reference, g.grantee_id, g.account_id, g.first_day, g.last_day, g.ratio,
               CASE
               WHEN g.reference IS NULL OR g.grantor_id <> work.caller_id THEN 'reference_missing'
               WHEN (a.platform_id, a.broker_id::text, a.account_sub_type, a.account_number::text,
                     u.name, g.first_day, g.last_day) IS DISTINCT FROM
                    (q.platform_id, q.broker_id, q.account_sub_type, q.account_number,
                     q.name, q.first_day, q.last_day)
                 OR (g.ratio IS NULL) <> (q.ratio IS NULL)
                 OR abs(g.ratio - q.ratio) > 1e-5 THEN 'altered'
               WHEN repeat AND g.source = 2
                AND (g.state = 2 OR row_number() OVER (PARTITION BY g.reference
                                                       ORDER BY q.ord) > 1) THEN ''
               WHEN g.state <> 1
                 OR row_number() OVER (PARTITION BY g.reference ORDER BY q.ord) > 1
               THEN 'not_prepared'
               WHEN a.owner_id <> work.caller_id THEN 'account_missing'
               WHEN EXISTS (SELECT FROM authsetting.sub_accounts AS s
                            WHERE s.child_id = a.id) THEN 'account_is_sub'
               WHEN EXISTS (SELECT FROM authsetting.sub_accounts AS s
                            WHERE s.parent_id = a.id) THEN 'account_has_subs'
               WHEN EXISTS (SELECT FROM authsetting.grants AS c
                            WHERE c.account_id = a.id AND c.state = 2) THEN 'account_granted'
               ELSE coalesce(
                   authsetting.grantee_problem(u.id, u.enabled, work.caller_id),
                   authsetting.days_problem(g.first_day, g.last_day, work.today)) END AS problem
        FROM ROWS FROM (jsonb_to_recordset(grants) AS (
                 reference text, "user" text, platform_id integer, broker_id text,
                 account_sub_type integer, account_number text, first_day date, last_day date,
                 ratio double precision)) WITH ORDINALITY
             AS q (reference, name, platform_id, broker_id, account_sub_type, account_number,
                   first_day, last_day, ratio, ord)
        LEFT JOIN authsetting.grants AS g
               ON g.reference = authsetting.parsed_reference(q.reference)
        LEFT JOIN authsetting.accounts AS a ON a.id = g.account_id
        LEFT JOIN authsetting.users AS u ON u.id = g.grantee_id
    ), first_refused AS MATERIALIZED (
        SELECT j.ord, j.problem FROM judged AS j WHERE j.problem <> '' ORDER BY j.ord LIMIT 1
    ), made_current AS (
        UPDATE authsetting.grants AS g
        SET state = 2, grantor_version = work.next_version
        FROM judged AS j
        WHERE j.problem IS NULL AND g.reference = j.reference
          AND NOT EXISTS (SELECT FROM first_refused)
        RETURNING j.ord, j.reference, j.grantee_id, j.account_id, j.first_day, j.last_day, j.ratio
    ), written AS (
        INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id, action,
                                             account_id, first_day, last_day, ratio, error)
        SELECT work.at, work.caller_id, work.caller_id, m.grantee_id, 'export', m.account_id,
               m.first_day, m.last_day, m.ratio, ''
        FROM made_current AS m ORDER BY m.ord
    )
    SELECT (SELECT f.problem FROM first_refused AS f) AS problem,
           (SELECT f.ord - 1 FROM first_refused AS f) AS index,
           ARRAY(SELECT m.reference FROM made_current AS m ORDER BY m.ord) AS changed
    INTO refused;
    IF refused.problem IS NOT NULL THEN
        RETURN jsonb_build_object('version_before', work.next_version - 1,
                                  'version', authsetting.finish_change(work), 'ok', false,
                                  'error_code', refused.problem, 'index', refused.index);
    END IF;
    changed := refused.changed;
    IF cardinality(changed) > 0 THEN
        -- Nothing changes for the grantees before they redeem the file.
        work.touched := work.touched || work.caller_id;
    END IF;
    answer := jsonb_build_object(
        'version_before', work.next_version - 1, 'version', authsetting.finish_change(work),
        'ok', true,
        'changed', to_jsonb(ARRAY(SELECT replace(c::text, '-', '') FROM unnest(changed) AS c)));
    INSERT INTO authsetting.requests (user_id, request_id, made_at, result)
    VALUES (work.caller_id, request_id, work.at, answer);
    RETURN answer;
END
$$;

-- Makes the caller's file grants prepared again whose file could not be written after all.
CREATE FUNCTION authsetting.revert_export(refs text[]) RETURNS void
LANGUAGE plpgsql VOLATILE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
SET standard_conforming_strings = on SET "DateStyle" = 'ISO, YMD'
AS $$
DECLARE
    wanted uuid[] := ARRAY(SELECT authsetting.parsed_reference(r) FROM unnest(refs) AS r);
    work authsetting.change := authsetting.start_change('{}', wanted);
    ended integer;
BEGIN
    WITH taken_back AS (
        UPDATE authsetting.grants AS g SET state = 1, grantor_version = work.next_version
        WHERE g.reference = ANY (wanted) AND g.grantor_id = work.caller_id AND g.source = 2
          AND g.state = 2 AND g.redeemed_at IS NULL
        RETURNING g.grantee_id, g.account_id
    ), written AS (
        INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id, action,
                                             account_id, error)
        SELECT work.at, work.caller_id, work.caller_id, t.grantee_id, 'export', t.account_id,
               'file_not_written'
        FROM taken_back AS t
    )
    SELECT count(*) INTO ended FROM taken_back;
    IF ended > 0 THEN
        work.touched := work.touched || work.caller_id;
    END IF;
    PERFORM authsetting.finish_change(work);
END
$$;

-- Ends the grants of everybody whose last day has passed.
CREATE FUNCTION authsetting.settle() RETURNS void
LANGUAGE plpgsql VOLATILE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
AS $$
BEGIN
    PERFORM authsetting.finish_change(authsetting.start_change('{}', '{}'));
END
$$;

-- Makes a sub-user of the caller. '' or why not: not_allowed (sub-users have none themselves),
-- name_invalid, verifier_invalid, name_taken.
CREATE FUNCTION authsetting.create_sub_user(user_name text, verifier text) RETURNS text
LANGUAGE plpgsql VOLATILE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
SET standard_conforming_strings = on
AS $$
DECLARE
    work authsetting.change := authsetting.start_change('{}', '{}');
    problem text := '';
    sub_user bigint;
BEGIN
    IF NOT work.enabled OR EXISTS (SELECT FROM authsetting.users AS u
                                   WHERE u.id = work.caller_id AND u.owner_id IS NOT NULL) THEN
        problem := 'not_allowed';
    ELSIF authsetting.name_problem(user_name) <> '' THEN
        problem := 'name_invalid';
    ELSIF NOT authsetting.is_verifier(verifier) THEN
        problem := 'verifier_invalid';
    ELSIF EXISTS (SELECT FROM pg_roles WHERE rolname = authsetting.login_name(user_name)) THEN
        problem := 'name_taken';
    ELSE
        INSERT INTO authsetting.users (name, owner_id, position, enabled)
        SELECT user_name, work.caller_id,
               coalesce((SELECT max(u.position) + 1 FROM authsetting.users AS u
                         WHERE u.owner_id = work.caller_id), 1), true
        ON CONFLICT DO NOTHING
        RETURNING id INTO sub_user;
        IF sub_user IS NULL THEN
            problem := 'name_taken';
        ELSE
            PERFORM authsetting_accounts.create_login(user_name, verifier);
            INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id,
                                                 action, detail, error)
            VALUES (work.at, work.caller_id, work.caller_id, sub_user, 'sub_user_state', 'created',
                    '');
            work.touched := work.touched || work.caller_id;
        END IF;
    END IF;
    PERFORM authsetting.finish_change(work);
    RETURN problem;
END
$$;

-- Ends the connections of the caller's disabled sub-users. Called once more after disabling has
-- been committed, for a connection that was made until then.
CREATE FUNCTION authsetting.end_sub_user_connections() RETURNS void
LANGUAGE plpgsql VOLATILE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on SET jit = off
AS $$
BEGIN
    PERFORM authsetting_accounts.end_connections(u.name)
    FROM authsetting.users AS u
    JOIN authsetting.users AS o ON o.id = u.owner_id
    WHERE o.login = session_user::text AND o.enabled AND NOT u.enabled;
END
$$;

GRANT EXECUTE ON FUNCTION authsetting.run_requests(uuid, jsonb),
    authsetting.commit_export(uuid, jsonb, boolean), authsetting.revert_export(text[]),
    authsetting.settle(), authsetting.create_sub_user(text, text),
    authsetting.end_sub_user_connections()
    TO authsetting_user;
RESET ROLE;
