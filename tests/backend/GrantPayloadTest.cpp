#include "backend/sealedfile/GrantPayload.h"

#include "backend/sealedfile/SealedFile.h"
#include "backend/sealedfile/Wipe.h"
#include "tests/backend/MemoryScan.h"
#include "tests/support/TestCase.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>
#include <random>

using backend::decodeGrants;
using backend::encodeGrants;
using backend::SealedFileError;
using backend::SecretBytes;
using Grants = QVector<boost::shared_ptr<GW::CAuthDetail>>;

namespace {

boost::shared_ptr<GW::CAuthDetail> grant(const QString& reference)
{
    auto detail = boost::make_shared<GW::CAuthDetail>();
    detail->grantRef = reference;
    detail->grantor = QStringLiteral("王芳");
    detail->grantee = QStringLiteral("li.wei");
    detail->account.accountType = 1;
    detail->account.platformId = 12;
    detail->account.brokerId = "6666";
    detail->account.accountSubType = 3;
    detail->account.accountId = "80012345";
    detail->account.accountPrivate = "secret of the owner";
    detail->account.accountAlias = "主账户";
    detail->limit.startTime = 1'700'000'000;
    detail->limit.endTime = 1'700'604'800;
    return detail;
}

bool isEqual(const GW::CAuthDetail& left, const GW::CAuthDetail& right)
{
    return left.grantRef == right.grantRef && left.grantor == right.grantor &&
           left.grantee == right.grantee && left.account.accountType == right.account.accountType &&
           left.account.platformId == right.account.platformId &&
           left.account.brokerId == right.account.brokerId &&
           left.account.accountSubType == right.account.accountSubType &&
           left.account.accountId == right.account.accountId &&
           left.account.accountPrivate == right.account.accountPrivate &&
           left.account.accountAlias == right.account.accountAlias &&
           left.limit.startTime == right.limit.startTime &&
           left.limit.endTime == right.limit.endTime &&
           left.limit.availableMarginRatio == right.limit.availableMarginRatio;
}

bool isEqual(const Grants& left, const Grants& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const auto& one, const auto& two) { return isEqual(*one, *two); });
}

QByteArray encoded(const Grants& grants)
{
    SecretBytes out;
    if (encodeGrants(grants, &out) != SealedFileError::None)
        return {};
    return out.view().toByteArray();
}

// Twelve fields: "r", "g", "e", 1, 2, "b", 3, "a", "s", "l", 4, 5.
QByteArray smallFields()
{
    return QByteArray::fromHex("6172"
                               "6167"
                               "6165"
                               "01"
                               "02"
                               "6162"
                               "03"
                               "6161"
                               "6173"
                               "616c"
                               "04"
                               "05");
}

} // namespace

class GrantPayloadTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void carriesEveryField();
    void carriesExtremes();
    void keepsItsBytes();
    void refusesToEncode_data();
    void refusesToEncode();
    void encodesUpToItsLimits();
    void refusesToDecode_data();
    void refusesToDecode();
    void acceptsLongerNumberForms();
    void refusesEveryTruncation();
    void survivesAlteredBytes();
    void survivesRandomBytes();
    void carriesTenThousandGrants();
    void leavesNoSecretBehind();
};

void GrantPayloadTest::carriesEveryField()
{
    const auto plain = grant(QStringLiteral("ref-1"));
    const auto limited = grant(QStringLiteral("ref-2"));
    limited->limit.availableMarginRatio = 0.35;
    const Grants grants = {plain, limited};
    Grants decoded;
    QCOMPARE(decodeGrants(encoded(grants), &decoded), SealedFileError::None);
    QVERIFY(isEqual(grants, decoded));
    QVERIFY(!decoded.at(0)->limit.hasMarginRatio());
    QCOMPARE(decoded.at(1)->limit.availableMarginRatio, 0.35);
}

void GrantPayloadTest::carriesExtremes()
{
    const auto least = grant(QStringLiteral("r"));
    least->account = {};
    least->account.accountType = std::numeric_limits<qint32>::min();
    least->account.platformId = -1;
    least->account.accountSubType = std::numeric_limits<qint32>::max();
    least->grantor.clear();
    least->grantee.clear();
    least->limit.startTime = std::numeric_limits<qint32>::min();
    least->limit.endTime = std::numeric_limits<qint32>::max();
    least->limit.availableMarginRatio = 1.0;
    const auto odd = grant(QString(QChar(0)));
    odd->grantee = QString::fromUtf8("\xe2\x80\xae"
                                     "right to left \xf0\x9f\x98\x80");
    odd->account.accountPrivate = std::string("a\0b", 3);
    odd->limit.availableMarginRatio = std::numeric_limits<double>::denorm_min();
    const Grants grants = {least, odd};
    Grants decoded;
    QCOMPARE(decodeGrants(encoded(grants), &decoded), SealedFileError::None);
    QVERIFY(isEqual(grants, decoded));
}

