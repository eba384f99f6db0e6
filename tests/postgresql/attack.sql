-- What a hostile user with a login of his own and psql in hand can try. Read by attack.sh.
--   --# title
--   --@ attacker: what has to come of it: an SQLSTATE, `empty` (no row), `says TEXT` (exactly this
--       answer) or `harmless` (it works, and neither shows nor changes anything of others)
--   --@ control: who does the same rightfully, rolled back, and what that has to give: `works`,
--       `shows` (something that the attacker must not see) or exactly this answer
--   --@ each table: once for each of the tables, {table}, and one of its columns, {column}

--# read a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM {table};

--# count a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
SELECT count(*) FROM {table};

--# read with a leaky condition
--@ each table
--@ attacker: 42501
--@ control: administrator works
SELECT 1 FROM {table} AS t WHERE t::text::bytea IS NOT NULL AND 1 / length(t::text) >= 0;

--# explain a read
--@ each table
--@ attacker: 42501
--@ control: administrator works
EXPLAIN (ANALYZE, VERBOSE, BUFFERS) SELECT * FROM {table} AS t WHERE t::text ~ 'KEEP';

--# plan a read
--@ each table
--@ attacker: 42501
--@ control: administrator works
EXPLAIN SELECT * FROM {table};

--# copy a table out
--@ each table
--@ attacker: 42501
--@ control: administrator works
COPY {table} TO STDOUT;

--# copy a query out
--@ each table
--@ attacker: 42501
--@ control: administrator works
COPY (SELECT * FROM {table}) TO STDOUT;

--# copy into a table
--@ each table
--@ attacker: 42501
COPY {table} ({column}) FROM STDIN;
1
\.

--# insert into a table
--@ each table
--@ attacker: 42501
INSERT INTO {table} ({column}) VALUES (DEFAULT);

--# insert and fetch what was there
--@ each table
--@ attacker: 42501
INSERT INTO {table} ({column}) VALUES (DEFAULT) ON CONFLICT DO NOTHING RETURNING *;

--# update a table
--@ each table
--@ attacker: 42501
UPDATE {table} SET {column} = {column} RETURNING *;

--# delete from a table
--@ each table
--@ attacker: 42501
DELETE FROM {table} RETURNING *;

--# merge into a table
--@ each table
--@ attacker: 42501
MERGE INTO {table} AS t USING (SELECT 1) AS s ON true WHEN MATCHED THEN DELETE;

--# truncate a table
--@ each table
--@ attacker: 42501
TRUNCATE {table} CASCADE;

--# lock a table
--@ each table
--@ attacker: 42501
BEGIN;
LOCK TABLE {table} IN ACCESS EXCLUSIVE MODE;
ROLLBACK;

--# lock rows
--@ each table
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM {table} FOR UPDATE;

--# read through a cursor
--@ each table
--@ attacker: 42501
BEGIN;
DECLARE thief CURSOR FOR SELECT * FROM {table};
FETCH ALL FROM thief;
ROLLBACK;

--# read through a prepared statement
--@ each table
--@ attacker: 42501
--@ control: administrator works
PREPARE thief AS SELECT * FROM {table};
EXECUTE thief;
DEALLOCATE thief;

--# read inside a block that catches the error
--@ each table
--@ attacker: harmless
DO $$
DECLARE
    said text;
    detail text;
    context text;
BEGIN
    PERFORM t::text FROM {table} AS t;
    RAISE NOTICE 'got in KEEPOUT';
EXCEPTION WHEN OTHERS THEN
    GET STACKED DIAGNOSTICS said = MESSAGE_TEXT, detail = PG_EXCEPTION_DETAIL,
                            context = PG_EXCEPTION_CONTEXT;
    RAISE NOTICE '% % %', said, detail, context;
END
$$;

--# read as XML
--@ each table
--@ attacker: 42501
--@ control: administrator works
SELECT query_to_xml('SELECT * FROM {table}', true, false, '');

--# read the whole table as XML
--@ each table
--@ attacker: 42501
--@ control: administrator works
SELECT table_to_xml('{table}', true, false, '');

--# read a hidden column
--@ each table
--@ attacker: 42501
--@ control: administrator works
SELECT ctid, xmin, {column} FROM {table};

--# sample a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM {table} TABLESAMPLE SYSTEM (100);

--# turn row-level security off for a read
--@ each table
--@ attacker: 42501
--@ control: administrator works
SET row_security = off;
SELECT * FROM {table};

--# turn row-level security off
--@ each table
--@ attacker: 42501
--@ control: administrator works
ALTER TABLE {table} DISABLE ROW LEVEL SECURITY;

--# free the owner from row-level security
--@ each table
--@ attacker: 42501
--@ control: administrator works
ALTER TABLE {table} NO FORCE ROW LEVEL SECURITY;

--# add a policy
--@ each table
--@ attacker: 42501
--@ control: administrator works
CREATE POLICY thief ON {table} USING (true);

--# take the table
--@ each table
--@ attacker: 42501
--@ control: administrator works
ALTER TABLE {table} OWNER TO :"mallory";

--# take a right on a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
GRANT ALL ON {table} TO :"mallory";

--# give a right on a table to everybody
--@ each table
--@ attacker: 42501
--@ control: administrator works
GRANT SELECT ON {table} TO PUBLIC;

--# put a trigger on a table
--@ each table
--@ attacker: 42501
CREATE TRIGGER thief BEFORE INSERT ON {table} FOR EACH ROW EXECUTE FUNCTION pg_catalog.suppress_redundant_updates_trigger();

--# silence the triggers
--@ each table
--@ attacker: 42501
--@ control: administrator works
ALTER TABLE {table} DISABLE TRIGGER ALL;

--# put a rule on a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
CREATE RULE thief AS ON INSERT TO {table} DO ALSO SELECT 1;

--# index a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
CREATE INDEX thief ON {table} ({column});

--# collect statistics of a table
--@ each table
--@ attacker: 42501
CREATE STATISTICS thief ON {column}, ctid FROM {table};

--# comment on a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
COMMENT ON TABLE {table} IS 'thief';

--# rename a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
ALTER TABLE {table} RENAME TO thief;

--# drop a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
DROP TABLE {table} CASCADE;

--# inherit a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
CREATE TABLE public.thief () INHERITS ({table});

