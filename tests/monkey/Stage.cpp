#include "tests/monkey/Stage.h"

#include "tests/monkey/VirtualDispatcher.h"
#include "tests/monkey/Warnings.h"

#include <QDir>
#include <QFile>

namespace monkey {

namespace {

char s_name[] = "monkey_test";
char* s_words[] = {s_name, nullptr};
int s_count = 1;

VirtualDispatcher* prepare(const QString& folder)
{
    // The file dialog keeps settings of its own, and looks at the current folder.
    qputenv("XDG_CONFIG_HOME", folder.toUtf8());
    qputenv("XDG_RUNTIME_DIR", folder.toUtf8());
    QDir::setCurrent(folder);
    QFile(QStringLiteral("received.taa")).open(QIODevice::WriteOnly);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    auto* dispatcher = new VirtualDispatcher;
    QCoreApplication::setEventDispatcher(dispatcher);
    return dispatcher;
}

} // namespace

Stage::Stage(const QString& folder) : m_dispatcher(prepare(folder)), m_application(s_count, s_words)
{
    QApplication::setQuitOnLastWindowClosed(false);
    Warnings::collect();
}

Stage::~Stage() = default;

} // namespace monkey
