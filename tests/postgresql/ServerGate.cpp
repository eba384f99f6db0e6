#include "tests/postgresql/ServerGate.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

namespace {

QString inServerFolder(const QString& name)
{
    return qEnvironmentVariable("AUTHSETTING_TEST_PGDATA") + QLatin1Char('/') + name;
}

QString rulesFile()
{
    return inServerFolder(QStringLiteral("pg_hba.conf"));
}

bool write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

bool openssl(const QByteArrayList& arguments)
{
    QStringList texts;
    for (const QByteArray& argument : arguments)
        texts.append(QString::fromUtf8(argument));
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QStringLiteral("openssl"), texts);
    return process.waitForFinished(60'000) && process.exitCode() == 0;
}

} // namespace

ServerGate::ServerGate(const DesksFixture& fixture)
    : m_fixture(fixture), m_hostBefore(qgetenv("PGHOST"))
{
    QFile rules(rulesFile());
    if (rules.open(QIODevice::ReadOnly))
        m_rulesBefore = rules.readAll();
    qputenv("PGHOST", qgetenv("AUTHSETTING_TEST_PGSOCKET"));
}

ServerGate::~ServerGate()
{
    write(rulesFile(), m_rulesBefore);
    stopEncrypting();
    qputenv("PGHOST", m_hostBefore);
}

bool ServerGate::setRules(const QByteArray& rules) const
{
    return write(rulesFile(), "local all postgres scram-sha-256\n" + rules) &&
           m_fixture.reloadServer();
}

bool ServerGate::makeAuthority(const QString& name) const
{
    return openssl({"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                    "/CN=" + name.toUtf8(), "-keyout", file(name + QStringLiteral(".key")), "-out",
                    file(name + QStringLiteral(".crt"))});
}

QByteArray ServerGate::file(const QString& name) const
{
    return QFile::encodeName(m_folder.filePath(name));
}

bool ServerGate::installForServer(const QString& file) const
{
    const QString target = inServerFolder(file);
    const QFileInfo folder(inServerFolder(QString()));
    QFile::remove(target);
    return QFile::copy(m_folder.filePath(file), target) &&
           QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner) &&
           ::chown(QFile::encodeName(target).constData(), folder.ownerId(), folder.groupId()) == 0;
}

bool ServerGate::encryptAs(const QString& name) const
{
    const QString key = QStringLiteral("server.key");
    const QString certificate = QStringLiteral("server.crt");
    const QByteArray request = file(QStringLiteral("server.csr"));
    const QString names = m_folder.filePath(QStringLiteral("names"));
    return makeAuthority(QStringLiteral("authority")) && makeAuthority(QStringLiteral("other")) &&
           write(names, "subjectAltName=DNS:" + name.toUtf8()) &&
           openssl({"req", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=" + name.toUtf8(),
                    "-keyout", file(key), "-out", request}) &&
           openssl({"x509", "-req", "-in", request, "-CA", file(QStringLiteral("authority.crt")),
                    "-CAkey", file(QStringLiteral("authority.key")), "-CAcreateserial", "-days",
                    "2", "-extfile", QFile::encodeName(names), "-out", file(certificate)}) &&
           installForServer(key) && installForServer(certificate) &&
           m_fixture.query(QStringLiteral("ALTER SYSTEM SET ssl = on")).isEmpty() &&
           m_fixture.reloadServer() &&
           m_fixture.query(QStringLiteral("SHOW ssl")) == QStringList(QStringLiteral("on"));
}

bool ServerGate::stopEncrypting() const
{
    return m_fixture.query(QStringLiteral("ALTER SYSTEM RESET ssl")).isEmpty() &&
           m_fixture.reloadServer();
}

QString ServerGate::authority() const
{
    return m_folder.filePath(QStringLiteral("authority.crt"));
}

QString ServerGate::otherAuthority() const
{
    return m_folder.filePath(QStringLiteral("other.crt"));
}
