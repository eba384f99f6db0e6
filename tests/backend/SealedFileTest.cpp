#include "backend/sealedfile/SealedFile.h"

#include "backend/sealedfile/FileSealer.h"
#include "backend/sealedfile/Wipe.h"
#include "tests/backend/ChildProcess.h"
#include "tests/support/TestCase.h"

#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QtEndian>

#include <sodium.h>

#include <cerrno>
#include <cstring>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using backend::openBytes;
using backend::readSealedFile;
using backend::SealedFileError;
using backend::SealProfile;
using backend::sealToBytes;
using backend::SecretBytes;

namespace {

const QByteArray payload = QByteArrayLiteral("three grants and a secret");

QByteArray sealed(const QString& password, QByteArrayView content = payload,
                  SealProfile profile = SealProfile::Test)
{
    QByteArray file;
    if (sealToBytes(content, password, profile, &file) != SealedFileError::None)
        return {};
    return file;
}

QByteArray opened(const QByteArray& file, const QString& password)
{
    SecretBytes content;
    if (openBytes(file, password, true, &content) != SealedFileError::None)
        return {};
    return content.view().toByteArray();
}

} // namespace

class SealedFileTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void opensWithItsPassword_data();
    void opensWithItsPassword();
    void hasTheLayoutItDeclares();
    void opensWhatTheLibraryAloneSealed();
    void sealsDifferentlyEachTime();
    void refusesAnotherPassword_data();
    void refusesAnotherPassword();
    void takesOneSpellingOfAPassword_data();
    void takesOneSpellingOfAPassword();
    void sealsUnderNoEmptyPassword_data();
    void sealsUnderNoEmptyPassword();
    void opensNoTestProfileUnlessAsked();
    void sealsNothingEmptyOrTooLarge();
    void carriesTheLargestPayload();
    void refusesTrailingBytes();
    void sealsWhileItsMakerWorks();
    void refusesAForeignFile_data();
    void refusesAForeignFile();
    void checksTheHeaderBeforeThePassword();
    void reportsMissingMemory();
    void worksWhereNoMemoryMayBeLocked();
    void clearsTheResultOnFailure();
    void readsRegularFilesOnly();
    void readsNoMoreThanItMayOpen();
    void hasATextForEveryError();
    void wipesWhatIsCutOff();
    void wipesTextButNoSharedCopy();
    void givesNoMemoryThatIsNotThere();
};

void SealedFileTest::opensWithItsPassword_data()
{
    QTest::addColumn<SealProfile>("profile");
    QTest::newRow("standard") << SealProfile::Standard;
    QTest::newRow("test") << SealProfile::Test;
}

void SealedFileTest::opensWithItsPassword()
{
    QFETCH(SealProfile, profile);
    const QString password = QStringLiteral("密码 with spaces");
    QByteArray file;
    QCOMPARE(sealToBytes(payload, password, profile, &file), SealedFileError::None);
    QVERIFY(!file.contains(payload));
    SecretBytes content;
    QCOMPARE(openBytes(file, password, profile == SealProfile::Test, &content),
             SealedFileError::None);
    QCOMPARE(content.view().toByteArray(), payload);
}

void SealedFileTest::hasTheLayoutItDeclares()
{
    const QByteArray file = sealed(QStringLiteral("pw"));
    QCOMPARE(file.first(8), QByteArray::fromHex("8a5441410d0a1a0a"));
    QCOMPARE(int(file.at(backend::sealedfile::versionOffset)), 1);
    QCOMPARE(quint8(file.at(backend::sealedfile::profileOffset)), quint8(255));
    QCOMPARE(qFromBigEndian<quint32>(file.constData() + backend::sealedfile::lengthOffset),
             quint32(payload.size() + 16));
    QCOMPARE(file.size(), payload.size() + 86 + 16);
}

