#pragma once

#include <QString>

namespace KZ {

/// What the user typed into a table cell, carried by EVENT_CELL_EDITED. The receiver may rewrite
/// the text, which the table then stores, or refuse it: the editor stays open with the text as
/// typed.
struct CCellEdit
{
    QString text;
    bool accepted = true;
};

} // namespace KZ
