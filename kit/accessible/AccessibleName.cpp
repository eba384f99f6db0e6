#include "kit/accessible/AccessibleName.h"

#include <QComboBox>
#include <QLineEdit>
#include <QString>

namespace KZ {

QString spokenName(const QString& caption)
{
    constexpr char16_t ideographicSpace = 0x3000;
    QString name = caption;
    return name.remove(QChar(QChar::Nbsp)).remove(QChar(ideographicSpace));
}

void setEditorName(QWidget* editor, const QString& name)
{
    editor->setAccessibleName(name);
    const auto* const box = qobject_cast<const QComboBox*>(editor);
    if (box && box->lineEdit())
        box->lineEdit()->setAccessibleName(name);
}

} // namespace KZ