// Files that users keep must open with every later version.
void GrantPayloadTest::keepsItsBytes()
{
    const auto small = boost::make_shared<GW::CAuthDetail>();
    small->grantRef = QStringLiteral("r");
    small->grantor = QStringLiteral("g");
    small->grantee = QStringLiteral("e");
    small->account.accountType = 1;
    small->account.platformId = 2;
    small->account.brokerId = "b";
    small->account.accountSubType = 3;
    small->account.accountId = "a";
    small->account.accountPrivate = "s";
    small->account.accountAlias = "l";
    small->limit.startTime = 4;
    small->limit.endTime = 5;
    QCOMPARE(encoded({small}), QByteArray(QByteArray::fromHex("8201818c") + smallFields()));
    small->limit.availableMarginRatio = 0.5;
    QCOMPARE(encoded({small}), QByteArray(QByteArray::fromHex("8201818d") + smallFields() +
                                          QByteArray::fromHex("fb3fe0000000000000")));
}

void GrantPayloadTest::refusesToEncode_data()
{
    QTest::addColumn<Grants>("grants");
    const auto changed = [](auto change) {
        auto detail = grant(QStringLiteral("ref"));
        change(*detail);
        return Grants{detail};
    };
    const double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("nothing") << Grants();
    QTest::newRow("null") << Grants{grant(QStringLiteral("ref")), nullptr};
    QTest::newRow("no reference") << changed([](auto& g) { g.grantRef.clear(); });
    QTest::newRow("reference twice")
        << Grants{grant(QStringLiteral("ref")), grant(QStringLiteral("ref"))};
    QTest::newRow("long grantee") << changed(
        [](auto& g) { g.grantee = QString(4097, QLatin1Char('x')); });
    QTest::newRow("long in UTF-8")
        << changed([](auto& g) { g.grantor = QString(1366, QChar(0x738b)); });
    QTest::newRow("a megabyte") << changed(
        [](auto& g) { g.account.accountAlias.assign(1 << 20, 'x'); });
    QTest::newRow("no UTF-8") << changed([](auto& g) { g.account.accountPrivate = "\xff\xfe"; });
    QTest::newRow("overlong UTF-8") << changed([](auto& g) { g.account.accountId = "\xc0\xaf"; });
    QTest::newRow("half a surrogate pair")
        << changed([](auto& g) { g.grantee = QString(QChar(0xd83d)); });
    QTest::newRow("ratio 0") << changed([](auto& g) { g.limit.availableMarginRatio = 0; });
    QTest::newRow("ratio below 0") << changed([](auto& g) { g.limit.availableMarginRatio = -0.1; });
    QTest::newRow("ratio above 1") << changed([](auto& g) { g.limit.availableMarginRatio = 1.01; });
    QTest::newRow("ratio infinite")
        << changed([infinity](auto& g) { g.limit.availableMarginRatio = infinity; });
    QTest::newRow("ratio no number") << changed(
        [](auto& g) { g.limit.availableMarginRatio = std::numeric_limits<double>::quiet_NaN(); });
    QTest::newRow("too many") << Grants(backend::grantpayload::maxGrants + 1,
                                        grant(QStringLiteral("ref")));
}

void GrantPayloadTest::refusesToEncode()
{
    QFETCH(Grants, grants);
    SecretBytes out = SecretBytes::allocate(4);
    QCOMPARE(encodeGrants(grants, &out), SealedFileError::InvalidInput);
    QVERIFY(out.isNull());
}

void GrantPayloadTest::encodesUpToItsLimits()
{
    const auto longest = grant(QString(4096, QLatin1Char('r')));
    longest->grantee = QString(1365, QChar(0x738b));
    longest->account.accountAlias.assign(4096, 'x');
    Grants decoded;
    QCOMPARE(decodeGrants(encoded({longest}), &decoded), SealedFileError::None);
    QVERIFY(isEqual({longest}, decoded));

    // Every grant acceptable by itself, all of them more than a file may hold.
    Grants many;
    for (int i = 0; i < 5000; ++i) {
        many.append(grant(QString::number(i)));
        many.last()->account.accountAlias.assign(4000, 'x');
    }
    SecretBytes out;
    QCOMPARE(encodeGrants(many, &out), SealedFileError::InvalidInput);
    QVERIFY(out.isNull());
}

