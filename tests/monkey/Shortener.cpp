#include "tests/monkey/Shortener.h"

#include <algorithm>

namespace monkey {

Script shortened(Script script, const std::function<bool(const Script&)>& stillFails, int tries)
{
    qsizetype part = std::max<qsizetype>(script.size() / 2, 1);
    while (tries > 0) {
        bool isShorter = false;
        // From the end, because what fails needs the least of what came just before.
        for (qsizetype end = script.size(); end > 0 && tries > 0; end -= part) {
            const qsizetype begin = std::max<qsizetype>(end - part, 0);
            if (end > script.size())
                continue;
            Script shorter = script;
            shorter.remove(begin, end - begin);
            --tries;
            if (!shorter.isEmpty() && stillFails(shorter)) {
                script = shorter;
                isShorter = true;
            }
        }
        if (part > 1)
            part = std::max<qsizetype>(part / 2, 1);
        else if (!isShorter)
            break;
    }
    return script;
}

} // namespace monkey
