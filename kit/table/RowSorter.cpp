#include "kit/table/RowSorter.h"

#include "kit/table/RowStore.h"

#include <QCollator>
#include <QDateTime>
#include <QHash>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace KZ {

namespace {

/// Ascending order of the kinds of cells.
enum class EKind : quint8 { Number, Date, Text, Empty };

struct SKey
{
    int row;
    EKind kind;
    double value;
};

/// A longer text is ordered by its beginning.
constexpr qsizetype LONGEST_COMPARED_TEXT = 256;
/// More digits than a double tells apart (DBL_DIG); such texts are identifiers.
constexpr int MOST_DIGITS = 15;

bool parseNumber(QStringView text, double* value)
{
    if (text.endsWith(u'%'))
        text.chop(1);
    QString plain;
    int digits = 0;
    bool fraction = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (unit >= u'0' && unit <= u'9')
            ++digits;
        else if (unit == u',' && digits > 0 && !fraction)
            continue;
        else if (unit == u'.' && !fraction)
            fraction = true;
        else if (!((unit == u'-' || unit == u'+') && i == 0))
            return false;
        plain += QChar(unit);
    }
    if (digits == 0 || digits > MOST_DIGITS)
        return false;
    bool ok = false;
    *value = plain.toDouble(&ok);
    return ok;
}

bool parseDate(QStringView text, double* value)
{
    if (text.size() < 10 || (text[4] != u'-' && text[4] != u'/') || text[7] != text[4])
        return false;
    QString date = text.left(10).toString();
    date.replace(u'/', u'-');
    const QDate day = QDate::fromString(date, Qt::ISODate);
    QTime time(0, 0);
    if (text.size() > 10)
        time = QTime::fromString(text.mid(11).toString(), Qt::ISODateWithMs);
    if (!day.isValid() || !time.isValid())
        return false;
    *value = double(day.toJulianDay()) * 86400.0 + time.msecsSinceStartOfDay() / 1000.0;
    return true;
}

/// Numbers the distinct texts in collation order, so that each is collated only once.
class CTextRanks
{
public:
    int add(const QString& text)
    {
        const auto known = m_numbers.constFind(text);
        if (known != m_numbers.cend())
            return *known;
        const int number = int(m_texts.size());
        m_numbers.insert(text, number);
        m_texts.push_back(text);
        return number;
    }

    std::vector<int> ranks() const
    {
        QCollator collator(QLocale(QLocale::Chinese, QLocale::China));
        collator.setNumericMode(true);
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        std::vector<std::pair<QCollatorSortKey, int>> keys;
        keys.reserve(m_texts.size());
        for (int number = 0; number < int(m_texts.size()); ++number) {
            const QString& text = m_texts[size_t(number)];
            keys.emplace_back(collator.sortKey(text.left(LONGEST_COMPARED_TEXT)), number);
        }
        std::stable_sort(keys.begin(), keys.end(), [](const auto& left, const auto& right) {
            return left.first.compare(right.first) < 0;
        });
        std::vector<int> ranks(keys.size());
        int rank = 0;
        for (size_t i = 0; i < keys.size(); ++i) {
            if (i > 0 && keys[i - 1].first.compare(keys[i].first) != 0)
                ++rank;
            ranks[size_t(keys[i].second)] = rank;
        }
        return ranks;
    }

private:
    QHash<QString, int> m_numbers;
    std::vector<QString> m_texts;
};

SKey cellKey(const CRowStore& store, int row, int column, CTextRanks& texts)
{
    SKey key{row, EKind::Empty, 0};
    if (const CRowStore::STick* const tick = store.tick(row, column)) {
        key.kind = EKind::Number;
        key.value = (tick->checked ? 2 : 0) + (tick->enabled ? 1 : 0);
        return key;
    }
    const QString& text = store.text(row, column);
    const QStringView trimmed = QStringView(text).trimmed();
    if (trimmed.isEmpty())
        return key;
    if (parseNumber(trimmed, &key.value)) {
        key.kind = EKind::Number;
    } else if (parseDate(trimmed, &key.value)) {
        key.kind = EKind::Date;
    } else {
        key.kind = EKind::Text;
        key.value = texts.add(text);
    }
    return key;
}

} // namespace

void sortRows(const CRowStore& store, int column, Qt::SortOrder order, std::vector<int>& rows)
{
    CTextRanks texts;
    std::vector<SKey> keys;
    keys.reserve(rows.size());
    for (const int row : rows)
        keys.push_back(cellKey(store, row, column, texts));
    const std::vector<int> ranks = texts.ranks();
    for (SKey& key : keys) {
        if (key.kind == EKind::Text)
            key.value = ranks[size_t(key.value)];
    }
    const bool descending = order == Qt::DescendingOrder;
    std::stable_sort(keys.begin(), keys.end(), [descending](const SKey& a, const SKey& b) {
        if (a.kind == EKind::Empty || b.kind == EKind::Empty)
            return a.kind < b.kind;
        const SKey& low = descending ? b : a;
        const SKey& high = descending ? a : b;
        return low.kind != high.kind ? low.kind < high.kind : low.value < high.value;
    });
    std::transform(keys.cbegin(), keys.cend(), rows.begin(),
                   [](const SKey& key) { return key.row; });
}

} // namespace KZ
