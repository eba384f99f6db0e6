#pragma once

#include "backend/client/Delivery.h"
#include "backend/client/ResultSink.h"

#include <QObject>
#include <QTimer>

#include <deque>
#include <memory>

namespace backend {

/// Hands deliveries to the pages in slices, so that thousands of results never hold up painting
/// and input, and goes on while a page runs a dialog of its own inside a result. GUI thread.
class ResultOutbox : public QObject
{
    Q_OBJECT

public:
    /// Longest slice per turn of the event loop, in milliseconds: half a frame at 60 Hz.
    static constexpr int sliceMs = 8;

    explicit ResultOutbox(ResultSink& sink);

    void add(std::shared_ptr<Delivery> delivery);

private:
    struct Entry
    {
        std::shared_ptr<Delivery> delivery;
        qsizetype next = 0;
        bool begun = false;
    };

    void turn();
    void step();

    ResultSink& m_sink;
    QTimer m_timer;
    std::deque<Entry> m_entries;
};

} // namespace backend