// Made by hand from the declared layout, so that a change of the format cannot go unnoticed.
void SealedFileTest::opensWhatTheLibraryAloneSealed()
{
    QVERIFY(sodium_init() >= 0);
    const QByteArray password = QByteArrayLiteral("pass word");
    QByteArray file = QByteArray::fromHex("8a5441410d0a1a0a"
                                          "01"
                                          "01");
    quint32 length = qToBigEndian(quint32(payload.size() + 16));
    file.append(reinterpret_cast<const char*>(&length), 4);
    const QByteArray salt(16, '\x11');
    const QByteArray nonce(24, '\x22');
    unsigned char master[32];
    QCOMPARE(crypto_pwhash(master, sizeof(master), password.constData(),
                           static_cast<unsigned long long>(password.size()),
                           reinterpret_cast<const unsigned char*>(salt.constData()), 3, 67108864,
                           crypto_pwhash_ALG_ARGON2ID13),
             0);
    unsigned char key[32];
    unsigned char commitment[32];
    crypto_kdf_derive_from_key(key, sizeof(key), 1, "taa-seal", master);
    crypto_kdf_derive_from_key(commitment, sizeof(commitment), 2, "taa-seal", master);
    file += salt + nonce;
    file.append(reinterpret_cast<const char*>(commitment), sizeof(commitment));
    QByteArray body(payload.size() + 16, '\0');
    crypto_aead_xchacha20poly1305_ietf_encrypt(
        reinterpret_cast<unsigned char*>(body.data()), nullptr,
        reinterpret_cast<const unsigned char*>(payload.constData()),
        static_cast<unsigned long long>(payload.size()),
        reinterpret_cast<const unsigned char*>(file.constData()),
        static_cast<unsigned long long>(file.size()), nullptr,
        reinterpret_cast<const unsigned char*>(nonce.constData()), key);
    file += body;

    SecretBytes content;
    QCOMPARE(openBytes(file, QString::fromUtf8(password), false, &content), SealedFileError::None);
    QCOMPARE(content.view().toByteArray(), payload);
}

void SealedFileTest::sealsDifferentlyEachTime()
{
    const QByteArray one = sealed(QStringLiteral("pw"));
    const QByteArray two = sealed(QStringLiteral("pw"));
    QCOMPARE(one.first(14), two.first(14));
    QVERIFY(one.sliced(14, 16) != two.sliced(14, 16));
    QVERIFY(one.sliced(30, 24) != two.sliced(30, 24));
    QVERIFY(one.sliced(54, 32) != two.sliced(54, 32));
    QVERIFY(one.sliced(86) != two.sliced(86));
}

void SealedFileTest::refusesAnotherPassword_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("other") << QStringLiteral("passwort");
    QTest::newRow("case") << QStringLiteral("Password");
    QTest::newRow("prefix") << QStringLiteral("passwor");
    QTest::newRow("longer") << QStringLiteral("password1");
    QTest::newRow("inner space") << QStringLiteral("pass word");
    QTest::newRow("full width") << QStringLiteral("ｐassword");
    QTest::newRow("nul") << QStringLiteral("password") + QChar(0) + QStringLiteral("x");
    QTest::newRow("empty") << QString();
    QTest::newRow("blank") << QStringLiteral("   ");
    QTest::newRow("very long") << QString(1 << 20, QLatin1Char('p'));
}

void SealedFileTest::refusesAnotherPassword()
{
    QFETCH(QString, password);
    const QByteArray file = sealed(QStringLiteral("password"));
    SecretBytes content;
    QCOMPARE(openBytes(file, password, true, &content), SealedFileError::WrongPassword);
    QVERIFY(content.isNull());
}

void SealedFileTest::takesOneSpellingOfAPassword_data()
{
    QTest::addColumn<QString>("sealing");
    QTest::addColumn<QString>("opening");
    const QString composed = QStringLiteral("caf\u00e9");
    const QString decomposed = QStringLiteral("cafe\u0301");
    QTest::newRow("composed, decomposed") << composed << decomposed;
    QTest::newRow("decomposed, composed") << decomposed << composed;
    QTest::newRow("plain, trailing space") << QStringLiteral("pw") << QStringLiteral("pw ");
    QTest::newRow("pasted line, plain") << QStringLiteral(" \tpw\n") << QStringLiteral("pw");
    QTest::newRow("ideographic space") << QStringLiteral("\u3000密码") << QStringLiteral("密码");
    QTest::newRow("both") << (decomposed + QStringLiteral("\u00a0")) << composed;
}

void SealedFileTest::takesOneSpellingOfAPassword()
{
    QFETCH(QString, sealing);
    QFETCH(QString, opening);
    QVERIFY(sealing != opening);
    QCOMPARE(opened(sealed(sealing), opening), payload);
}