--# reference a table
--@ each table
--@ attacker: 42501
--@ control: administrator works
CREATE TEMPORARY TABLE thief (LIKE {table} INCLUDING ALL);

--# rebuild a table's indexes
--@ each table
--@ attacker: 42501
REINDEX TABLE {table};

--# cluster a table
--@ each table
--@ attacker: 42501
CLUSTER {table};

--# analyze a table
--@ each table
--@ attacker: harmless
ANALYZE {table};

--# read its statistics
--@ each table
--@ attacker: empty
SELECT * FROM pg_stats WHERE format('%I.%I', schemaname, tablename) = '{table}';

--# size and counters of a table
--@ each table
--@ attacker: harmless
SELECT pg_relation_size('{table}') >= 0, pg_relation_filepath('{table}') IS NOT NULL,
       (SELECT count(*) FROM pg_stat_all_tables WHERE relid = '{table}'::regclass);

--# read a sequence (grants_serial_seq)
--@ attacker: 42501
--@ control: administrator works
SELECT last_value FROM authsetting.grants_serial_seq;

--# advance a sequence (grants_serial_seq)
--@ attacker: 42501
--@ control: administrator works
SELECT nextval('authsetting.grants_serial_seq');

--# set a sequence back (grants_serial_seq)
--@ attacker: 42501
--@ control: administrator works
SELECT setval('authsetting.grants_serial_seq', 1000000);

--# current value of a sequence (grants_serial_seq)
--@ attacker: 42501
SELECT currval('authsetting.grants_serial_seq');

--# last value of a sequence (grants_serial_seq)
--@ attacker: 42501
--@ control: administrator works
SELECT pg_sequence_last_value('authsetting.grants_serial_seq'::regclass);

--# restart a sequence (grants_serial_seq)
--@ attacker: 42501
ALTER SEQUENCE authsetting.grants_serial_seq RESTART;

--# read a sequence (audit_trail_serial_seq)
--@ attacker: 42501
--@ control: administrator works
SELECT last_value FROM authsetting.audit_trail_serial_seq;

--# advance a sequence (audit_trail_serial_seq)
--@ attacker: 42501
--@ control: administrator works
SELECT nextval('authsetting.audit_trail_serial_seq');

--# set a sequence back (audit_trail_serial_seq)
--@ attacker: 42501
--@ control: administrator works
SELECT setval('authsetting.audit_trail_serial_seq', 1000000);

--# current value of a sequence (audit_trail_serial_seq)
--@ attacker: 42501
SELECT currval('authsetting.audit_trail_serial_seq');

--# last value of a sequence (audit_trail_serial_seq)
--@ attacker: 42501
--@ control: administrator works
SELECT pg_sequence_last_value('authsetting.audit_trail_serial_seq'::regclass);

--# restart a sequence (audit_trail_serial_seq)
--@ attacker: 42501
ALTER SEQUENCE authsetting.audit_trail_serial_seq RESTART;

--# values of all sequences
--@ attacker: empty
SELECT * FROM pg_sequences WHERE schemaname = 'authsetting' AND last_value IS NOT NULL;

--# last value of the session
--@ attacker: 55000
SELECT lastval();

--# read the model
--@ attacker: says 4
--@ control: aliceKEEPOUT 12
SELECT count(*) FROM authsetting.read_model(-1);

--# read somebody's accounts
--@ attacker: empty
--@ control: aliceKEEPOUT shows
SELECT account_number, account_private FROM authsetting.read_model(-1) WHERE account_number LIKE 'A-%' OR account_number LIKE 'B-%';

--# read the model of before time
--@ attacker: harmless
--@ control: aliceKEEPOUT shows
SELECT * FROM authsetting.read_model(-9223372036854775808);

--# read the changes since the beginning
--@ attacker: harmless
--@ control: aliceKEEPOUT shows
SELECT * FROM authsetting.read_model(0);

--# read the changes since null
--@ attacker: harmless
SELECT * FROM authsetting.read_model(NULL);

--# read the audit trail
--@ attacker: harmless
--@ control: aliceKEEPOUT shows
SELECT * FROM authsetting.read_audit(2147483647);

--# read others' audit entries
--@ attacker: says 0
--@ control: aliceKEEPOUT 6
SELECT count(*) FROM authsetting.read_audit(1000) WHERE actor <> 'mallory';

--# read no audit entries by a negative limit
--@ attacker: empty
SELECT * FROM authsetting.read_audit(-1);

--# sign in
--@ attacker: says mallory
--@ control: aliceKEEPOUT shows
SELECT user_name FROM authsetting.sign_in();

--# read the platforms
--@ attacker: says 3
--@ control: aliceKEEPOUT 3
SELECT count(*) FROM authsetting.read_environment();

--# read with a condition that leaks what it sees
--@ attacker: harmless
--@ control: aliceKEEPOUT shows
SELECT account_number FROM authsetting.read_model(-1) AS m
WHERE 1 / (length(m::text) + 1) >= 0 AND m::text::bytea IS NOT NULL;

--# explain a reading function
--@ attacker: harmless
EXPLAIN (ANALYZE, VERBOSE, BUFFERS, SETTINGS) SELECT * FROM authsetting.read_model(-1);

--# explain a changing function
--@ attacker: harmless
EXPLAIN (ANALYZE, VERBOSE) SELECT authsetting.run_requests(gen_random_uuid(), '[{"kind":"check","user":"eve"}]');

--# have every plan and message printed
--@ attacker: harmless
SET client_min_messages = debug5;
SET debug_print_parse = on;
SET debug_print_rewritten = on;
SET debug_print_plan = on;
SET debug_pretty_print = off;
SELECT count(*) FROM authsetting.read_model(-1);
SELECT count(*) FROM authsetting.read_audit(10);
SELECT authsetting.run_requests(gen_random_uuid(), '[{"kind":"cancel","user":"eve","platform_id":1,"broker_id":"9999","account_sub_type":0,"account_number":"A-1"}]')
       -> 'results' -> 0 ->> 'error_code';

--# read while no planner hint is left
--@ attacker: harmless
SET enable_indexscan = off;
SET enable_bitmapscan = off;
SET enable_hashjoin = off;
SET enable_nestloop = off;
SELECT count(*) FROM authsetting.read_model(-1);

--# print parameters in errors
--@ attacker: 22P02
SET plpgsql.print_strict_params = on;
SET plpgsql.extra_errors = 'all';
SELECT authsetting.run_requests(gen_random_uuid(), '[{"kind":"add","platform_id":"x"}]');

