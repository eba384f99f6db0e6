#include "backend/client/GrantFileWriter.h"
#include "backend/sealedfile/GrantPayload.h"
#include "benchmarks/cases/Cases.h"
#include "benchmarks/support/Statistics.h"
#include "kit/dates/DateConversions.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>
#include <sodium.h>

namespace bench {

namespace {

using Grants = QVector<boost::shared_ptr<GW::CAuthDetail>>;

Grants makeGrants(int count)
{
    const int start = KZ::qDateTimeToSecond(QDate(2026, 3, 2).startOfDay());
    Grants grants;
    for (int number = 0; number < count; ++number) {
        auto grant = boost::make_shared<GW::CAuthDetail>();
        grant->grantRef = QStringLiteral("%1").arg(number, 32, 16, QLatin1Char('0'));
        grant->grantor = QStringLiteral("grantor");
        grant->grantee = QStringLiteral("grantee");
        grant->account.accountType = 1;
        grant->account.platformId = 1;
        grant->account.brokerId = "8000";
        grant->account.accountId = std::to_string(600000000 + number);
        grant->account.accountPrivate = "secret" + std::to_string(number);
        grant->limit.startTime = start;
        grant->limit.endTime = start;
        grants.append(grant);
    }
    return grants;
}

double elapsed(const QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// A store that makes every grant current at once: its own work has another figure.
class WillingStore : public backend::StoreLink
{
public:
    backend::UserStore::Exported commitExport(const QVector<backend::FileGrant>&, bool) override
    {
        return {backend::ExportError::None, {}, {}};
    }
    void revertExport(const QStringList&) override {}
};

backend::AccountSnapshot accountsOf(const Grants& grants)
{
    QVector<boost::shared_ptr<GW::CAccount>> accounts;
    for (const auto& grant : grants)
        accounts.append(boost::make_shared<GW::CAccount>(grant->account));
    return {accounts, {}, {}};
}

/// An export as the client does it, until the file has its name.
double exportGrants(const Grants& grants, const backend::AccountSnapshot& accounts,
                    const QString& path)
{
    WillingStore store;
    backend::GrantFileWriter writer(store, QStringLiteral("grantor"), false);
    QElapsedTimer timer;
    timer.start();
    if (writer.write(path, QStringLiteral("a password"), grants, accounts) !=
        backend::ExportError::None)
        qFatal("the grants cannot be exported");
    return elapsed(timer);
}

/// Key derivation and sealing of bytes that are already at hand, by libsodium alone.
double sealRaw(const QByteArray& payload)
{
    constexpr unsigned long long passes = 3;
    constexpr std::size_t memory = std::size_t{64} * 1024 * 1024;
    const QByteArray password("a password");
    unsigned char salt[crypto_pwhash_SALTBYTES];
    unsigned char nonce[crypto_aead_xchacha20poly1305_ietf_NPUBBYTES];
    unsigned char key[crypto_aead_xchacha20poly1305_ietf_KEYBYTES];
    QElapsedTimer timer;
    timer.start();
    randombytes_buf(salt, sizeof salt);
    randombytes_buf(nonce, sizeof nonce);
    if (crypto_pwhash(key, sizeof key, password.constData(),
                      static_cast<unsigned long long>(password.size()), salt, passes, memory,
                      crypto_pwhash_ALG_ARGON2ID13) != 0)
        qFatal("out of memory");
    QByteArray sealed(payload.size() + crypto_aead_xchacha20poly1305_ietf_ABYTES,
                      Qt::Uninitialized);
    crypto_aead_xchacha20poly1305_ietf_encrypt(
        reinterpret_cast<unsigned char*>(sealed.data()), nullptr,
        reinterpret_cast<const unsigned char*>(payload.constData()),
        static_cast<unsigned long long>(payload.size()), salt, sizeof salt, nullptr, nonce, key);
    return elapsed(timer);
}

} // namespace

void measureFileExport(const Scale& scale, Results* results)
{
    const QTemporaryDir folder;
    const Grants grants = makeGrants(scale.accounts);
    const backend::AccountSnapshot accounts = accountsOf(grants);
    backend::SecretBytes encoded;
    if (backend::encodeGrants(grants, &encoded) != backend::SealedFileError::None)
        qFatal("the grants cannot be encoded");
    const QByteArray payload(reinterpret_cast<const char*>(encoded.data()),
                             static_cast<qsizetype>(encoded.size()));
    const Comparison sealing = alternate(
        scale.rounds,
        [&] { return exportGrants(grants, accounts, folder.filePath(QStringLiteral("a.taa"))); },
        [&] { return sealRaw(payload); });
    results->add({QStringLiteral("file_export_10k_vs_raw"), sealing.ratio(), QString(), 1.3, 1.05,
                  QStringLiteral("%1 ms against %2 ms")
                      .arg(sealing.ours, 0, 'f', 1)
                      .arg(sealing.other, 0, 'f', 1)});
}

} // namespace bench