void GrantPayloadTest::refusesToDecode_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<SealedFileError>("error");
    const auto damaged = [](const char* name, const QByteArray& payload) {
        QTest::newRow(name) << payload << SealedFileError::Damaged;
    };
    const auto hex = [](const char* digits) { return QByteArray::fromHex(digits); };
    const QByteArray head = hex("8201818c");
    const QByteArray fields = smallFields();
    QTest::newRow("next version") << QByteArray(hex("8202818c") + fields)
                                  << SealedFileError::Unsupported;
    QTest::newRow("version 0") << QByteArray(hex("8200818c") + fields)
                               << SealedFileError::Unsupported;
    damaged("nothing", {});
    damaged("trailing byte", QByteArray(head + fields + hex("00")));
    damaged("trailing break", QByteArray(head + fields + hex("ff")));
    damaged("no array", hex("01"));
    damaged("a map", QByteArray(hex("a101818c") + fields));
    damaged("a tag before", QByteArray(hex("d9d9f7") + head + fields));
    damaged("three elements", QByteArray(hex("8301818c") + fields + hex("00")));
    damaged("version only", hex("8101"));
    damaged("version as a text", QByteArray(hex("826131818c") + fields));
    damaged("no grants", hex("820180"));
    damaged("grants of unknown number", QByteArray(hex("82019f8c") + fields + hex("ff")));
    damaged("grant of unknown length", QByteArray(hex("8201819f") + fields + hex("ff")));
    damaged("eleven fields", QByteArray(hex("8201818b") + fields.chopped(1)));
    damaged("fourteen fields",
            QByteArray(hex("8201818e") + fields + hex("fb3fe0000000000000") + hex("00")));
    damaged("more grants than memory", QByteArray(hex("82019bffffffffffffffff8c") + fields));
    damaged("more grants than there are", QByteArray(hex("8201828c") + fields));
    damaged("too many grants", QByteArray(hex("82019a000186a18c") + fields));
    damaged("reference twice", QByteArray(hex("8201828c") + fields + hex("8c") + fields));
    damaged("empty reference", QByteArray(head + hex("60") + fields.sliced(2)));
    damaged("reference as bytes", QByteArray(head + hex("4172") + fields.sliced(2)));
    damaged("reference in chunks", QByteArray(head + hex("7f6172ff") + fields.sliced(2)));
    damaged("no UTF-8", QByteArray(head + hex("61ff") + fields.sliced(2)));
    damaged("surrogate in UTF-8", QByteArray(head + hex("63eda0bd") + fields.sliced(2)));
    damaged("text longer than memory",
            QByteArray(head + hex("7bffffffffffffffff") + fields.sliced(1)));
    damaged("text longer than the payload", QByteArray(head + hex("790fff") + fields.sliced(1)));
    damaged("text over the limit",
            QByteArray(head + hex("791001") + QByteArray(4097, 'r') + fields.sliced(2)));
    const QByteArray before = fields.first(6);
    const QByteArray after = fields.sliced(7);
    damaged("number too large", QByteArray(head + before + hex("1a80000000") + after));
    damaged("number far too large", QByteArray(head + before + hex("1bffffffffffffffff") + after));
    damaged("number too small", QByteArray(head + before + hex("3a80000000") + after));
    damaged("number far too small", QByteArray(head + before + hex("3bffffffffffffffff") + after));
    damaged("number as a double", QByteArray(head + before + hex("fb3ff0000000000000") + after));
    damaged("number as null", QByteArray(head + before + hex("f6") + after));
    const QByteArray withRatio = hex("8201818d") + fields;
    damaged("ratio above 1", QByteArray(withRatio + hex("fb3ff0000000000001")));
    damaged("ratio 0", QByteArray(withRatio + hex("fb0000000000000000")));
    damaged("ratio below 0", QByteArray(withRatio + hex("fbbfe0000000000000")));
    damaged("ratio no number", QByteArray(withRatio + hex("fb7ff8000000000000")));
    damaged("ratio infinite", QByteArray(withRatio + hex("fb7ff0000000000000")));
    damaged("ratio as an integer", QByteArray(withRatio + hex("01")));
    damaged("ratio of none", QByteArray(withRatio + hex("fb7fefffffffffffff")));
    damaged("ratio null", QByteArray(withRatio + hex("f6")));
    damaged("nested without end", QByteArray(100'000, '\x81'));
    damaged("reserved head", hex("1c"));
}

void GrantPayloadTest::refusesToDecode()
{
    QFETCH(QByteArray, payload);
    QFETCH(SealedFileError, error);
    Grants decoded = {grant(QStringLiteral("left over"))};
    QCOMPARE(decodeGrants(payload, &decoded), error);
    QVERIFY(decoded.isEmpty());
}

void GrantPayloadTest::acceptsLongerNumberForms()
{
    QByteArray fields = smallFields();
    fields.replace(6, 1, QByteArray::fromHex("1b0000000000000001"));
    Grants decoded;
    QCOMPARE(decodeGrants(QByteArray(QByteArray::fromHex("8201818c") + fields), &decoded),
             SealedFileError::None);
    QCOMPARE(decoded.constFirst()->account.accountType, 1);
}

void GrantPayloadTest::refusesEveryTruncation()
{
    const auto limited = grant(QStringLiteral("ref-2"));
    limited->limit.availableMarginRatio = 0.35;
    const QByteArray payload = encoded({grant(QStringLiteral("ref-1")), limited});
    QVERIFY(!payload.isEmpty());
    Grants decoded;
    for (qsizetype size = 0; size < payload.size(); ++size) {
        // A copy of its own, so that the sanitizer sees a read beyond its end.
        const QByteArray cut(payload.constData(), size);
        QVERIFY2(decodeGrants(cut, &decoded) == SealedFileError::Damaged,
                 qPrintable(QString::number(size)));
    }
}

void GrantPayloadTest::survivesAlteredBytes()
{
    const auto limited = grant(QStringLiteral("ref-2"));
    limited->limit.availableMarginRatio = 0.35;
    const QByteArray payload = encoded({grant(QStringLiteral("ref-1")), limited});
    std::mt19937 random(20240229);
    int accepted = 0;
    for (int round = 0; round < 40'000; ++round) {
        QByteArray altered(payload.constData(), payload.size());
        const auto changes = 1 + random() % 4;
        for (unsigned change = 0; change < changes; ++change) {
            const auto position = static_cast<qsizetype>(random() % altered.size());
            switch (random() % 4) {
            case 0:
                altered.remove(position, 1);
                break;
            case 1:
                altered.insert(position, static_cast<char>(random()));
                break;
            default:
                altered[position] = static_cast<char>(random());
            }
        }
        Grants decoded;
        if (decodeGrants(altered, &decoded) != SealedFileError::None) {
            QVERIFY(decoded.isEmpty());
            continue;
        }
        // What it accepts is something that it would write itself.
        ++accepted;
        Grants again;
        QCOMPARE(decodeGrants(encoded(decoded), &again), SealedFileError::None);
        QVERIFY(isEqual(decoded, again));
    }
    // Altered letters are still letters: the round trip above is not idle.
    QVERIFY(accepted > 0);
}

void GrantPayloadTest::survivesRandomBytes()
{
    std::mt19937 random(42);
    for (int round = 0; round < 20'000; ++round) {
        QByteArray bytes = QByteArray::fromHex("8201818c");
        bytes.truncate(static_cast<qsizetype>(random() % 5));
        const auto size = random() % 200;
        for (unsigned i = 0; i < size; ++i)
            bytes.append(static_cast<char>(random()));
        Grants decoded;
        QVERIFY(decodeGrants(bytes, &decoded) != SealedFileError::None);
        QVERIFY(decoded.isEmpty());
    }
}

void GrantPayloadTest::carriesTenThousandGrants()
{
    Grants grants;
    for (int i = 0; i < 10'000; ++i) {
        grants.append(grant(QStringLiteral("ref-%1").arg(i)));
        if (i % 3 == 0)
            grants.last()->limit.availableMarginRatio = 0.0001 * (i + 1);
    }
    SecretBytes payload;
    QCOMPARE(encodeGrants(grants, &payload), SealedFileError::None);
    QByteArray file;
    const QString password = QStringLiteral("pw");
    QCOMPARE(backend::sealToBytes(payload.view(), password, backend::SealProfile::Test, &file),
             SealedFileError::None);
    SecretBytes opened;
    QCOMPARE(backend::openBytes(file, password, true, &opened), SealedFileError::None);
    Grants decoded;
    QCOMPARE(decodeGrants(opened.view(), &decoded), SealedFileError::None);
    QVERIFY(isEqual(grants, decoded));
}

void GrantPayloadTest::leavesNoSecretBehind()
{
    MemoryScan scan("the-owner's-secret-of-this-account");
    {
        auto one = grant(QStringLiteral("ref"));
        // Memory that was given back loses its first bytes to the allocator's bookkeeping.
        one->account.accountPrivate.assign(64, '.');
        one->account.accountPrivate += scan.needle();
        QVERIFY(scan.occurrences() > 0);

        QByteArray file;
        SecretBytes payload;
        const QString password = QStringLiteral("pw");
        QCOMPARE(encodeGrants({one}, &payload), SealedFileError::None);
        QCOMPARE(backend::sealToBytes(payload.view(), password, backend::SealProfile::Test, &file),
                 SealedFileError::None);
        payload.clear();
        SecretBytes opened;
        QCOMPARE(backend::openBytes(file, password, true, &opened), SealedFileError::None);
        Grants decoded;
        QCOMPARE(decodeGrants(opened.view(), &decoded), SealedFileError::None);
        backend::wipe(one->account.accountPrivate);
        backend::wipe(decoded.constFirst()->account.accountPrivate);
    }
    QCOMPARE(scan.occurrences(), 0);
}

int main(int argc, char** argv)
{
    return runTest<GrantPayloadTest>(argc, argv);
}

#include "GrantPayloadTest.moc"
