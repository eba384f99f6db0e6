#include "authsetting/shell/RequestTag.h"

namespace GW {

namespace {

int tagNumber(const QWidget* page)
{
    return static_cast<int>(static_cast<quint32>(reinterpret_cast<quintptr>(page)));
}

} // namespace

QVariant requestTag(const QWidget* page)
{
    return QVariant(tagNumber(page));
}

bool isRequestOf(const QWidget* page, const QVariant& tag)
{
    return tag.toInt() == tagNumber(page);
}

} // namespace GW
