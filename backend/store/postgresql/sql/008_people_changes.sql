-- What the administrator changes of people who are there: their passwords and whether they may sign
-- in. Both are written down with no actor and concern the user and whoever manages him.
SET LOCAL ROLE authsetting_owner;

-- Locks the rows of a user and of whoever manages him, in the order of their keys as every change
-- does. Returns the user's id.
CREATE FUNCTION authsetting.admin_lock_user(user_name text) RETURNS bigint
LANGUAGE plpgsql VOLATILE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
DECLARE
    target bigint := authsetting.admin_user_id(user_name);
BEGIN
    PERFORM FROM authsetting.users AS u
    WHERE u.id = target
       OR u.id = (SELECT s.owner_id FROM authsetting.users AS s WHERE s.id = target)
    ORDER BY u.id FOR NO KEY UPDATE;
    RETURN target;
END
$$;

-- Writes down what was done to a user and lets him and whoever manages him see it.
CREATE FUNCTION authsetting.admin_note_change(target bigint, action text, detail text) RETURNS void
LANGUAGE plpgsql VOLATILE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
BEGIN
    INSERT INTO authsetting.audit_trail (happened_at, user_id, other_user_id, action, detail, error)
    SELECT authsetting.server_time(), u.id, u.owner_id, admin_note_change.action,
           admin_note_change.detail, ''
    FROM authsetting.users AS u WHERE u.id = target;
    PERFORM authsetting.admin_touch(
        ARRAY(SELECT s.id FROM authsetting.users AS u,
                     LATERAL (VALUES (u.id), (u.owner_id)) AS s (id)
              WHERE u.id = target AND s.id IS NOT NULL));
END
$$;

-- Ends the connections of a user. To be called once more after the commit of what disabled him,
-- because until then his login still opens new ones.
CREATE FUNCTION authsetting.admin_end_connections(user_name text) RETURNS void
LANGUAGE plpgsql VOLATILE SET search_path = pg_catalog, authsetting, pg_temp
AS $$
DECLARE
    user_login name := authsetting.login_name(user_name);
BEGIN
    PERFORM pg_terminate_backend(a.pid) FROM pg_stat_activity AS a
    WHERE a.usename = user_login AND a.pid <> pg_backend_pid();
END
$$;

-- Open connections stay; who has to be shut out at once is to be disabled.
CREATE OR REPLACE FUNCTION authsetting.admin_set_password(user_name text, verifier text)
RETURNS void
LANGUAGE plpgsql VOLATILE
SET search_path = pg_catalog, authsetting, pg_temp SET standard_conforming_strings = on
SET lock_timeout = '20s'
AS $$
DECLARE
    target bigint := authsetting.admin_lock_user(user_name);
BEGIN
    IF NOT authsetting.is_verifier(verifier) THEN
        RAISE EXCEPTION 'not a verifier' USING ERRCODE = 'invalid_parameter_value';
    END IF;
    EXECUTE format('ALTER ROLE %I PASSWORD %L', authsetting.login_name(user_name), verifier);
    PERFORM authsetting.admin_note_change(target, 'admin_password', '');
END
$$;

-- Disabling ends the user's connections before anything else, so that no lock that he holds keeps
-- him enabled.
CREATE OR REPLACE FUNCTION authsetting.admin_set_enabled(user_name text, enabled boolean)
RETURNS void
LANGUAGE plpgsql VOLATILE
SET search_path = pg_catalog, authsetting, pg_temp SET standard_conforming_strings = on
SET lock_timeout = '20s'
AS $$
DECLARE
    target bigint;
BEGIN
    IF NOT enabled THEN
        PERFORM authsetting.admin_end_connections(user_name);
    END IF;
    target := authsetting.admin_lock_user(user_name);
    UPDATE authsetting.users AS u SET enabled = admin_set_enabled.enabled WHERE u.id = target;
    EXECUTE format(CASE WHEN enabled THEN 'ALTER ROLE %I LOGIN' ELSE 'ALTER ROLE %I NOLOGIN' END,
                   authsetting.login_name(user_name));
    PERFORM authsetting.admin_note_change(target, 'admin_state',
                                          CASE WHEN enabled THEN 'enabled' ELSE 'disabled' END);
END
$$;

RESET ROLE;
