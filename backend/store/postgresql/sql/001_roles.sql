-- Roles and schemas. Each numbered file is one version of the schema; they are run in their order,
-- each as one text, inside one transaction, by a superuser. Roles belong to the whole server, so
-- they may be there already.
--
-- authsetting_owner             owns the tables and the functions; nobody signs in with it.
-- authsetting_accounts_manager  owns the functions that make and change the logins of sub-users and
--                               nothing else; only they act as it, which may make roles.
-- authsetting_user              what every person's login is a member of.
--
-- A login's name is made from the user's name by authsetting.login_name(), because the server shows
-- the names of its roles to everybody.
DO $$
BEGIN
    IF current_setting('server_encoding') <> 'UTF8' THEN
        RAISE EXCEPTION 'the database must be encoded in UTF8';
    END IF;
    IF NOT EXISTS (SELECT FROM pg_catalog.pg_roles WHERE rolname = 'authsetting_owner') THEN
        CREATE ROLE authsetting_owner NOLOGIN NOINHERIT;
    END IF;
    IF NOT EXISTS (SELECT FROM pg_catalog.pg_roles WHERE rolname = 'authsetting_user') THEN
        CREATE ROLE authsetting_user NOLOGIN;
    END IF;
    IF NOT EXISTS (SELECT FROM pg_catalog.pg_roles
                   WHERE rolname = 'authsetting_accounts_manager') THEN
        CREATE ROLE authsetting_accounts_manager NOLOGIN CREATEROLE;
        -- For ending the connections of a disabled sub-user.
        GRANT pg_signal_backend TO authsetting_accounts_manager;
    END IF;
    EXECUTE pg_catalog.format('REVOKE ALL ON DATABASE %I FROM PUBLIC',
                              pg_catalog.current_database());
    EXECUTE pg_catalog.format('GRANT CONNECT ON DATABASE %I TO authsetting_user',
                              pg_catalog.current_database());
END
$$;

REVOKE ALL ON SCHEMA public FROM PUBLIC;
-- Large objects are nobody's business here, and would fill the disk.
REVOKE EXECUTE ON FUNCTION pg_catalog.lo_create(oid), pg_catalog.lo_creat(integer),
    pg_catalog.lo_from_bytea(oid, bytea) FROM PUBLIC;
CREATE SCHEMA authsetting AUTHORIZATION authsetting_owner;
CREATE SCHEMA authsetting_accounts AUTHORIZATION authsetting_accounts_manager;
GRANT USAGE ON SCHEMA authsetting TO authsetting_user, authsetting_accounts_manager;
GRANT USAGE ON SCHEMA authsetting_accounts TO authsetting_owner;

ALTER DEFAULT PRIVILEGES FOR ROLE authsetting_owner REVOKE ALL ON FUNCTIONS FROM PUBLIC;
ALTER DEFAULT PRIVILEGES FOR ROLE authsetting_owner REVOKE ALL ON TYPES FROM PUBLIC;
ALTER DEFAULT PRIVILEGES FOR ROLE authsetting_accounts_manager REVOKE ALL ON FUNCTIONS FROM PUBLIC;

SET LOCAL ROLE authsetting_owner;
CREATE TABLE authsetting.schema_version (
    version integer NOT NULL
);
INSERT INTO authsetting.schema_version (version) VALUES (0);
RESET ROLE;
