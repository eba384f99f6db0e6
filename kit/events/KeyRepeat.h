#pragma once

#include <QObject>

namespace KZ {

/// Tells whether the key that the program handles repeats one that is held down, which the event of
/// a shortcut does not say. GUI thread only.
class CKeyRepeat : public QObject
{
    Q_OBJECT

public:
    /// Begins to watch the keys of the program, once for all.
    static void watch();
    static bool isUnderWay();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit CKeyRepeat(QObject* parent);
};

} // namespace KZ
