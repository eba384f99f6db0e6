#include "kit/table/TableLayout.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace KZ {

namespace {

constexpr int VERSION = 1;
constexpr qsizetype LONGEST_TEXT = 65536;
constexpr qsizetype MOST_COLUMNS = 1000;

QJsonArray toJson(const QVector<int>& numbers)
{
    QJsonArray array;
    std::copy(numbers.cbegin(), numbers.cend(), std::back_inserter(array));
    return array;
}

std::optional<int> wholeNumber(const QJsonValue& value, int least, int most)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (!(number >= least && number <= most) || number != std::floor(number))
        return std::nullopt;
    return int(number);
}

std::optional<QVector<int>> wholeNumbers(const QJsonValue& value, int least, int most)
{
    if (!value.isArray() || value.toArray().size() > MOST_COLUMNS)
        return std::nullopt;
    QVector<int> numbers;
    const QJsonArray array = value.toArray();
    for (const QJsonValue& item : array) {
        const std::optional<int> number = wholeNumber(item, least, most);
        if (!number)
            return std::nullopt;
        numbers.append(*number);
    }
    return numbers;
}

bool hasRepetition(QVector<int> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    return std::adjacent_find(numbers.cbegin(), numbers.cend()) != numbers.cend();
}

} // namespace

QString STableLayout::toText() const
{
    const QJsonObject object{
        {QStringLiteral("version"), VERSION},
        {QStringLiteral("order"), toJson(order)},
        {QStringLiteral("widths"), toJson(widths)},
        {QStringLiteral("automatic"), toJson(automatic)},
        {QStringLiteral("sort"), sortColumn},
        {QStringLiteral("descending"), sortDescending},
    };
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<STableLayout> STableLayout::parse(const QString& text)
{
    if (text.isEmpty() || text.size() > LONGEST_TEXT)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    const QJsonObject object = document.object();
    const auto member = [&object](const char* name) {
        return object.value(QLatin1StringView(name));
    };
    if (!wholeNumber(member("version"), VERSION, VERSION))
        return std::nullopt;
    const auto widths = wholeNumbers(member("widths"), MIN_WIDTH, MAX_WIDTH);
    if (!widths || widths->isEmpty())
        return std::nullopt;
    const int last = int(widths->size()) - 1;
    const auto order = wholeNumbers(member("order"), 0, last);
    const auto automatic = wholeNumbers(member("automatic"), 0, last);
    const auto sort = wholeNumber(member("sort"), -1, last);
    const QJsonValue descending = member("descending");
    if (!order || order->size() != widths->size() || hasRepetition(*order) || !automatic ||
        hasRepetition(*automatic) || !sort || !descending.isBool())
        return std::nullopt;
    return STableLayout{*order, *widths, *automatic, *sort, descending.toBool()};
}

} // namespace KZ