--# act as another user
--@ attacker: 42501
--@ control: administrator works
SET ROLE :"alice";

--# sign in as another user in the same session
--@ attacker: 42501
--@ control: administrator works
SET SESSION AUTHORIZATION :"alice";

--# act as a grantee
--@ attacker: 42501
--@ control: administrator works
SET ROLE :"bob";

--# sign in as a grantee in the same session
--@ attacker: 42501
--@ control: administrator works
SET SESSION AUTHORIZATION :"bob";

--# act as authsetting_owner
--@ attacker: 42501
--@ control: administrator works
SET ROLE authsetting_owner;

--# become a member of authsetting_owner
--@ attacker: 42501
--@ control: administrator works
GRANT authsetting_owner TO :"mallory";

--# act as authsetting_accounts_manager
--@ attacker: 42501
--@ control: administrator works
SET ROLE authsetting_accounts_manager;

--# become a member of authsetting_accounts_manager
--@ attacker: 42501
--@ control: administrator works
GRANT authsetting_accounts_manager TO :"mallory";

--# act as postgres
--@ attacker: 42501
--@ control: administrator works
SET ROLE postgres;

--# become a member of postgres
--@ attacker: 42501
GRANT postgres TO :"mallory";

--# act as pg_read_all_data
--@ attacker: 42501
--@ control: administrator works
SET ROLE pg_read_all_data;

--# become a member of pg_read_all_data
--@ attacker: 42501
--@ control: administrator works
GRANT pg_read_all_data TO :"mallory";

--# act as pg_signal_backend
--@ attacker: 42501
--@ control: administrator works
SET ROLE pg_signal_backend;

--# become a member of pg_signal_backend
--@ attacker: 42501
--@ control: administrator works
GRANT pg_signal_backend TO :"mallory";

--# act as pg_read_all_stats
--@ attacker: 42501
--@ control: administrator works
SET ROLE pg_read_all_stats;

--# become a member of pg_read_all_stats
--@ attacker: 42501
--@ control: administrator works
GRANT pg_read_all_stats TO :"mallory";

--# act as pg_execute_server_program
--@ attacker: 42501
--@ control: administrator works
SET ROLE pg_execute_server_program;

--# become a member of pg_execute_server_program
--@ attacker: 42501
--@ control: administrator works
GRANT pg_execute_server_program TO :"mallory";

--# call as the group of all users
--@ attacker: says mallory
SET ROLE authsetting_user;
SELECT user_name FROM authsetting.sign_in();

--# read as the group of all users
--@ attacker: 42501
SET ROLE authsetting_user;
SELECT * FROM authsetting.users;

--# become a member of another login
--@ attacker: 42501
--@ control: administrator works
GRANT :"alice" TO :"mallory";

--# make somebody a member of one's own login
--@ attacker: 42501
--@ control: administrator works
GRANT :"mallory" TO :"alice";

--# take somebody's membership
--@ attacker: 42501
--@ control: administrator works
REVOKE authsetting_user FROM :"alice";

--# bring somebody into the group
--@ attacker: 42501
--@ control: administrator works
GRANT authsetting_user TO postgres;

--# shadow functions by the search path
--@ attacker: says 4
SET search_path = pg_temp, public, authsetting, pg_catalog;
SELECT count(*) FROM authsetting.read_model(-1);

--# call without any schema in the path
--@ attacker: says 4
SET search_path = '';
SELECT count(*) FROM authsetting.read_model(-1);

--# make a function of one's own
--@ attacker: 42501
--@ control: administrator works
CREATE FUNCTION pg_temp.now() RETURNS timestamptz LANGUAGE sql AS 'SELECT NULL::timestamptz';

--# make a temporary table
--@ attacker: 42501
--@ control: administrator works
CREATE TEMPORARY TABLE users (id bigint, name text, login text);

--# select into a temporary table
--@ attacker: 42501
--@ control: administrator works
SELECT 1 AS id INTO TEMPORARY grants;

--# make a temporary view
--@ attacker: 42501
--@ control: administrator works
CREATE TEMPORARY VIEW grants AS SELECT 1;

--# make a temporary sequence
--@ attacker: 42501
--@ control: administrator works
CREATE TEMPORARY SEQUENCE thief;

--# make a table in authsetting
--@ attacker: 42501
--@ control: administrator works
CREATE TABLE authsetting.thief (id int);

--# make a function in authsetting
--@ attacker: 42501
--@ control: administrator works
CREATE FUNCTION authsetting.clock_timestamp() RETURNS timestamptz LANGUAGE sql AS 'SELECT NULL::timestamptz';

--# make a view in authsetting
--@ attacker: 42501
--@ control: administrator works
CREATE VIEW authsetting.thief AS SELECT 1;

--# make an operator in authsetting
--@ attacker: 42501
CREATE OPERATOR authsetting.= (LEFTARG = uuid, RIGHTARG = text, FUNCTION = pg_catalog.texteq);

--# make a type in authsetting
--@ attacker: 42501
--@ control: administrator works
CREATE TYPE authsetting.thief AS (id int);

--# make a domain in authsetting
--@ attacker: 42501
--@ control: administrator works
CREATE DOMAIN authsetting.thief AS text;

--# take the schema authsetting
--@ attacker: 42501
--@ control: administrator works
ALTER SCHEMA authsetting OWNER TO :"mallory";

--# take rights on the schema authsetting
--@ attacker: harmless
--@ control: administrator works
GRANT ALL ON SCHEMA authsetting TO :"mallory";

--# drop the schema authsetting
--@ attacker: 42501
--@ control: administrator works
DROP SCHEMA authsetting CASCADE;

--# make a table in authsetting_accounts
--@ attacker: 42501
--@ control: administrator works
CREATE TABLE authsetting_accounts.thief (id int);

--# make a function in authsetting_accounts
--@ attacker: 42501
--@ control: administrator works
CREATE FUNCTION authsetting_accounts.clock_timestamp() RETURNS timestamptz LANGUAGE sql AS 'SELECT NULL::timestamptz';

--# make a view in authsetting_accounts
--@ attacker: 42501
--@ control: administrator works
CREATE VIEW authsetting_accounts.thief AS SELECT 1;

