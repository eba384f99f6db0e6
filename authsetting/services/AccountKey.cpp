#include "authsetting/services/AccountKey.h"

#include <QByteArray>
#include <QStringList>
#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace GW {

namespace {

constexpr char separator = '|';

/// Which bytes stand for themselves in a key.
constexpr std::array<bool, 256> plainBytes = [] {
    std::array<bool, 256> plain{};
    for (const char byte : std::string_view("0123456789abcdefghijklmnopqrstuvwxyz"
                                            "ABCDEFGHIJKLMNOPQRSTUVWXYZ-_."))
        plain[static_cast<unsigned char>(byte)] = true;
    return plain;
}();

bool isPlain(unsigned char byte)
{
    return plainBytes[byte];
}

// Ten digits and a sign.
constexpr qsizetype mostDigits = 11;

/// Puts the parts of any key together.
class KeyText
{
public:
    void add(char byte) { m_bytes.append(byte); }

    void add(qint32 number)
    {
        const qsizetype size = m_bytes.size();
        m_bytes.resize(size + mostDigits);
        char* begin = m_bytes.data() + size;
        m_bytes.resize(std::to_chars(begin, begin + mostDigits, number).ptr - m_bytes.data());
    }

    // Percent-encoding keeps any byte, the separator included, apart from the key's own syntax.
    void add(const std::string& field)
    {
        if (std::all_of(field.begin(), field.end(), isPlain)) {
            add(std::string_view(field));
            return;
        }
        const QByteArray encoded =
            QByteArray::fromStdString(field).toPercentEncoding(QByteArray(), "~");
        add(std::string_view(encoded.constData(), static_cast<std::size_t>(encoded.size())));
    }

    QString text() const { return QString::fromLatin1(m_bytes.constData(), m_bytes.size()); }

private:
    void add(std::string_view bytes)
    {
        const qsizetype size = m_bytes.size();
        m_bytes.resize(size + static_cast<qsizetype>(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), m_bytes.begin() + size);
    }

    QVarLengthArray<char, 96> m_bytes;
};

char16_t* put(char16_t* at, qint32 number)
{
    std::array<char, mostDigits> digits;
    const char* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    return std::copy(digits.cbegin(), end, at);
}

/// Copies `field`; null when it has a byte that does not stand for itself.
char16_t* put(char16_t* at, const std::string& field)
{
    for (const char byte : field) {
        if (!plainBytes[static_cast<unsigned char>(byte)])
            return nullptr;
        *at++ = static_cast<unsigned char>(byte);
    }
    return at;
}

/// The key of an ordinary account, null for one that needs encoding or is very long.
QString plainKey(const mbservice::CAccountInfo& account)
{
    constexpr std::size_t numbersAndSeparators = 2 * mostDigits + 3;
    std::array<char16_t, 96> units;
    if (account.brokerId.size() > units.size() ||
        account.accountId.size() > units.size() - numbersAndSeparators ||
        account.brokerId.size() > units.size() - numbersAndSeparators - account.accountId.size())
        return {};
    char16_t* at = put(units.data(), account.platformId);
    *at++ = separator;
    at = put(at, account.brokerId);
    if (!at)
        return {};
    *at++ = separator;
    at = put(at, account.accountSubType);
    *at++ = separator;
    at = put(at, account.accountId);
    return at ? QString(reinterpret_cast<const QChar*>(units.data()), at - units.data())
              : QString();
}

std::string decoded(const QString& text)
{
    return QByteArray::fromPercentEncoding(text.toLatin1()).toStdString();
}

} // namespace

// Every row of every reload needs its key, so the text itself is all that it allocates.
QString genAccountKeyQs(const mbservice::CAccountInfo& account)
{
    if (const QString key = plainKey(account); !key.isNull())
        return key;
    KeyText key;
    key.add(account.platformId);
    key.add(separator);
    key.add(account.brokerId);
    key.add(separator);
    key.add(account.accountSubType);
    key.add(separator);
    key.add(account.accountId);
    return key.text();
}

mbservice::CAccountInfo keyToAccountInfo(QString key)
{
    const QStringList fields = key.split(QLatin1Char(separator));
    if (fields.size() != 4)
        return {};
    bool platformOk = false;
    bool subTypeOk = false;
    mbservice::CAccountInfo account;
    account.platformId = fields[0].toInt(&platformOk);
    account.brokerId = decoded(fields[1]);
    account.accountSubType = fields[2].toInt(&subTypeOk);
    account.accountId = decoded(fields[3]);
    if (!platformOk || !subTypeOk || genAccountKeyQs(account) != key)
        return {};
    return account;
}

QString accountDisplayIDQs(const mbservice::CAccountInfo& account)
{
    const std::string& shown =
        account.accountAlias.empty() ? account.accountId : account.accountAlias;
    // Account numbers are nearly always plain, and each row of each reload shows one.
    std::array<char16_t, 32> units;
    if (shown.size() <= units.size()) {
        if (const char16_t* const end = put(units.data(), shown))
            return QString(reinterpret_cast<const QChar*>(units.data()), end - units.data());
    }
    return QString::fromStdString(shown);
}

} // namespace GW
