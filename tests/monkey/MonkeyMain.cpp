// A user who does anything at all, for as long as is asked, and a client that answers as it likes.

#include "tests/monkey/Campaign.h"

#include <cstdlib>

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    monkey::Options options;
    if (!options.read(arguments))
        return EXIT_FAILURE;
    return monkey::Campaign(options).run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