--# make an operator in authsetting_accounts
--@ attacker: 42501
CREATE OPERATOR authsetting_accounts.= (LEFTARG = uuid, RIGHTARG = text, FUNCTION = pg_catalog.texteq);

--# make a type in authsetting_accounts
--@ attacker: 42501
--@ control: administrator works
CREATE TYPE authsetting_accounts.thief AS (id int);

--# make a domain in authsetting_accounts
--@ attacker: 42501
--@ control: administrator works
CREATE DOMAIN authsetting_accounts.thief AS text;

--# take the schema authsetting_accounts
--@ attacker: 42501
--@ control: administrator works
ALTER SCHEMA authsetting_accounts OWNER TO :"mallory";

--# take rights on the schema authsetting_accounts
--@ attacker: 42501
--@ control: administrator works
GRANT ALL ON SCHEMA authsetting_accounts TO :"mallory";

--# drop the schema authsetting_accounts
--@ attacker: 42501
--@ control: administrator works
DROP SCHEMA authsetting_accounts CASCADE;

--# make a table in public
--@ attacker: 42501
--@ control: administrator works
CREATE TABLE public.thief (id int);

--# make a function in public
--@ attacker: 42501
--@ control: administrator works
CREATE FUNCTION public.clock_timestamp() RETURNS timestamptz LANGUAGE sql AS 'SELECT NULL::timestamptz';

--# make a view in public
--@ attacker: 42501
--@ control: administrator works
CREATE VIEW public.thief AS SELECT 1;

--# make an operator in public
--@ attacker: 42501
CREATE OPERATOR public.= (LEFTARG = uuid, RIGHTARG = text, FUNCTION = pg_catalog.texteq);

--# make a type in public
--@ attacker: 42501
--@ control: administrator works
CREATE TYPE public.thief AS (id int);

--# make a domain in public
--@ attacker: 42501
--@ control: administrator works
CREATE DOMAIN public.thief AS text;

--# take the schema public
--@ attacker: 42501
--@ control: administrator works
ALTER SCHEMA public OWNER TO :"mallory";

--# take rights on the schema public
--@ attacker: 42501
--@ control: administrator works
GRANT ALL ON SCHEMA public TO :"mallory";

--# drop the schema public
--@ attacker: 42501
--@ control: administrator works
DROP SCHEMA public CASCADE;

--# make a schema
--@ attacker: 42501
--@ control: administrator works
CREATE SCHEMA thief;

--# make an extension
--@ attacker: 42501
--@ control: administrator works
CREATE EXTENSION hstore SCHEMA authsetting;

--# make an untrusted language
--@ attacker: 42501
CREATE LANGUAGE thief HANDLER pg_catalog.plpgsql_call_handler;

--# make an event trigger
--@ attacker: 42501
CREATE EVENT TRIGGER thief ON ddl_command_start EXECUTE FUNCTION pg_catalog.suppress_redundant_updates_trigger();

--# make a publication
--@ attacker: 42501
CREATE PUBLICATION thief FOR ALL TABLES;

--# make a subscription
--@ attacker: 42501
CREATE SUBSCRIPTION thief CONNECTION 'dbname=authsetting' PUBLICATION thief WITH (connect = false);

--# make a foreign data wrapper
--@ attacker: 42501
--@ control: administrator works
CREATE FOREIGN DATA WRAPPER thief;

--# make a database
--@ attacker: 42501
CREATE DATABASE thief;

--# make a tablespace
--@ attacker: 42501
CREATE TABLESPACE thief LOCATION '/tmp';

--# drop the database
--@ attacker: 42501
DROP DATABASE authsetting;

--# make a cast
--@ attacker: 42501
CREATE CAST (uuid AS bytea) WITH INOUT AS IMPLICIT;

--# make a conversion
--@ attacker: 42501
CREATE CONVERSION public.thief FOR 'UTF8' TO 'LATIN1' FROM pg_catalog.utf8_to_iso8859_1;

--# change default rights of the owner
--@ attacker: 42501
--@ control: administrator works
ALTER DEFAULT PRIVILEGES FOR ROLE authsetting_owner GRANT SELECT ON TABLES TO :"mallory";

--# drop what another owns
--@ attacker: 42501
--@ control: administrator works
DROP OWNED BY :"alice";

--# take what the owner has
--@ attacker: 42501
REASSIGN OWNED BY authsetting_owner TO :"mallory";

--# replace run_requests
--@ attacker: 42501
CREATE OR REPLACE FUNCTION authsetting.run_requests(uuid, jsonb) RETURNS jsonb LANGUAGE sql AS 'SELECT NULL::jsonb';

--# change run_requests
--@ attacker: 42501
--@ control: administrator works
ALTER FUNCTION authsetting.run_requests(uuid, jsonb) SET search_path = pg_temp;

--# take run_requests
--@ attacker: 42501
ALTER FUNCTION authsetting.run_requests(uuid, jsonb) OWNER TO :"mallory";

--# drop run_requests
--@ attacker: 42501
--@ control: administrator works
DROP FUNCTION authsetting.run_requests(uuid, jsonb);

--# replace read_model
--@ attacker: 42501
CREATE OR REPLACE FUNCTION authsetting.read_model(bigint) RETURNS SETOF authsetting.model_row LANGUAGE sql AS 'SELECT NULL::authsetting.model_row';

--# change read_model
--@ attacker: 42501
--@ control: administrator works
ALTER FUNCTION authsetting.read_model(bigint) SET search_path = pg_temp;

--# take read_model
--@ attacker: 42501
ALTER FUNCTION authsetting.read_model(bigint) OWNER TO :"mallory";

--# drop read_model
--@ attacker: 42501
--@ control: administrator works
DROP FUNCTION authsetting.read_model(bigint);

--# replace managed_login
--@ attacker: 42501
CREATE OR REPLACE FUNCTION authsetting.managed_login(text) RETURNS text LANGUAGE sql AS 'SELECT NULL::text';

--# change managed_login
--@ attacker: 42501
--@ control: administrator works
ALTER FUNCTION authsetting.managed_login(text) SET search_path = pg_temp;

--# take managed_login
--@ attacker: 42501
ALTER FUNCTION authsetting.managed_login(text) OWNER TO :"mallory";

--# drop managed_login
--@ attacker: 42501
--@ control: administrator works
DROP FUNCTION authsetting.managed_login(text);

