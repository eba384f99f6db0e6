#include "tests/postgresql/StalledGrant.h"

#include "tests/postgresql/DesksFixture.h"

#include <QTest>

namespace {

constexpr int patienceMs = 5'000;

} // namespace

StalledGrant::StalledGrant(const DesksFixture& fixture, int account) : m_fixture(fixture)
{
    const QString id =
        fixture
            .query(QStringLiteral("SELECT id FROM authsetting.accounts WHERE account_number = '%1'")
                       .arg(QString::fromStdString(DesksFixture::account(account).accountId)))
            .value(0);
    fixture.query(QStringLiteral("CREATE FUNCTION public.hold_still() RETURNS trigger"
                                 " LANGUAGE plpgsql SECURITY DEFINER AS $$BEGIN"
                                 " PERFORM pg_catalog.pg_advisory_xact_lock_shared(1);"
                                 " RETURN NEW; END$$; "
                                 "CREATE TRIGGER hold_still BEFORE INSERT ON authsetting.grants"
                                 " FOR EACH ROW WHEN (NEW.account_id = %1)"
                                 " EXECUTE FUNCTION public.hold_still()")
                      .arg(id));
    m_psql.setStandardErrorFile(QProcess::nullDevice());
    m_psql.start(QStringLiteral("psql"),
                 {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-d"),
                  fixture.query(QStringLiteral("SELECT current_database()")).value(0)});
    m_psql.write("SELECT pg_advisory_lock(1);\n");
    const auto isHeld = [&fixture] {
        return fixture.query(QStringLiteral("SELECT 1 FROM pg_locks WHERE locktype = 'advisory' "
                                            "AND granted")) == QStringList(QStringLiteral("1"));
    };
    if (!QTest::qWaitFor(isHeld, patienceMs))
        qWarning("Nothing holds the grants");
}

StalledGrant::~StalledGrant()
{
    goOn();
}

bool StalledGrant::awaitRequests(int count) const
{
    return QTest::qWaitFor(
        [this, count] {
            return m_fixture.query(QStringLiteral("SELECT count(*) FROM pg_stat_activity "
                                                  "WHERE datname = current_database() "
                                                  "AND wait_event_type = 'Lock'")) ==
                   QStringList(QString::number(count));
        },
        patienceMs);
}

void StalledGrant::goOn()
{
    m_psql.closeWriteChannel();
    m_psql.waitForFinished();
}
