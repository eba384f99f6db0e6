-- A file that the server refuses leaves its trace, as a refused grant does.
SET LOCAL ROLE authsetting_owner;

-- Makes every one of the prepared grants, or none, the current grant of its account, because the
-- file that carries them has been written. Each of `grants` has reference, user, platform_id,
-- broker_id, account_sub_type, account_number, first_day, last_day, ratio as the file has them.
-- With `repeat`, those that a file made current already are fine as they are. Returns
-- {"version_before", "version", "ok", "changed": [references]}, or "error_code" and "index" of the
-- first that cannot be: reference_missing, altered, not_prepared, or the code of a rule. Then the
-- trail tells of every account of the caller's that no file carries it, and of the refused one why.
CREATE OR REPLACE FUNCTION authsetting.commit_export(request_id uuid, grants jsonb, repeat boolean)
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
        INSERT INTO authsetting.audit_trail (happened_at, actor_id, user_id, other_user_id, action,
                                             account_id, error)
        SELECT work.at, work.caller_id, work.caller_id, u.id, 'export', a.id,
               CASE WHEN q.ord - 1 = refused.index THEN refused.problem ELSE 'file_not_written' END
        FROM ROWS FROM (jsonb_to_recordset(grants) AS (
                 "user" text, platform_id integer, broker_id text, account_sub_type integer,
                 account_number text)) WITH ORDINALITY
             AS q (name, platform_id, broker_id, account_sub_type, account_number, ord)
        JOIN authsetting.accounts AS a
          ON (a.platform_id, a.broker_id::text, a.account_sub_type, a.account_number::text)
             = (q.platform_id, q.broker_id, q.account_sub_type, q.account_number)
         AND a.owner_id = work.caller_id
        LEFT JOIN authsetting.users AS u ON u.name = q.name
        ORDER BY q.ord;
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

RESET ROLE;