void SealedFileTest::sealsUnderNoEmptyPassword_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("spaces") << QStringLiteral("  ");
    QTest::newRow("ideographic space") << QStringLiteral("\u3000");
}

void SealedFileTest::sealsUnderNoEmptyPassword()
{
    QFETCH(QString, password);
    QByteArray file;
    QCOMPARE(sealToBytes(payload, password, SealProfile::Test, &file),
             SealedFileError::InvalidInput);
    QVERIFY(file.isEmpty());
}

void SealedFileTest::opensNoTestProfileUnlessAsked()
{
    const QByteArray file = sealed(QStringLiteral("pw"));
    SecretBytes content;
    QCOMPARE(openBytes(file, QStringLiteral("pw"), false, &content), SealedFileError::Unsupported);
    QVERIFY(content.isNull());
}

void SealedFileTest::sealsNothingEmptyOrTooLarge()
{
    QByteArray file;
    QCOMPARE(sealToBytes({}, QStringLiteral("pw"), SealProfile::Test, &file),
             SealedFileError::InvalidInput);
    const QByteArray tooLarge(backend::sealedfile::maxPayloadSize + 1, 'x');
    QCOMPARE(sealToBytes(tooLarge, QStringLiteral("pw"), SealProfile::Test, &file),
             SealedFileError::InvalidInput);
    QCOMPARE(sealToBytes(payload, QStringLiteral("pw"), static_cast<SealProfile>(7), &file),
             SealedFileError::InvalidInput);
    QVERIFY(file.isEmpty());
}

void SealedFileTest::carriesTheLargestPayload()
{
    const QByteArray largest(backend::sealedfile::maxPayloadSize, 'x');
    const QByteArray file = sealed(QStringLiteral("pw"), largest);
    QCOMPARE(file.size(), qsizetype(16) * 1024 * 1024);
    QVERIFY(opened(file, QStringLiteral("pw")) == largest);
}

void SealedFileTest::refusesTrailingBytes()
{
    const QByteArray file = sealed(QStringLiteral("pw"));
    for (const QByteArray& tail : {QByteArray(1, '\0'), QByteArray("\n"), file}) {
        SecretBytes content;
        QCOMPARE(openBytes(QByteArray(file + tail), QStringLiteral("pw"), true, &content),
                 SealedFileError::Damaged);
    }
    // Too large even where the length field agrees.
    QByteArray huge = file;
    huge.resize(backend::sealedfile::maxFileSize + 1);
    qToBigEndian(quint32(huge.size() - 86), huge.data() + backend::sealedfile::lengthOffset);
    SecretBytes content;
    QCOMPARE(openBytes(huge, QStringLiteral("pw"), true, &content), SealedFileError::Damaged);
}

void SealedFileTest::sealsWhileItsMakerWorks()
{
    const QString password = QStringLiteral("pw");
    QByteArray file;
    backend::FileSealer sealer(password, SealProfile::Test);
    QCOMPARE(sealer.seal(payload, &file), SealedFileError::None);
    QCOMPARE(opened(file, password), payload);
    // A second file would share salt and nonce with the first.
    QCOMPARE(sealer.seal(payload, &file), SealedFileError::InvalidInput);
    QVERIFY(file.isEmpty());
    backend::FileSealer empty(password, SealProfile::Test);
    QCOMPARE(empty.seal({}, &file), SealedFileError::InvalidInput);
    QCOMPARE(empty.seal(payload, &file), SealedFileError::InvalidInput);
    backend::FileSealer blank(QStringLiteral(" "), SealProfile::Test);
    QCOMPARE(blank.seal(payload, &file), SealedFileError::InvalidInput);
    QVERIFY(file.isEmpty());
    // One that nobody asks for a file ends by itself.
    const backend::FileSealer unused(password, SealProfile::Test);
}

void SealedFileTest::refusesAForeignFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("one byte") << QByteArray(1, '\x8a');
    QTest::newRow("text") << QByteArray("hello, this is no authorization file\n").repeated(10);
    QTest::newRow("picture") << QByteArray("\x89PNG\r\n\x1a\n", 8) + QByteArray(200, '\0');
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("line ends rewritten")
        << sealed(QStringLiteral("pw")).replace(QByteArray("\r\n"), QByteArray("\n"));
    QTest::newRow("byte before") << QByteArray(QByteArray(1, ' ') + sealed(QStringLiteral("pw")));
}

