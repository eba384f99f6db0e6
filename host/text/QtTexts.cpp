#include "host/text/QtTexts.h"

#include "utils/LogCenter.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace host {

void installChineseQtTexts()
{
    auto* translator = new QTranslator(QCoreApplication::instance());
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (translator->load(QStringLiteral("qtbase_zh_CN"), folder))
        QCoreApplication::installTranslator(translator);
    else
        utils::CLogCenter::warning(QStringLiteral("no Chinese texts for Qt in %1").arg(folder));
}

} // namespace host
