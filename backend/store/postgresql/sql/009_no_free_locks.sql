-- What every login of a database may do by the server's standard, and what nobody here needs: locks
-- that keep others waiting or use up the memory that all share, and changes that a crash can take
-- back after others have seen them.

-- Advisory locks of one login could fill the table in which the server keeps everybody's locks.
DO $$
DECLARE
    locking regprocedure;
BEGIN
    FOR locking IN SELECT p.oid FROM pg_catalog.pg_proc AS p
                   WHERE p.pronamespace = 'pg_catalog'::regnamespace
                     AND p.proname LIKE 'pg\_%advisory%' LOOP
        EXECUTE pg_catalog.format('REVOKE EXECUTE ON FUNCTION %s FROM PUBLIC', locking);
    END LOOP;
END
$$;
-- The one relation that everybody may update, and who may do that may lock it as well. SET does the
-- same as an update of it.
REVOKE UPDATE ON pg_catalog.pg_settings FROM PUBLIC;

SET LOCAL ROLE authsetting_owner;

-- Ends a change: lets the versions of everybody concerned grow and says that something changed.
-- Until the end of the transaction a commit waits for the disk, whatever the session has asked for.
-- Returns the caller's version.
CREATE OR REPLACE FUNCTION authsetting.finish_change(work authsetting.change) RETURNS bigint
LANGUAGE plpgsql VOLATILE
AS $$
BEGIN
    IF cardinality(work.touched) > 0 THEN
        UPDATE authsetting.users AS u SET data_version = u.data_version + 1
        WHERE u.id = ANY (work.touched);
        NOTIFY authsetting_changed;
    END IF;
    IF current_setting('synchronous_commit') = 'off' THEN
        PERFORM set_config('synchronous_commit', 'on', true);
    END IF;
    RETURN (SELECT u.data_version FROM authsetting.users AS u WHERE u.id = work.caller_id);
END
$$;

RESET ROLE;