void SealedFileTest::refusesAForeignFile()
{
    QFETCH(QByteArray, file);
    SecretBytes content;
    QCOMPARE(openBytes(file, QStringLiteral("pw"), true, &content), SealedFileError::NotOurs);
}

// An empty password is refused only once the header has passed.
void SealedFileTest::checksTheHeaderBeforeThePassword()
{
    const QByteArray file = sealed(QStringLiteral("pw"));
    SecretBytes content;
    QCOMPARE(openBytes(file, QString(), true, &content), SealedFileError::WrongPassword);
    QCOMPARE(openBytes(file.chopped(1), QString(), true, &content), SealedFileError::Damaged);
    QCOMPARE(openBytes(QByteArray(file + 'x'), QString(), true, &content),
             SealedFileError::Damaged);
    QCOMPARE(openBytes(file, QString(), false, &content), SealedFileError::Unsupported);
    QByteArray newer = file;
    newer[backend::sealedfile::versionOffset] = 2;
    QCOMPARE(openBytes(newer, QString(), true, &content), SealedFileError::Unsupported);
    QCOMPARE(openBytes(file.sliced(1), QString(), true, &content), SealedFileError::NotOurs);
}

void SealedFileTest::reportsMissingMemory()
{
    const QString password = QStringLiteral("pw");
    const QByteArray file = sealed(password, payload, SealProfile::Standard);
    QVERIFY(!file.isEmpty());
    const int result = inChildProcess([&] {
        QFile statm(QStringLiteral("/proc/self/statm"));
        if (!statm.open(QIODevice::ReadOnly))
            return 1;
        const rlim_t pages = statm.readLine().split(' ').constFirst().toULongLong();
        // Room for small things, none for the 64 MiB of the key derivation.
        const rlim_t bytes = pages * static_cast<rlim_t>(::getpagesize()) + 16 * 1024 * 1024;
        const rlimit limit = {bytes, bytes};
        if (::setrlimit(RLIMIT_AS, &limit) != 0)
            return 2;
        QByteArray out;
        if (sealToBytes(payload, password, SealProfile::Standard, &out) !=
            SealedFileError::OutOfMemory)
            return 3;
        SecretBytes content;
        if (openBytes(file, password, false, &content) != SealedFileError::OutOfMemory)
            return 4;
        return sealToBytes(payload, password, SealProfile::Test, &out) == SealedFileError::None ? 0
                                                                                                : 5;
    });
    QCOMPARE(result, 0);
}

void SealedFileTest::worksWhereNoMemoryMayBeLocked()
{
    const int result = inChildProcess([] {
        // The limit does not bind the administrator.
        const rlimit none = {0, 0};
        if (::setrlimit(RLIMIT_MEMLOCK, &none) != 0 || (::geteuid() == 0 && ::setuid(65534) != 0))
            return 1;
        // Past the address sanitizer, which lets every mlock() succeed without doing it: there the
        // library does not meet the refusal that it meets in a plain build.
        char page = 0;
        if (::syscall(SYS_mlock, &page, 1) == 0)
            return 2;
        return opened(sealed(QStringLiteral("pw")), QStringLiteral("pw")) == payload ? 0 : 3;
    });
    QCOMPARE(result, 0);
}

void SealedFileTest::clearsTheResultOnFailure()
{
    QByteArray file = QByteArrayLiteral("left over");
    QCOMPARE(sealToBytes(payload, QString(), SealProfile::Test, &file),
             SealedFileError::InvalidInput);
    QVERIFY(file.isEmpty());
    SecretBytes content = SecretBytes::allocate(8);
    QCOMPARE(openBytes({}, QStringLiteral("pw"), true, &content), SealedFileError::NotOurs);
    QVERIFY(content.isNull());
}

