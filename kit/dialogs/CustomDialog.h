#pragma once

#include "kit/dialogs/BaseDialog.h"

#include <QPointer>

namespace KZ {

/// A kit dialog that keeps one content widget stretched over its inside.
class KZKIT_EXPORT CCustomDialog : public CBaseDialog
{
    Q_OBJECT

public:
    explicit CCustomDialog(QWidget* parent);

    /// Makes `widget` fill the inside of the dialog and takes ownership; an earlier one stays a
    /// child but is no longer placed. Without a content widget the inside belongs to the subclass.
    void setContentWidget(QWidget* widget);
    /// Null before there is one and once it was deleted.
    QWidget* contentWidget() const;

    /// The size that the content asks for, with title bar and border around it.
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeContent();

    QPointer<QWidget> m_content;
};

} // namespace KZ
