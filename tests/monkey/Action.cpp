#include "tests/monkey/Action.h"

#include <QFile>
#include <QTextStream>

#include <array>

namespace monkey {

namespace {

constexpr std::array names{
    "press-at",     "press-widget", "press-cell", "press-node", "press-tab",  "double-click",
    "move-to",      "release",      "wheel",      "key",        "type",       "choose-file",
    "open",         "close",        "theme",      "advance",    "next-day",   "set-state",
    "add",          "remove",       "rename",     "hide",       "add-user",   "remove-user",
    "toggle-user",  "tell",         "answer",     "forget",     "fail-files", "reload-in-read",
    "answer-inside"};
static_assert(names.size() == Action::KindCount);

} // namespace

QString Action::toLine() const
{
    QString line = QStringLiteral("%1 %2 %3 %4")
                       .arg(QLatin1String(names[static_cast<std::size_t>(kind)]))
                       .arg(a)
                       .arg(b)
                       .arg(c);
    if (!text.isEmpty())
        line += u' ' + QString::fromLatin1(text.toUtf8().toPercentEncoding());
    return line;
}

std::optional<Action> Action::fromLine(const QString& line)
{
    const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
    if (words.size() < 4)
        return {};
    for (std::size_t kind = 0; kind < names.size(); ++kind) {
        if (words.at(0) != QLatin1String(names[kind]))
            continue;
        const QByteArray text = QByteArray::fromPercentEncoding(words.value(4).toLatin1());
        return Action{static_cast<Kind>(kind), words.at(1).toInt(), words.at(2).toInt(),
                      words.at(3).toInt(), QString::fromUtf8(text)};
    }
    return {};
}

Script readScript(const QString& path)
{
    QFile file(path);
    Script script;
    if (!file.open(QIODevice::ReadOnly))
        return script;
    QTextStream lines(&file);
    while (!lines.atEnd()) {
        const QString line = lines.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (const auto action = Action::fromLine(line))
            script.append(*action);
    }
    return script;
}

bool writeScript(const QString& path, const Script& script)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    for (const Action& action : script)
        file.write(action.toLine().toUtf8() + '\n');
    return true;
}

} // namespace monkey