void SealedFileTest::readsRegularFilesOnly()
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(QStringLiteral("pipe.taa"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QByteArray bytes = QByteArrayLiteral("left over");
    const QStringList refused = {pipe,
                                 folder.path(),
                                 QStringLiteral("/dev/zero"),
                                 folder.filePath(QStringLiteral("missing.taa")),
                                 QString(),
                                 folder.filePath(QStringLiteral("授权.taa")) + QChar(0)};
    for (const QString& path : refused) {
        errno = 0;
        QVERIFY2(readSealedFile(path, &bytes) == SealedFileError::Io, qPrintable(path));
        QVERIFY2(errno != 0, qPrintable(path));
        QVERIFY(bytes.isEmpty());
    }
    QFile file(folder.filePath(QStringLiteral("授权 文件.taa")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(payload), payload.size());
    file.close();
    QCOMPARE(readSealedFile(file.fileName(), &bytes), SealedFileError::None);
    QCOMPARE(bytes, payload);
}

void SealedFileTest::readsNoMoreThanItMayOpen()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("large.taa")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(backend::sealedfile::maxFileSize * 10));
    QByteArray bytes;
    QCOMPARE(readSealedFile(file.fileName(), &bytes), SealedFileError::None);
    QCOMPARE(bytes.size(), backend::sealedfile::maxFileSize + 1);
    QVERIFY(file.resize(0));
    QCOMPARE(readSealedFile(file.fileName(), &bytes), SealedFileError::None);
    QVERIFY(bytes.isEmpty());
}

void SealedFileTest::hasATextForEveryError()
{
    QVERIFY(sealedFileErrorText(SealedFileError::None).isEmpty());
    QSet<QString> texts;
    for (const SealedFileError error :
         {SealedFileError::NotOurs, SealedFileError::Unsupported, SealedFileError::Damaged,
          SealedFileError::WrongPassword, SealedFileError::OutOfMemory, SealedFileError::Io,
          SealedFileError::InvalidInput})
        texts.insert(sealedFileErrorText(error));
    QCOMPARE(texts.size(), 7);
    QVERIFY(!texts.contains(QString()));
}

void SealedFileTest::wipesWhatIsCutOff()
{
    SecretBytes bytes = SecretBytes::allocate(32);
    QCOMPARE(bytes.view().toByteArray(), QByteArray(32, '\0'));
    std::memset(bytes.data(), 'x', 32);
    const unsigned char* start = bytes.data();
    bytes.truncate(64);
    QCOMPARE(bytes.size(), std::size_t{32});
    bytes.truncate(8);
    QCOMPARE(bytes.view().toByteArray(), QByteArray(8, 'x'));
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(start) + 8, 24), QByteArray(24, '\0'));

    SecretBytes moved = std::move(bytes);
    QVERIFY(bytes.isNull()); // NOLINT(bugprone-use-after-move): that is what is tested
    QCOMPARE(bytes.size(), std::size_t{0});
    QCOMPARE(moved.data(), start);
    moved.clear();
    QVERIFY(moved.isNull());
    moved.clear();
}

void SealedFileTest::wipesTextButNoSharedCopy()
{
    std::string text(100, 'x');
    const char* start = text.data();
    text.resize(40);
    backend::wipe(text);
    QVERIFY(text.empty());
    QCOMPARE(text.data(), start);
    QCOMPARE(QByteArray(start, 100), QByteArray(100, '\0'));

    QByteArray bytes(100, 'x');
    QByteArray copy = bytes;
    backend::wipe(bytes);
    QVERIFY(bytes.isEmpty());
    QCOMPARE(copy, QByteArray(100, 'x'));
    backend::wipe(copy);
    QVERIFY(copy.isEmpty());

    const QString kept = QString(100, QLatin1Char('x'));
    QString word = kept;
    backend::wipe(word);
    QVERIFY(word.isEmpty());
    QCOMPARE(kept, QString(100, QLatin1Char('x')));
    QString literal = QStringLiteral("in read-only memory");
    backend::wipe(literal);
    QVERIFY(literal.isEmpty());
}

void SealedFileTest::givesNoMemoryThatIsNotThere()
{
    const SecretBytes bytes = SecretBytes::allocate(std::size_t{1} << 60);
    QVERIFY(bytes.isNull());
    QVERIFY(bytes.view().isEmpty());
}

int main(int argc, char** argv)
{
    return runTest<SealedFileTest>(argc, argv);
}

#include "SealedFileTest.moc"
