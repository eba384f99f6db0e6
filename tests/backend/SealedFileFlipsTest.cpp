#include "backend/sealedfile/SealedFile.h"
#include "tests/support/TestCase.h"

using namespace backend::sealedfile;
using backend::SealedFileError;
using backend::SealProfile;
using backend::SecretBytes;

namespace {

const QByteArray payload = QByteArrayLiteral("a payload of no particular meaning, 64 bytes or so");

QString password()
{
    return QStringLiteral("pw");
}

QByteArray sealed(SealProfile profile)
{
    QByteArray file;
    if (backend::sealToBytes(payload, password(), profile, &file) != SealedFileError::None)
        return {};
    return file;
}

SealedFileError tryOpen(QByteArrayView file)
{
    SecretBytes content;
    const SealedFileError error = backend::openBytes(file, password(), true, &content);
    // Whatever the error: nothing of the content ever comes with it.
    if (error != SealedFileError::None && !content.isNull())
        return SealedFileError::None;
    return error;
}

// What an altered byte at `position` is told to be.
SealedFileError expectedAt(qsizetype position)
{
    if (position < versionOffset)
        return SealedFileError::NotOurs;
    if (position < lengthOffset)
        return SealedFileError::Unsupported;
    if (position < saltOffset)
        return SealedFileError::Damaged;
    if (position < nonceOffset)
        return SealedFileError::WrongPassword;
    if (position < commitmentOffset)
        return SealedFileError::Damaged;
    return position < headerSize ? SealedFileError::WrongPassword : SealedFileError::Damaged;
}

} // namespace

class SealedFileFlipsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void refusesEveryFlippedBit();
    void refusesEveryOtherHeaderByte();
    void refusesEveryTruncation();
    void refusesEveryMissingOrDoubledByte();
    void refusesPartsOfAnotherFile();
    void refusesFlipsUnderTheStandardCost();
};

void SealedFileFlipsTest::refusesEveryFlippedBit()
{
    const QByteArray file = sealed(SealProfile::Test);
    QCOMPARE(tryOpen(file), SealedFileError::None);
    for (qsizetype position = 0; position < file.size(); ++position) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray altered = file;
            altered[position] = static_cast<char>(altered.at(position) ^ (1 << bit));
            const SealedFileError error = tryOpen(altered);
            QVERIFY2(error == expectedAt(position), qPrintable(QStringLiteral("byte %1, bit %2: %3")
                                                                   .arg(position)
                                                                   .arg(bit)
                                                                   .arg(static_cast<int>(error))));
        }
    }
}

void SealedFileFlipsTest::refusesEveryOtherHeaderByte()
{
    const QByteArray file = sealed(SealProfile::Test);
    for (qsizetype position = 0; position < saltOffset; ++position) {
        for (int value = 0; value < 256; ++value) {
            if (value == static_cast<quint8>(file.at(position)))
                continue;
            // A known profile at another cost makes another key.
            const bool known = position == profileOffset && value == 1;
            QByteArray altered = file;
            altered[position] = static_cast<char>(value);
            QCOMPARE(tryOpen(altered),
                     known ? SealedFileError::WrongPassword : expectedAt(position));
        }
    }
}

void SealedFileFlipsTest::refusesEveryTruncation()
{
    const QByteArray file = sealed(SealProfile::Test);
    for (qsizetype size = 0; size < file.size(); ++size) {
        const SealedFileError error = tryOpen(QByteArrayView(file).first(size));
        const SealedFileError expected =
            size < versionOffset ? SealedFileError::NotOurs : SealedFileError::Damaged;
        QVERIFY2(error == expected, qPrintable(QString::number(size)));
    }
}

void SealedFileFlipsTest::refusesEveryMissingOrDoubledByte()
{
    const QByteArray file = sealed(SealProfile::Test);
    for (qsizetype position = 0; position < file.size(); ++position) {
        QByteArray missing = file;
        missing.remove(position, 1);
        QVERIFY2(tryOpen(missing) != SealedFileError::None, qPrintable(QString::number(position)));
        QByteArray doubled = file;
        doubled.insert(position, file.at(position));
        QVERIFY2(tryOpen(doubled) != SealedFileError::None, qPrintable(QString::number(position)));
    }
}

void SealedFileFlipsTest::refusesPartsOfAnotherFile()
{
    const QByteArray one = sealed(SealProfile::Test);
    const QByteArray two = sealed(SealProfile::Test);
    QCOMPARE(one.size(), two.size());
    // The head of one file with the rest of another of the same password.
    for (const qsizetype cut : {nonceOffset, commitmentOffset, headerSize, one.size() - tagSize}) {
        const SealedFileError error = tryOpen(QByteArray(one.first(cut) + two.sliced(cut)));
        QCOMPARE(error,
                 cut < headerSize ? SealedFileError::WrongPassword : SealedFileError::Damaged);
    }
}

void SealedFileFlipsTest::refusesFlipsUnderTheStandardCost()
{
    const QByteArray file = sealed(SealProfile::Standard);
    QCOMPARE(tryOpen(file), SealedFileError::None);
    for (const qsizetype position :
         {qsizetype(0), versionOffset, profileOffset, lengthOffset, saltOffset, nonceOffset,
          commitmentOffset, headerSize, file.size() - 1}) {
        QByteArray altered = file;
        altered[position] = static_cast<char>(altered.at(position) ^ 0x10);
        QCOMPARE(tryOpen(altered), expectedAt(position));
    }
}

int main(int argc, char** argv)
{
    return runTest<SealedFileFlipsTest>(argc, argv);
}

#include "SealedFileFlipsTest.moc"