--# give a function away
--@ attacker: 42501
--@ control: administrator works
GRANT EXECUTE ON FUNCTION authsetting.admin_grants() TO :"mallory";

--# read the source of the functions
--@ attacker: harmless
SELECT count(pg_get_functiondef(p.oid)) > 30 FROM pg_proc AS p
WHERE p.pronamespace IN ('authsetting'::regnamespace, 'authsetting_accounts'::regnamespace);

--# cast to a row of a table
--@ attacker: says ()
SELECT jsonb_populate_record(NULL::authsetting.schema_version, '{}');

--# walk the rows of a type
--@ attacker: 42501
--@ control: administrator works
SELECT (u).name FROM (SELECT u FROM authsetting.users AS u) AS s;

--# give oneself SUPERUSER
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" SUPERUSER;

--# give oneself CREATEROLE
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" CREATEROLE;

--# give oneself CREATEDB
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" CREATEDB;

--# give oneself REPLICATION
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" REPLICATION;

--# give oneself BYPASSRLS
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" BYPASSRLS;

--# give oneself CONNECTION LIMIT -1
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" CONNECTION LIMIT -1;

--# give oneself VALID UNTIL 'infinity'
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" VALID UNTIL 'infinity';

--# give oneself NOLOGIN
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" NOLOGIN;

--# give oneself NOINHERIT
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"mallory" NOINHERIT;

--# rename one's login
--@ attacker: 0A000
ALTER ROLE :"mallory" RENAME TO thief;

--# take somebody's login name
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"alice" RENAME TO thief;

--# change somebody's password
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"alice" PASSWORD 'thief';

--# change a foreign sub-user's password
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"carol" PASSWORD 'thief';

--# change one's own sub-user past the functions
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"eve" PASSWORD 'thief';

--# change somebody's settings
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"alice" SET search_path = pg_temp;

--# change everybody's settings
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE ALL SET search_path = pg_temp;

--# change the database's settings
--@ attacker: 42501
--@ control: administrator works
ALTER DATABASE authsetting SET search_path = pg_temp;

--# change the server's settings
--@ attacker: 42501
ALTER SYSTEM SET log_statement = 'all';

--# lock somebody out
--@ attacker: 42501
--@ control: administrator works
ALTER ROLE :"alice" NOLOGIN;

--# drop somebody's login
--@ attacker: 42501
--@ control: administrator works
DROP ROLE :"alice";

--# make a login
--@ attacker: 42501
--@ control: administrator works
CREATE ROLE thief LOGIN IN ROLE authsetting_user;

--# comment on a login
--@ attacker: 42501
--@ control: administrator works
COMMENT ON ROLE :"alice" IS 'thief';

--# one's own settings for the next sign-in
--@ attacker: harmless
BEGIN;
ALTER ROLE :"mallory" SET search_path = pg_temp, public;
ROLLBACK;

--# read the passwords
--@ attacker: 42501
--@ control: administrator works
SELECT rolname, rolpassword FROM pg_authid;

--# read the passwords by the old view
--@ attacker: 42501
--@ control: administrator works
SELECT usename, passwd FROM pg_shadow;

--# passwords in the view of logins
--@ attacker: empty
SELECT * FROM pg_roles WHERE rolpassword <> '********';

--# names of people among the logins
--@ attacker: empty
SELECT rolname FROM pg_roles WHERE rolname !~ '^(as_[0-9a-f]{40}|authsetting_(owner|user|accounts_manager)|pg_[a-z_]+|postgres)$';

--# all names of logins
--@ attacker: harmless
SELECT rolname FROM pg_roles UNION ALL SELECT usename FROM pg_user UNION ALL SELECT groname FROM pg_group;

--# names of logins by their numbers
--@ attacker: harmless
SELECT i::oid::regrole, pg_get_userbyid(i::oid), makeaclitem(i::oid, 10, 'SELECT', false) FROM generate_series(16384, 16600) AS i;

--# comments, labels and settings of logins
--@ attacker: empty
SELECT description FROM pg_shdescription WHERE objoid >= 16384 UNION ALL SELECT label FROM pg_shseclabel UNION ALL SELECT array_to_string(setconfig, ' ') FROM pg_db_role_setting;

--# watch what others do
--@ attacker: harmless
--@ control: administrator shows
SELECT * FROM pg_stat_activity;

--# read what others ask
--@ attacker: empty
SELECT query FROM pg_stat_activity WHERE usename <> current_user AND query <> '<insufficient privilege>';

--# read where another sits
--@ attacker: empty
SELECT client_addr, client_port, backend_start, state FROM pg_stat_activity
WHERE usename = :'alice' AND (client_addr IS NOT NULL OR client_port IS NOT NULL OR backend_start IS NOT NULL OR state IS NOT NULL);

--# read another's statement by its backend
--@ attacker: harmless
--@ control: administrator shows
SELECT pg_stat_get_backend_activity(i), pg_stat_get_backend_client_addr(i), pg_stat_get_backend_wait_event(i) FROM pg_stat_get_backend_idset() AS i;

--# watch locks
--@ attacker: harmless
SELECT * FROM pg_locks;

--# watch prepared statements and cursors
--@ attacker: harmless
SELECT name, statement FROM pg_prepared_statements UNION ALL SELECT name, statement FROM pg_cursors UNION ALL SELECT gid, owner FROM pg_prepared_xacts;

--# watch connections
--@ attacker: harmless
SELECT * FROM pg_stat_ssl;
SELECT * FROM pg_stat_gssapi;
SELECT * FROM pg_stat_replication;
SELECT * FROM pg_replication_slots;

--# end somebody's connection
--@ attacker: 42501
SELECT pg_terminate_backend(:alice_pid);

--# cancel somebody's statement
--@ attacker: 42501
SELECT pg_cancel_backend(:alice_pid);

--# have a backend log its memory
--@ attacker: 42501
SELECT pg_log_backend_memory_contexts(:alice_pid);

--# end the connections of others' sub-users
--@ attacker: says f
SELECT authsetting.end_sub_user_connections() IS NULL;

--# read backend memory
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM pg_backend_memory_contexts;

--# read shared memory
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM pg_shmem_allocations;

--# read the sign-in rules
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM pg_hba_file_rules;

--# read the configuration files
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM pg_file_settings;

--# read the log folder
--@ attacker: 42501
SELECT * FROM pg_ls_logdir();

