#pragma once

#include "kit/KitExport.h"

#include <QValidator>

namespace KZ {

/// Takes control characters (NUL, line ends, tabs) out of whatever comes into a one-line editor;
/// a pasted text may bring them, and they cannot be seen.
class KZKIT_EXPORT CPlainTextValidator : public QValidator
{
    Q_OBJECT

public:
    explicit CPlainTextValidator(QObject* parent);

    State validate(QString& input, int& position) const override;
};

} // namespace KZ
