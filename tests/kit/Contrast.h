#pragma once

#include <QColor>
#include <QImage>

#include <algorithm>
#include <cmath>

/// Relative luminance and contrast ratio after WCAG 2.1, "relative luminance" and "contrast ratio".
namespace contrast {

/// Level AA of success criteria 1.4.3 (text) and 1.4.11 (parts of controls).
inline constexpr double TEXT = 4.5;
inline constexpr double CONTROL = 3.0;

inline double channel(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

inline double luminance(const QColor& color)
{
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) +
           0.0722 * channel(color.blueF());
}

inline double ratio(const QColor& one, const QColor& other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

/// The contrast to `ground` of the pixel in `area` that stands out most from it.
inline double strongest(const QImage& image, const QRect& area, const QColor& ground)
{
    double most = 1;
    const QRect room = area & image.rect();
    for (int y = room.top(); y <= room.bottom(); ++y) {
        for (int x = room.left(); x <= room.right(); ++x)
            most = std::max(most, ratio(image.pixelColor(x, y), ground));
    }
    return most;
}

} // namespace contrast
