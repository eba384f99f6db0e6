#include "host/HostApplication.h"
#include "host/client/ClientWindow.h"
#include "host/options/HostOptionsParser.h"
#include "host/options/StoreChoice.h"
#include "host/text/QtTexts.h"
#include "tests/postgresql/DeskUser.h"

#include <QApplication>
#include <QTemporaryDir>

// The client at one desk, with a user who does what standard input says; see DeskUser. It takes the
// client's options.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::setApplicationName(QStringLiteral("desk_program"));
    host::installChineseQtTexts();
    host::HostOptionsParser parser;
    if (!parser.parse(QCoreApplication::arguments())) {
        qCritical("%s", qPrintable(parser.error()));
        return EXIT_FAILURE;
    }
    KZ::CUiResource::setTheme(parser.options().theme);
    const QTemporaryDir folder;
    QString error;
    std::optional<backend::StoreOptions> store = host::storeOptions(parser.options(), &error);
    if (store) {
        store->dataFolder = folder.path();
        store->cheapCryptographyForTests = true;
        host::HostApplication client(parser.options(), *store, folder.path());
        error = client.start();
        if (error.isEmpty()) {
            const DeskUser user(client);
            return QApplication::exec();
        }
    }
    qCritical("%s", qPrintable(error));
    return EXIT_FAILURE;
}
