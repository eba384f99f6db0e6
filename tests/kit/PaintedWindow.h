#pragma once

#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/BaseWidget.h"
#include "tests/kit/Contrast.h"

#include <QTest>

#include <memory>

/// A shown window of the kit in one theme, whose picture is measured.
class PaintedWindow
{
protected:
    static void addThemes()
    {
        QTest::addColumn<KZ::CUiResource::Theme>("theme");
        QTest::newRow("light") << KZ::CUiResource::Theme::Light;
        QTest::newRow("dark") << KZ::CUiResource::Theme::Dark;
    }

    void open()
    {
        QFETCH(KZ::CUiResource::Theme, theme);
        KZ::CUiResource::setTheme(theme);
        m_window = std::make_unique<KZ::CBaseWidget>(nullptr);
        m_window->resize(400, 300);
    }

    void close()
    {
        m_window.reset();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Light);
    }

    void show()
    {
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QCoreApplication::processEvents();
    }

    static QColor color(const char* key) { return KZ::CUiResource::getColor(QLatin1String(key)); }

    QImage picture() const { return m_window->grab().toImage(); }

    QRect placeOf(const QWidget* widget) const
    {
        return QRect(widget->mapTo(m_window.get(), QPoint()), widget->size());
    }

    /// How far the left edge of `place`, halfway down, stands out from what is left of it.
    double edge(const QRect& place) const
    {
        const QImage image = picture();
        const int middle = place.center().y();
        return contrast::strongest(image, QRect(place.left(), middle, 4, 1),
                                   image.pixelColor(place.left() - 2, middle));
    }

    /// How far the marks inside `place` stand out from its pixel at `groundAt`.
    double marks(const QRect& place, const QPoint& groundAt) const
    {
        const QImage image = picture();
        return contrast::strongest(image, place, image.pixelColor(place.topLeft() + groundAt));
    }

    std::unique_ptr<KZ::CBaseWidget> m_window;
};

#define VERIFY_CONTRAST(measured)                                                                  \
    do {                                                                                           \
        const double ratio = (measured);                                                           \
        QVERIFY2(ratio >= contrast::CONTROL,                                                       \
                 qPrintable(QStringLiteral("%1 of %2").arg(QLatin1String(#measured)).arg(ratio))); \
    } while (false)
