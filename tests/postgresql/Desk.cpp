#include "tests/postgresql/Desk.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <utility>

namespace {

constexpr int tickColumn = 0;
/// Longer ones are told as their length.
constexpr int longestTable = 8;

QStringList textsOf(const QJsonValue& row)
{
    QStringList texts;
    const QJsonArray cells = row.toArray();
    for (const auto& cell : cells)
        texts.append(cell.toString());
    return texts;
}

} // namespace

Desk::Desk(const DesksFixture& fixture, QString user, quint16 port, int page)
    : m_user(std::move(user)), m_opensPage(page != 0)
{
    QStringList arguments = {QStringLiteral("--store"), fixture.url(port),
                             QStringLiteral("--user"),  m_user,
                             QStringLiteral("--clock"), QStringLiteral("2024-03-15T10:00:00")};
    if (page != 0)
        arguments += {QStringLiteral("--page"), QString::number(page)};
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // While the test waits for anything, so that no desk ever waits for its reader.
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process,
                     [this] { read(); });
    m_process.start(QStringLiteral(DESK_PROGRAM), arguments);
}

Desk::~Desk()
{
    m_process.disconnect();
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

void Desk::read()
{
    m_rest += m_process.readAllStandardOutput();
    // Only the last one is shown any longer.
    const qsizetype end = m_rest.lastIndexOf('\n');
    if (end < 0)
        return;
    const qsizetype begin = end == 0 ? 0 : m_rest.lastIndexOf('\n', end - 1) + 1;
    m_shown = QJsonDocument::fromJson(m_rest.mid(begin, end - begin)).object();
    m_rest.remove(0, end + 1);
}

bool Desk::await(const Condition& condition, int timeoutMs)
{
    const bool holds = QTest::qWaitFor(
        [&] { return condition() || m_process.state() == QProcess::NotRunning; }, timeoutMs);
    if (holds && condition())
        return true;
    QJsonObject told = m_shown;
    for (const char* table : {"accounts", "messages", "table"}) {
        if (count(table) > longestTable)
            told[QLatin1String(table)] = count(table);
    }
    qWarning("The desk of %s shows %s", qPrintable(m_user),
             QJsonDocument(told).toJson(QJsonDocument::Compact).constData());
    return false;
}

bool Desk::order(const QStringList& words)
{
    return orders({words});
}

bool Desk::orders(const QList<QStringList>& all)
{
    for (const QStringList& words : all)
        m_process.write(words.join(QLatin1Char('\t')).toUtf8() + '\n');
    m_orders += static_cast<int>(all.size());
    const auto done = [this] { return m_shown[QStringLiteral("done")].toInt(); };
    // Hundreds of clicks take as long as they take, as long as they go on.
    while (done() < m_orders) {
        if (!await([&, before = done()] { return done() > before; }))
            return false;
    }
    return true;
}

bool Desk::signIn()
{
    const QString password = QStringLiteral("halden_client_sign_in_password");
    return await([this] { return text("window") == QStringLiteral("登录"); }) &&
           order({QStringLiteral("type"), password, QStringLiteral("pw-") + m_user}) &&
           order({QStringLiteral("click"), QStringLiteral("登录")}) && await([this] {
               return !text("connection").isEmpty() && (!m_opensPage || !text("tab").isEmpty());
           });
}

bool Desk::prepareGrant(int first, int last, const QString& grantee)
{
    QList<QStringList> all = {{QStringLiteral("tab"), QStringLiteral("批量授权")}};
    for (int account = first; account <= last; ++account)
        all.append({QStringLiteral("cell"), QString::number(account), QString::number(tickColumn)});
    all.append({QStringLiteral("type"), QStringLiteral("被授权人"), grantee});
    return orders(all) && await([&] { return row("table", last).contains(grantee); });
}

bool Desk::grant()
{
    return orders({{QStringLiteral("click"), QStringLiteral("授权")},
                   {QStringLiteral("menu"), QStringLiteral("服务器授权")}});
}

bool Desk::leave()
{
    m_process.closeWriteChannel();
    return QTest::qWaitFor([this] { return m_process.state() == QProcess::NotRunning; }, 60'000) &&
           m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

QString Desk::text(const char* what) const
{
    return m_shown[QLatin1String(what)].toString();
}

QStringList Desk::texts(const char* what) const
{
    return textsOf(m_shown[QLatin1String(what)]);
}

bool Desk::isTrue(const char* what) const
{
    return m_shown[QLatin1String(what)].toBool();
}

int Desk::count(const char* table) const
{
    return static_cast<int>(m_shown[QLatin1String(table)].toArray().size());
}

QStringList Desk::row(const char* table, int account) const
{
    QList<QStringList> found;
    const QJsonArray rows = m_shown[QLatin1String(table)].toArray();
    for (const auto& row : rows) {
        const QStringList texts = textsOf(row);
        if (texts.contains(QString::number(account)))
            found.append(texts);
    }
    return found.size() == 1 ? found.constFirst() : QStringList();
}

QStringList Desk::outcomes(const char* table, int numberColumn, int otherSideColumn) const
{
    QStringList found;
    const QJsonArray rows = m_shown[QLatin1String(table)].toArray();
    for (const auto& row : rows) {
        const QStringList texts = textsOf(row);
        found.append(texts.value(numberColumn) + QLatin1Char('|') + texts.value(otherSideColumn));
    }
    found.sort();
    return found;
}

bool Desk::tips(const QString& words) const
{
    return !texts("tips").filter(words).isEmpty();
}
