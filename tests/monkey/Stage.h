#pragma once

#include <QApplication>
#include <QString>

namespace monkey {

class VirtualDispatcher;

/// The application of a process that runs episodes, on virtual time, with `folder` for whatever is
/// read and written.
class Stage
{
public:
    explicit Stage(const QString& folder);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    VirtualDispatcher& dispatcher() { return *m_dispatcher; }

private:
    /// Owned by the application.
    VirtualDispatcher* m_dispatcher;
    QApplication m_application;
};

} // namespace monkey
