#include "kit/widgets/PlainTextValidator.h"

namespace KZ {

CPlainTextValidator::CPlainTextValidator(QObject* parent) : QValidator(parent) {}

QValidator::State CPlainTextValidator::validate(QString& input, int& position) const
{
    for (qsizetype i = input.size() - 1; i >= 0; --i) {
        if (input.at(i).category() != QChar::Other_Control)
            continue;
        input.remove(i, 1);
        if (position > i)
            --position;
    }
    return Acceptable;
}

} // namespace KZ
