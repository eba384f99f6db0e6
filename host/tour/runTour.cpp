#include "host/tour/runTour.h"

#include "host/options/StoreChoice.h"
#include "host/tour/TourChapters.h"
#include "host/tour/TourFailure.h"
#include "host/tour/TourStage.h"
#include "host/tour/Watchdog.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QThread>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace host {

namespace {

enum ExitCode { ExitSuccess = 0, ExitTourFailed = 4, ExitTourHung = 5 };

constexpr std::chrono::minutes longestTour{8};

void walk(const HostOptions& options, const QString& folder)
{
    QString error;
    const std::optional<backend::StoreOptions> store = storeOptions(options, &error);
    if (!store)
        throw TourFailure(error);
    if (!QDir().mkpath(options.stepPictures))
        throw TourFailure(QStringLiteral("不能建立文件夹 %1").arg(options.stepPictures));
    TourScene scene{QDir(options.stepPictures)};
    TourClient client(scene, options, *store, folder);
    StoreWitness witness(client.storeOptions());
    TourStage stage{scene, client, witness};
    client.start();
    if (!options.pagePictures.isEmpty())
        drawPages(stage, options.pagePictures);
    const QString file = walkBatchGrants(stage);
    walkSingleAccount(stage);
    walkImport(stage, file);
    walkSubUsers(stage);
    walkAuditTrail(stage);
    witness.requireSound();
    std::fprintf(stdout, "导览完成：%d 张图片在 %s\n", scene.pictureCount(),
                 qPrintable(QDir(options.stepPictures).absolutePath()));
    std::fflush(stdout);
}

int walkReported(const HostOptions& options, const QString& folder)
{
    try {
        walk(options, folder);
        return ExitSuccess;
    } catch (const TourFailure& failure) {
        std::fprintf(stderr, "导览失败：%s\n", failure.what());
        return ExitTourFailed;
    }
}

} // namespace

int runTour(const HostOptions& options)
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        std::fprintf(stderr, "导览失败：%s\n", qPrintable(folder.errorString()));
        return ExitTourFailed;
    }
    const Watchdog watchdog(longestTour, [] {
        std::fputs("导览失败：超时\n", stderr);
        std::_Exit(ExitTourHung);
    });
    int exitCode = ExitTourFailed;
    const std::unique_ptr<QThread> user(QThread::create([&] {
        exitCode = walkReported(options, folder.path());
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
    }));
    user->start();
    QApplication::exec();
    user->wait();
    return exitCode;
}

} // namespace host
