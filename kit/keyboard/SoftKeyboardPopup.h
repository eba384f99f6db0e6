#pragma once

#include "kit/KitExport.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QFrame>
#include <QVector>

class QPushButton;
class QRandomGenerator;

namespace KZ {

/// A keyboard on the screen with every printable ASCII character on two layers. Its letters,
/// digits and signs each lie in an order of their own, so that neither the places of the clicks nor
/// a look over the shoulder at the hand tells the characters. It never takes the focus and knows
/// nothing of the text that is typed. GUI thread only.
class KZKIT_EXPORT CSoftKeyboardPopup : public QFrame, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    explicit CSoftKeyboardPopup(QWidget* parent);
    ~CSoftKeyboardPopup() override;

    /// Puts the keys in a new order, on both layers alike.
    void shuffle(QRandomGenerator& random);

    /// The characters in the order of their keys, those of the shown layer.
    QString characters() const;

    bool isShifted() const;
    void setShifted(bool shifted);

    /// Shows the window beside `editor`, on its screen.
    void popUp(const QWidget* editor);

    void onUiResourceChanged() override;

Q_SIGNALS:
    void characterTyped(QChar character);
    void backspaceTyped();
    void clearTyped();
    void enterTyped();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPushButton* addKey(const QString& name, const QString& text, const QString& sizeKey);
    void label();
    void takeTheme();

    /// One key per character of the lower layer, in the order of the rows.
    QVector<QPushButton*> m_keys;
    /// For each key the place of its character in the table of characters.
    QVector<int> m_order;
    QPushButton* m_shift;
    QPushButton* m_space;
    QPushButton* m_backspace;
    QPushButton* m_clear;
    QPushButton* m_enter;
};

} // namespace KZ
