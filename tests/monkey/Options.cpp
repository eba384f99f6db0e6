#include "tests/monkey/Options.h"

#include <QHash>

#include <cstdio>
#include <functional>

namespace monkey {

bool Options::read(const QStringList& arguments)
{
    const QHash<QString, std::function<void(const QString&)>> takers{
        {QStringLiteral("--seed"),
         [this](const QString& value) {
             seed = value.toULongLong();
             hasSeed = true;
         }},
        {QStringLiteral("--actions"),
         [this](const QString& value) { actions = value.toLongLong(); }},
        {QStringLiteral("--seconds"), [this](const QString& value) { seconds = value.toInt(); }},
        {QStringLiteral("--per-dialog"),
         [this](const QString& value) { perDialog = value.toInt(); }},
        {QStringLiteral("--script"), [this](const QString& value) { script = value; }},
        {QStringLiteral("--seeds"), [this](const QString& value) { seeds = value; }},
        {QStringLiteral("--without"),
         [this](const QString& value) { without = value.split(u','); }},
        {QStringLiteral("--tries"), [this](const QString& value) { tries = value.toInt(); }}};
    for (qsizetype index = 0; index < arguments.size(); ++index) {
        const QString& name = arguments.at(index);
        if (name == QStringLiteral("--collect")) {
            collects = true;
            continue;
        }
        const auto taker = takers.value(name);
        if (!taker || index + 1 == arguments.size()) {
            std::fputs("monkey_test [--seed N] [--actions N] [--seconds N] [--per-dialog N]\n"
                       "            [--script FILE] [--seeds FILE] [--without SORT,…]\n"
                       "            [--tries N] [--collect]\n",
                       stderr);
            return false;
        }
        taker(arguments.at(++index));
    }
    if (actions == 0 && seconds == 0)
        actions = perDialog;
    return true;
}

} // namespace monkey