--# read the server's files
--@ attacker: 42501
--@ control: administrator works
SELECT pg_read_file('postgresql.conf');

--# list the server's files
--@ attacker: 42501
--@ control: administrator works
SELECT pg_ls_dir('.');

--# copy from the server's files
--@ attacker: 42501
COPY pg_catalog.pg_class FROM '/etc/passwd';

--# copy to the server's files
--@ attacker: 42501
COPY (SELECT 1) TO '/tmp/thief';

--# run a program on the server
--@ attacker: 42501
COPY (SELECT 1) TO PROGRAM 'id';

--# load a library
--@ attacker: 42501
--@ control: administrator works
LOAD 'auto_explain';

--# start a replication slot
--@ attacker: 42501
SELECT pg_create_logical_replication_slot('thief', 'test_decoding');

--# rotate the log
--@ attacker: 42501
SELECT pg_rotate_logfile();

--# reload the configuration
--@ attacker: 42501
SELECT pg_reload_conf();

--# reset statistics
--@ attacker: 42501
SELECT pg_stat_reset();

--# switch the log
--@ attacker: 42501
SELECT pg_switch_wal();

--# set session_replication_role
--@ attacker: 42501
--@ control: administrator works
SET session_replication_role = replica;

--# set log_statement
--@ attacker: 42501
--@ control: administrator works
SET log_statement = 'all';

--# set log_min_messages
--@ attacker: 42501
--@ control: administrator works
SET log_min_messages = debug5;

--# set track_activities
--@ attacker: 42501
--@ control: administrator works
SET track_activities = off;

--# set allow_system_table_mods
--@ attacker: 42501
--@ control: administrator works
SET allow_system_table_mods = on;

--# set zero_damaged_pages
--@ attacker: 42501
--@ control: administrator works
SET zero_damaged_pages = on;

--# set backtrace_functions
--@ attacker: 42501
--@ control: administrator works
SET backtrace_functions = 'x';

--# set dynamic_library_path
--@ attacker: 42501
--@ control: administrator works
SET dynamic_library_path = '/tmp';

--# set lc_messages
--@ attacker: 42501
--@ control: administrator works
SET lc_messages = 'C';

--# set log_parser_stats
--@ attacker: 42501
--@ control: administrator works
SET log_parser_stats = on;

--# write a large object
--@ attacker: 42501
--@ control: administrator works
SELECT lo_create(0);

--# write a large object from bytes
--@ attacker: 42501
--@ control: administrator works
SELECT lo_from_bytea(0, 'x');

--# read large objects
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM pg_largeobject;

--# read a file into a large object
--@ attacker: 42501
SELECT lo_import('/etc/passwd');

--# write a large object into a file
--@ attacker: 42501
SELECT lo_export(1, '/tmp/thief');

--# write into the catalog
--@ attacker: 42501
UPDATE pg_catalog.pg_authid SET rolsuper = true;

--# write rights into the catalog
--@ attacker: 42501
UPDATE pg_catalog.pg_class SET relacl = NULL;

--# delete policies from the catalog
--@ attacker: 42501
DELETE FROM pg_catalog.pg_policy;

--# read raw statistics
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM pg_statistic;

--# read raw extended statistics
--@ attacker: 42501
--@ control: administrator works
SELECT * FROM pg_statistic_ext_data;

--# read all statistics
--@ attacker: empty
--@ control: administrator shows
SELECT tablename, most_common_vals, histogram_bounds FROM pg_stats WHERE schemaname LIKE 'authsetting%';

--# read subscriptions
--@ attacker: 42501
SELECT subconninfo FROM pg_subscription;

--# read user mappings
--@ attacker: 42501
--@ control: administrator works
SELECT umoptions FROM pg_catalog.pg_user_mapping;

--# columns in the information schema
--@ attacker: empty
--@ control: administrator works
SELECT * FROM information_schema.columns WHERE table_schema LIKE 'authsetting%';

--# rights in the information schema
--@ attacker: empty
SELECT * FROM information_schema.table_privileges WHERE table_schema LIKE 'authsetting%';

--# whole schema as XML
--@ attacker: harmless
--@ control: administrator shows
SELECT schema_to_xml('authsetting', true, false, '');

--# whole database as XML
--@ attacker: harmless
SELECT database_to_xml(true, false, '');

--# defaults, checks and policies
--@ attacker: harmless
SELECT pg_get_expr(polqual, polrelid) FROM pg_policy UNION ALL SELECT pg_get_expr(adbin, adrelid) FROM pg_attrdef UNION ALL SELECT pg_get_constraintdef(oid) FROM pg_constraint;

--# export a snapshot
--@ attacker: harmless
BEGIN;
SELECT pg_export_snapshot() IS NOT NULL;
ROLLBACK;

--# transaction numbers
--@ attacker: harmless
SELECT pg_current_snapshot() IS NOT NULL;

--# grant somebody's account to oneself
--@ attacker: says false|account_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'add', 'user', 'mallory', 'platform_id', 1, 'broker_id', '9999',
        'account_sub_type', 0, 'account_number', 'A-KEEPOUT-4', 'first_day', '2026-03-01',
        'last_day', '2026-04-30', 'on_server', true)))) AS s (r);

--# grant somebody's account to an accomplice
--@ attacker: says false|account_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'add', 'user', 'eve', 'platform_id', 1, 'broker_id', '9999',
        'account_sub_type', 0, 'account_number', 'A-KEEPOUT-4', 'first_day', '2026-03-01',
        'last_day', '2026-04-30', 'on_server', true)))) AS s (r);

--# prepare somebody's account for a file
--@ attacker: says false|account_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'add', 'user', 'eve', 'platform_id', 1, 'broker_id', '9999',
        'account_sub_type', 0, 'account_number', 'A-KEEPOUT-4', 'first_day', '2026-03-01',
        'last_day', '2026-04-30', 'on_server', false)))) AS s (r);

--# cancel somebody's grant
--@ attacker: says false|account_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'cancel', 'user', :'bob_name', 'platform_id', 1, 'broker_id', '9999',
        'account_sub_type', 0, 'account_number', 'A-KEEPOUT-1')))) AS s (r);

--# tell whether an account exists
--@ attacker: says false|account_missing
--@ control: aliceKEEPOUT false|account_missing
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'cancel', 'user', 'eve', 'platform_id', 1, 'broker_id', '9999',
        'account_sub_type', 0, 'account_number', 'A-KEEPOUT-99')))) AS s (r);

