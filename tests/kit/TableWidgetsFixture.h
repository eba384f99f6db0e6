#pragma once

#include "kit/widgets/CheckBox.h"
#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/TableFixture.h"

/// A table whose rows have a number, a tick (identifier = row + 100) and a button (identifier =
/// row).
class TableWidgetsFixture : public TableFixture
{
public:
    /// Adds rows; `made` counts the buttons that their factories make.
    void fill(int rows, int* made = nullptr)
    {
        for (int i = 0; i < rows; ++i) {
            const int row = table->addRowBegin();
            table->setItemText(row, 0, QString::number(i));
            table->setItemCheckBox(row, 1, row + 100, false, true, 132);
            table->setItemWidget(
                row, 2,
                [row, made](QWidget* parent) {
                    if (made)
                        ++*made;
                    return new KZ::CSmallNormalButton(row, parent);
                },
                0x84);
            table->addRowEnd(true);
        }
    }

    KZ::CCheckBox* box(int row) const
    {
        return qobject_cast<KZ::CCheckBox*>(table->itemWidget(row, 1));
    }

    /// The button that stands over a row's cell, null when there is none to be seen.
    KZ::CSmallNormalButton* seen(int row) const
    {
        QWidget* const viewport = table->view()->viewport();
        for (QWidget* at = viewport->childAt(cellRect(row, 2).center()); at;
             at = at->parentWidget()) {
            if (auto* const button = qobject_cast<KZ::CSmallNormalButton*>(at))
                return button;
        }
        return nullptr;
    }
};
