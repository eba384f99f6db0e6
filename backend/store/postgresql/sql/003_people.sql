-- Who calls, what time it is, and the logins of sub-users.
SET LOCAL ROLE authsetting_owner;

-- The time that decides and is written down.
CREATE FUNCTION authsetting.server_time() RETURNS timestamptz
LANGUAGE sql VOLATILE
RETURN (SELECT coalesce(s.test_now, clock_timestamp()) FROM authsetting.settings AS s);

-- The calendar day of a moment in the exchange time zone.
CREATE FUNCTION authsetting.exchange_day(moment timestamptz) RETURNS date
LANGUAGE sql STABLE
RETURN (SELECT (moment AT TIME ZONE s.exchange_zone)::date FROM authsetting.settings AS s);

-- Why a text cannot be the name of a user: empty, too long, not normalized, or with characters that
-- show as nothing or change how their neighbours show. '' when it can.
CREATE FUNCTION authsetting.name_problem(user_name text) RETURNS text
LANGUAGE sql IMMUTABLE
RETURN CASE
    WHEN user_name IS NULL OR user_name = '' OR octet_length(user_name) > 63
        OR user_name IS NOT NFC NORMALIZED
        OR user_name ~ ('[' || chr(1) || '-' || chr(31) || chr(127) || '-' || chr(159) || chr(173)
                        || chr(1536) || '-' || chr(1541) || chr(1564) || chr(1757) || chr(1807)
                        || chr(2192) || chr(2193) || chr(2274)
                        || chr(6158) || chr(8203) || '-' || chr(8207) || chr(8232) || '-'
                        || chr(8238) || chr(8288) || '-' || chr(8303) || chr(65279)
                        || chr(65529) || '-' || chr(65531) || chr(69821) || chr(69837)
                        || chr(78896) || '-' || chr(78911) || chr(113824) || '-' || chr(113827)
                        || chr(119155) || '-' || chr(119162) || chr(917504) || '-' || chr(917631)
                        || ']') COLLATE "C"
    THEN 'name_invalid'
    ELSE ''
END;

-- Whether a text is a SCRAM-SHA-256 verifier with a cost between the usual one and one that a
-- client can bear.
CREATE FUNCTION authsetting.is_verifier(verifier text) RETURNS boolean
LANGUAGE sql IMMUTABLE
RETURN coalesce(
    verifier ~ ('^SCRAM-SHA-256[$][1-9][0-9]{3,5}:[A-Za-z0-9+/]{22,86}={0,2}'
                '[$][A-Za-z0-9+/]{43}=:[A-Za-z0-9+/]{43}=$') COLLATE "C"
    AND substring(verifier COLLATE "C" FROM '[$]([0-9]+):')::integer BETWEEN 4096 AND 600000,
    false);

-- The login of a sub-user of whoever is signed in; null for every other name. For the functions
-- below, which must not take anybody's word for whom they change.
CREATE FUNCTION authsetting.managed_login(sub_user text) RETURNS text
LANGUAGE sql STABLE SECURITY DEFINER
SET search_path = pg_catalog, authsetting, pg_temp SET row_security = on
AS $$
    SELECT s.login
    FROM authsetting.users AS s
    JOIN authsetting.users AS o ON o.id = s.owner_id
    WHERE s.name = sub_user AND o.login = session_user::text AND o.enabled
$$;
GRANT EXECUTE ON FUNCTION authsetting.managed_login(text) TO authsetting_accounts_manager;
GRANT EXECUTE ON FUNCTION authsetting.is_verifier(text) TO authsetting_accounts_manager;
RESET ROLE;

SET LOCAL ROLE authsetting_accounts_manager;

-- The login to be changed, or an error: a registered sub-user of whoever is signed in and, to be
-- quite sure, an ordinary login of this system's kind.
CREATE FUNCTION authsetting_accounts.login_to_change(sub_user text) RETURNS text
LANGUAGE plpgsql STABLE
SET search_path = pg_catalog, authsetting_accounts, pg_temp
AS $$
DECLARE
    login text := authsetting.managed_login(sub_user);
BEGIN
    IF login IS NULL OR login !~ '^as_[0-9a-f]{40}$'
       OR EXISTS (SELECT FROM pg_roles
                  WHERE rolname = login::name
                    AND (rolsuper OR rolcreaterole OR rolcreatedb OR rolreplication
                         OR rolbypassrls)) THEN
        RAISE EXCEPTION 'not a sub-user of the caller' USING ERRCODE = 'insufficient_privilege';
    END IF;
    RETURN login;
END
$$;

-- Makes the login of a sub-user whose row is there already.
CREATE FUNCTION authsetting_accounts.create_login(sub_user text, verifier text) RETURNS void
LANGUAGE plpgsql SECURITY DEFINER
SET search_path = pg_catalog, authsetting_accounts, pg_temp SET standard_conforming_strings = on
AS $$
BEGIN
    IF NOT authsetting.is_verifier(verifier) THEN
        RAISE EXCEPTION 'not a verifier' USING ERRCODE = 'invalid_parameter_value';
    END IF;
    EXECUTE format('CREATE ROLE %I LOGIN NOSUPERUSER NOCREATEDB NOCREATEROLE NOREPLICATION '
                   'NOBYPASSRLS INHERIT PASSWORD %L IN ROLE authsetting_user',
                   login_to_change(sub_user), verifier);
END
$$;

CREATE FUNCTION authsetting_accounts.set_login_enabled(sub_user text, enabled boolean) RETURNS void
LANGUAGE plpgsql SECURITY DEFINER
SET search_path = pg_catalog, authsetting_accounts, pg_temp SET standard_conforming_strings = on
AS $$
BEGIN
    EXECUTE format(CASE WHEN enabled THEN 'ALTER ROLE %I LOGIN' ELSE 'ALTER ROLE %I NOLOGIN' END,
                   login_to_change(sub_user));
END
$$;

CREATE FUNCTION authsetting_accounts.set_login_password(sub_user text, verifier text) RETURNS void
LANGUAGE plpgsql SECURITY DEFINER
SET search_path = pg_catalog, authsetting_accounts, pg_temp SET standard_conforming_strings = on
AS $$
BEGIN
    IF NOT authsetting.is_verifier(verifier) THEN
        RAISE EXCEPTION 'not a verifier' USING ERRCODE = 'invalid_parameter_value';
    END IF;
    EXECUTE format('ALTER ROLE %I PASSWORD %L', login_to_change(sub_user), verifier);
END
$$;

-- Ends the connections of a sub-user.
CREATE FUNCTION authsetting_accounts.end_connections(sub_user text) RETURNS void
LANGUAGE plpgsql SECURITY DEFINER
SET search_path = pg_catalog, authsetting_accounts, pg_temp
AS $$
DECLARE
    login name := login_to_change(sub_user);
BEGIN
    PERFORM pg_terminate_backend(a.pid)
    FROM pg_stat_activity AS a
    JOIN pg_roles AS r ON r.oid = a.usesysid
    WHERE r.rolname = login AND a.pid <> pg_backend_pid();
END
$$;

GRANT EXECUTE ON FUNCTION authsetting_accounts.create_login(text, text),
    authsetting_accounts.set_login_enabled(text, boolean),
    authsetting_accounts.set_login_password(text, text),
    authsetting_accounts.end_connections(text)
    TO authsetting_owner;
RESET ROLE;
