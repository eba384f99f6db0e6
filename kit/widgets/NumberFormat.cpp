#include "kit/widgets/NumberFormat.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KZ {

namespace {

/// More digits than this are not in a double.
constexpr int MOST_DECIMALS = 17;

} // namespace

QString formatDoubleNumber(double value, int decimals, int flags, bool grouping,
                           const QString& invalidText)
{
    if (!std::isfinite(value) || std::abs(value) == std::numeric_limits<double>::max())
        return invalidText;
    QLocale locale(QLocale::C);
    if (!grouping)
        locale.setNumberOptions(QLocale::OmitGroupSeparator);
    else
        locale.setNumberOptions(QLocale::DefaultNumberOptions);
    QString text = locale.toString(value, 'f', std::clamp(decimals, 0, MOST_DECIMALS));
    if ((flags & NUMBER_FORMAT_TRIM_ZEROS) && text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    const bool isZero = std::all_of(text.cbegin(), text.cend(), [](QChar character) {
        return character < QLatin1Char('1') || character > QLatin1Char('9');
    });
    if (isZero && text.startsWith(QLatin1Char('-')))
        text.remove(0, 1);
    if ((flags & NUMBER_FORMAT_PLUS_SIGN) && !isZero && value > 0)
        text.prepend(QLatin1Char('+'));
    return text;
}

} // namespace KZ
