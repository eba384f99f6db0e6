#include "admin/command/AdminCommand.h"
#include "admin/command/AdminOptionsParser.h"
#include "admin/console/Console.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("authsetting-admin"));
    admin::AdminOptionsParser parser;
    if (!parser.parse(QCoreApplication::arguments())) {
        admin::complain(parser.error() + QStringLiteral(" --help 列出所有命令和选项。"));
        return admin::ExitBadOptions;
    }
    if (parser.helpWanted()) {
        admin::say(parser.helpText());
        return admin::ExitSuccess;
    }
    return admin::AdminCommand(parser.options()).run();
}
