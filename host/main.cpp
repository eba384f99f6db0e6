#include "backend/config/ExchangeZoneSetting.h"
#include "host/HostApplication.h"
#include "host/client/ProgramTheme.h"
#include "host/demo/DemoStore.h"
#include "host/options/HostOptionsParser.h"
#include "host/options/StoreChoice.h"
#include "host/text/QtTexts.h"
#include "host/tour/runTour.h"
#include "utils/ExchangeTimeZone.h"

#include <QApplication>
#include <QMessageBox>
#include <QStandardPaths>

#include <cstdio>
#include <optional>

namespace {

enum ExitCode { ExitSuccess = 0, ExitBadOptions = 2, ExitNoStore = 3 };

void write(std::FILE* stream, const QString& text)
{
    std::fputs(text.toUtf8().constData(), stream);
    std::fputc('\n', stream);
}

void setUpProgram()
{
    QCoreApplication::setApplicationName(QStringLiteral("authsetting-host"));
    host::installChineseQtTexts();
}

/// Reads the options before the windows system starts, because it reads the scale at its start.
/// Returns the exit code when the program has nothing more to do.
std::optional<int> readOptions(int argc, char** argv, host::HostOptions* options)
{
    const QCoreApplication application(argc, argv);
    setUpProgram();
    const QString settings = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
                             QStringLiteral("/settings.ini");
    utils::setExchangeTimeZone(backend::readExchangeTimeZone(settings));

    host::HostOptionsParser parser;
    if (!parser.parse(QCoreApplication::arguments())) {
        write(stderr, parser.error() + QStringLiteral(" --help 列出所有选项。"));
        return ExitBadOptions;
    }
    if (parser.helpWanted()) {
        write(stdout, parser.helpText());
        return ExitSuccess;
    }
    *options = parser.options();
    return std::nullopt;
}

int reportNoStore(const QString& reason)
{
    write(stderr, reason);
    QMessageBox::critical(nullptr, QStringLiteral("交易客户端"), reason);
    return ExitNoStore;
}

} // namespace

int main(int argc, char** argv)
{
    host::HostOptions options;
    if (const std::optional<int> exitCode = readOptions(argc, argv, &options))
        return *exitCode;
    if (options.scale > 0.0)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(options.scale));

    QApplication application(argc, argv);
    setUpProgram();
    // The sign-in window closes before the client window opens.
    QApplication::setQuitOnLastWindowClosed(false);
    KZ::CUiResource::setTheme(options.theme);
    const host::ProgramTheme theme;
    if (options.tour)
        return host::runTour(options);

    QString error;
    const std::optional<backend::StoreOptions> store = host::storeOptions(options, &error);
    if (!store)
        return reportNoStore(error);
    host::HostApplication client(options, *store, host::DemoStore::standardFolder());
    error = client.start();
    if (!error.isEmpty())
        return reportNoStore(error);
    QObject::connect(&client, &host::HostApplication::finished, &application,
                     &QCoreApplication::quit);
    return QApplication::exec();
}
