#pragma once

#include "kit/resources/UiResourceChangeHandler.h"

#include <QObject>
#include <QString>

class QWidget;

namespace KZ {

/// Gives a widget its size by key, now and whenever the registry's sizes change; in a CWidgetList
/// the widget keeps that size. The widget owns it. GUI thread only.
class KZKIT_EXPORT CSizeFollower : public QObject, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    /// Makes a follower for `widget`. Without `heightKey` its height is that of its size hint.
    static void follow(QWidget* widget, const QString& widthKey,
                       const QString& heightKey = QString());

    void onUiResourceChanged() override;

private:
    CSizeFollower(QWidget* widget, const QString& widthKey, const QString& heightKey);

    QWidget* const m_widget;
    const QString m_widthKey;
    const QString m_heightKey;
};

} // namespace KZ
