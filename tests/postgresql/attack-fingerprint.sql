SELECT md5(concat(
    (SELECT string_agg(u::text, ';' ORDER BY u.name) FROM authsetting.users AS u
     WHERE u.name NOT IN ('mallory', 'eve', 'henchman')),
    (SELECT string_agg(p::text, ';' ORDER BY p::text) FROM authsetting.platforms AS p),
    (SELECT string_agg(b::text, ';' ORDER BY b::text) FROM authsetting.brokers AS b),
    (SELECT string_agg(a::text, ';' ORDER BY a.id) FROM authsetting.accounts AS a),
    (SELECT string_agg(s::text, ';' ORDER BY s::text) FROM authsetting.sub_accounts AS s),
    (SELECT string_agg(g::text, ';' ORDER BY g.serial) FROM authsetting.grants AS g
     WHERE g.grantor_id <> (SELECT id FROM authsetting.users WHERE name = 'mallory')),
    (SELECT string_agg(t::text, ';' ORDER BY t.serial) FROM authsetting.audit_trail AS t
     WHERE t.user_id <> (SELECT id FROM authsetting.users WHERE name = 'mallory')),
    (SELECT string_agg(r::text, ';' ORDER BY r.user_id, r.request_id) FROM authsetting.requests AS r
     WHERE r.user_id <> (SELECT id FROM authsetting.users WHERE name = 'mallory')),
    (SELECT string_agg(s::text, ';') FROM authsetting.settings AS s),
    (SELECT string_agg(v::text, ';') FROM authsetting.schema_version AS v),
    (SELECT string_agg(r::text, ';' ORDER BY r.rolname) FROM pg_authid AS r
     WHERE r.rolname NOT IN (authsetting.login_name('mallory'), authsetting.login_name('eve'),
                             authsetting.login_name('henchman'))),
    (SELECT string_agg(concat(m.roleid, ' ', m.member, ' ', m.admin_option), ';'
                       ORDER BY m.roleid, m.member)
     FROM pg_auth_members AS m
     WHERE m.member NOT IN (SELECT oid FROM pg_roles
                            WHERE rolname = authsetting.login_name('henchman'))),
    (SELECT string_agg(s::text, ';' ORDER BY s.setrole, s.setdatabase) FROM pg_db_role_setting AS s
     WHERE s.setrole NOT IN (SELECT oid FROM pg_roles WHERE rolname = authsetting.login_name('mallory'))),
    (SELECT string_agg(d::text, ';' ORDER BY d.datname) FROM (SELECT datname, datdba, datacl FROM pg_database) AS d),
    (SELECT string_agg(n::text, ';' ORDER BY n.oid) FROM pg_namespace AS n
     WHERE n.nspname !~ '^pg_(toast_)?temp_'),
    (SELECT string_agg(concat(c.oid, c.relname, c.relacl, c.relrowsecurity, c.relforcerowsecurity, c.relhastriggers,
                              c.relhasrules, c.relowner), ';' ORDER BY c.oid)
     FROM pg_class AS c WHERE c.relnamespace NOT IN ('pg_toast'::regnamespace)),
    (SELECT string_agg(concat(p.oid, p.prosrc, p.proacl, p.proconfig, p.proowner), ';' ORDER BY p.oid)
     FROM pg_proc AS p WHERE p.oid >= 16384),
    (SELECT string_agg(p::text, ';' ORDER BY p.oid) FROM pg_policy AS p),
    (SELECT string_agg(concat(t.oid, t.tgenabled), ';' ORDER BY t.oid) FROM pg_trigger AS t),
    (SELECT string_agg(concat(a.attrelid, a.attnum, a.attacl), ';' ORDER BY a.attrelid, a.attnum)
     FROM pg_attribute AS a WHERE a.attacl IS NOT NULL),
    (SELECT string_agg(concat(s.schemaname, s.sequencename, s.last_value > 0), ';' ORDER BY 1) FROM pg_sequences AS s
     WHERE s.schemaname = 'authsetting'),
    (SELECT count(*) FROM pg_stat_activity WHERE usename = authsetting.login_name('aliceKEEPOUT'))
));