--# disable a foreign sub-user
--@ attacker: says false|sub_user_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'enable', 'user', :'carol_name', 'enabled', false)))) AS s (r);

--# enable a foreign sub-user
--@ attacker: says false|sub_user_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'enable', 'user', :'carol_name', 'enabled', true)))) AS s (r);

--# disable a user
--@ attacker: says false|sub_user_missing
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'enable', 'user', :'alice_name', 'enabled', false)))) AS s (r);

--# disable oneself
--@ attacker: says false|sub_user_missing
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'enable', 'user', 'mallory', 'enabled', false)))) AS s (r);

--# set a foreign sub-user's password
--@ attacker: says false|sub_user_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'password', 'user', :'carol_name', 'verifier', :'verifier')))) AS s (r);

--# set a user's password
--@ attacker: says false|sub_user_missing
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'password', 'user', :'alice_name', 'verifier', :'verifier')))) AS s (r);

--# set the administrator's password
--@ attacker: says false|sub_user_missing
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'password', 'user', 'postgres', 'verifier', :'verifier')))) AS s (r);

--# set a password in clear
--@ attacker: says false|verifier_invalid
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'password', 'user', 'eve', 'verifier', 'clear')))) AS s (r);

--# set a password that is no verifier to its end
--@ attacker: says false|verifier_invalid
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'password', 'user', 'eve',
        'verifier', :'verifier' || ''' SUPERUSER --')))) AS s (r);

--# set a password behind a line break
--@ attacker: says false|verifier_invalid
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'password', 'user', 'eve',
        'verifier', :'verifier' || chr(10) || 'x')))) AS s (r);

--# set a password of endless cost
--@ attacker: says false|verifier_invalid
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'password', 'user', 'eve',
        'verifier', replace(:'verifier', '$4096:', '$999999:'))))) AS s (r);

--# inject by the name of a sub-user
--@ attacker: says false|sub_user_missing
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'enable', 'user', 'eve" NOLOGIN; ALTER ROLE "postgres', 'enabled', false)))) AS s (r);

--# redeem somebody's file
--@ attacker: says not_for_caller|
--@ control: bobKEEPOUT shows
SELECT r -> 'results' -> 0 -> 'grants' -> 0 ->> 'error_code', r -> 'results' -> 0 -> 'grants' -> 0 ->> 'secret'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'kind', 'redeem', 'grants', jsonb_build_array(jsonb_build_object(
        'reference', :'file_grant', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
        'account_number', 'A-KEEPOUT-2')))))) AS s (r);

--# redeem somebody's grant on the server
--@ attacker: says not_for_caller|
--@ control: bobKEEPOUT not_a_file|
SELECT r -> 'results' -> 0 -> 'grants' -> 0 ->> 'error_code', r -> 'results' -> 0 -> 'grants' -> 0 ->> 'secret'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'kind', 'redeem', 'grants', jsonb_build_array(jsonb_build_object(
        'reference', :'server_grant', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
        'account_number', 'A-KEEPOUT-1')))))) AS s (r);

--# redeem what was only prepared
--@ attacker: says not_for_caller|
--@ control: bobKEEPOUT not_effective|
SELECT r -> 'results' -> 0 -> 'grants' -> 0 ->> 'error_code', r -> 'results' -> 0 -> 'grants' -> 0 ->> 'secret'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'kind', 'redeem', 'grants', jsonb_build_array(jsonb_build_object(
        'reference', :'prepared_grant', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
        'account_number', 'A-KEEPOUT-3')))))) AS s (r);

--# redeem one's own file
--@ attacker: says not_for_caller|
SELECT r -> 'results' -> 0 -> 'grants' -> 0 ->> 'error_code', r -> 'results' -> 0 -> 'grants' -> 0 ->> 'secret'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'kind', 'redeem', 'grants', jsonb_build_array(jsonb_build_object(
        'reference', :'own_file', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
        'account_number', 'M-1')))))) AS s (r);

--# redeem what nobody made
--@ attacker: says reference_missing|
SELECT r -> 'results' -> 0 -> 'grants' -> 0 ->> 'error_code', r -> 'results' -> 0 -> 'grants' -> 0 ->> 'secret'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'kind', 'redeem', 'grants', jsonb_build_array(jsonb_build_object(
        'reference', '00000000000000000000000000000000', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
        'account_number', 'A-KEEPOUT-1')))))) AS s (r);

--# redeem by a pattern
--@ attacker: says reference_missing|
SELECT r -> 'results' -> 0 -> 'grants' -> 0 ->> 'error_code', r -> 'results' -> 0 -> 'grants' -> 0 ->> 'secret'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'kind', 'redeem', 'grants', jsonb_build_array(jsonb_build_object(
        'reference', '%', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
        'account_number', 'A-KEEPOUT-1')))))) AS s (r);

--# make somebody's prepared grant current
--@ attacker: says false|reference_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'ok', r ->> 'error_code'
FROM (SELECT authsetting.commit_export(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'reference', :'prepared_grant', 'user', :'bob_name', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
    'account_number', 'A-KEEPOUT-3', 'first_day', '2026-03-01', 'last_day', '2026-04-30', 'ratio', 0.5)), false)) AS s (r);

--# confirm somebody's written file
--@ attacker: says false|reference_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'ok', r ->> 'error_code'
FROM (SELECT authsetting.commit_export(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'reference', :'file_grant', 'user', :'bob_name', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
    'account_number', 'A-KEEPOUT-2', 'first_day', '2026-03-01', 'last_day', '2026-04-30', 'ratio', 0.5)), true)) AS s (r);

--# write one's own grant for somebody's account
--@ attacker: says false|altered
SELECT r -> 'ok', r ->> 'error_code'
FROM (SELECT authsetting.commit_export(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'reference', :'own_file', 'user', 'eve', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
    'account_number', 'A-KEEPOUT-4', 'first_day', '2026-03-01', 'last_day', '2026-04-30', 'ratio', 0.5)), false)) AS s (r);

--# write one's own grant for somebody else
--@ attacker: says false|altered
SELECT r -> 'ok', r ->> 'error_code'
FROM (SELECT authsetting.commit_export(gen_random_uuid(), jsonb_build_array(jsonb_build_object(
    'reference', :'own_file', 'user', :'bob_name', 'platform_id', 1, 'broker_id', '9999', 'account_sub_type', 0,
    'account_number', 'M-1', 'first_day', '2026-03-01', 'last_day', '2026-04-30', 'ratio', 0.5)), false)) AS s (r);

--# take somebody's file back
--@ attacker: says t
--@ control: aliceKEEPOUT t
SELECT authsetting.revert_export(ARRAY[:'file_grant', :'server_grant', :'prepared_grant']) IS NOT NULL;

--# find somebody's result by the identifier of the request
--@ attacker: says false|account_missing
--@ control: aliceKEEPOUT true|
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(:'alice_request', jsonb_build_array(
    jsonb_build_object('kind', 'add', 'user', :'bob_name', 'platform_id', 1, 'broker_id', '9999',
        'account_sub_type', 0, 'account_number', 'A-KEEPOUT-1', 'first_day', '2026-03-01',
        'last_day', '2026-04-30', 'on_server', true)))) AS s (r);

--# find somebody's export by the identifier of the request
--@ attacker: says []
--@ control: aliceKEEPOUT works
SELECT authsetting.commit_export(:'alice_export', '[]', false) ->> 'changed';

--# take the name of somebody
--@ attacker: says name_taken
--@ control: aliceKEEPOUT name_taken
SELECT authsetting.create_sub_user(:'bob_name', :'verifier');

--# take the name of an administrator's login
--@ attacker: says name_invalid
SELECT authsetting.create_sub_user(E'post\u200Bgres', :'verifier');

--# make a sub-user with a password in clear
--@ attacker: says verifier_invalid
SELECT authsetting.create_sub_user('henchman', 'clear');

--# make a sub-user with an overlong name
--@ attacker: says name_invalid
SELECT authsetting.create_sub_user(repeat('x', 64), :'verifier');

--# a sub-user of one's own is nothing special
--@ attacker: says f|f|f|f|f
BEGIN;
SELECT authsetting.create_sub_user('henchman', :'verifier') \gset
SELECT rolsuper, rolcreaterole, rolcreatedb, rolreplication, rolbypassrls FROM pg_roles
WHERE rolname = 'as_' || left(encode(sha256('henchman'), 'hex'), 40);
ROLLBACK;

--# settle what is due
--@ attacker: harmless
SELECT authsetting.settle();

--# send nonsense
--@ attacker: 22023
SELECT authsetting.run_requests(gen_random_uuid(), '{}');

--# send nothing
--@ attacker: 22023
SELECT authsetting.run_requests(NULL, NULL);

--# send an unknown kind
--@ attacker: says false|request_invalid
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'become_owner')))) AS s (r);

--# send a kind that is null
--@ attacker: says false|request_invalid
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', NULL, 'user', 'eve')))) AS s (r);

--# send a grant without end
--@ attacker: says false|request_invalid
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'add', 'user', 'eve', 'platform_id', 1, 'broker_id', '9999',
        'account_sub_type', 0, 'account_number', 'M-2', 'first_day', '2026-03-01',
        'last_day', 'infinity', 'on_server', true)))) AS s (r);

--# bend the reading of dates
--@ attacker: says false|days_past
SET "DateStyle" = 'SQL, DMY';
SELECT r -> 'results' -> 0 -> 'ok', r -> 'results' -> 0 ->> 'error_code'
FROM (SELECT authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
    jsonb_build_object('kind', 'add', 'user', 'eve', 'platform_id', 1, 'broker_id', '9999',
        'account_sub_type', 0, 'account_number', 'M-2', 'first_day', '2026-01-01',
        'last_day', '2026-02-28', 'on_server', true)))) AS s (r);

--# bend the time zone
--@ attacker: says 2026-03-02
--@ control: aliceKEEPOUT 2026-03-02
SET TimeZone = 'Pacific/Honolulu';
SELECT today FROM authsetting.my_version();

--# bend the reading of strings
--@ attacker: says 4
SET standard_conforming_strings = off;
SET backslash_quote = on;
SELECT count(*) FROM authsetting.read_model(-1);

--# hint at changes falsely
--@ attacker: harmless
NOTIFY authsetting_changed, 'lie';

--# hint with a text that is too long
--@ attacker: 22023
SELECT pg_notify('authsetting_changed', repeat('x', 8000));

--# lock what the migrations lock
--@ attacker: 42501
--@ control: administrator works
SELECT pg_advisory_lock(hashtext('authsetting migrations'));

--# try a lock by two numbers
--@ attacker: 42501
--@ control: administrator works
SELECT pg_try_advisory_lock(1, 2);

--# lock until the end of the transaction
--@ attacker: 42501
--@ control: administrator works
SELECT pg_advisory_xact_lock_shared(1);

--# fill the server's table of locks
--@ attacker: 42501
--@ control: administrator works
SELECT count(pg_advisory_lock(n)) FROM generate_series(1, 100) AS s (n);

--# lock the server's settings
--@ attacker: 42501
BEGIN;
LOCK TABLE pg_settings IN ACCESS EXCLUSIVE MODE;
ROLLBACK;

--# update the server's settings
--@ attacker: 42501
--@ control: administrator works
UPDATE pg_settings SET setting = 'off' WHERE name = 'synchronous_commit';

--# lock the server's catalog
--@ attacker: 42501
BEGIN;
LOCK TABLE pg_catalog.pg_authid IN ROW EXCLUSIVE MODE;
ROLLBACK;

--# keep a reading beyond its transaction
--@ attacker: says 4
BEGIN;
DECLARE thief CURSOR WITH HOLD FOR SELECT count(*) FROM authsetting.read_model(-1);
COMMIT;
FETCH ALL FROM thief;

--# have a change seen before it is safe
--@ attacker: says on
SET synchronous_commit = off;
BEGIN;
DO $$ BEGIN
    IF NOT (authsetting.run_requests(gen_random_uuid(), jsonb_build_array(
        jsonb_build_object('kind', 'add', 'user', 'eve', 'platform_id', 1, 'broker_id', '9999',
            'account_sub_type', 0, 'account_number', 'M-2', 'first_day', '2026-03-01',
            'last_day', '2026-04-30', 'on_server', true))) -> 'results' -> 0 ->> 'ok')::boolean THEN
        RAISE 'the grant was refused';
    END IF;
END $$;
SELECT current_setting('synchronous_commit');
ROLLBACK;
