#pragma once

#include "kit/events/EventWidget.h"

#include <QVector>

/// A window that keeps every kit event that reaches it.
class EventRecorder : public KZ::CEventWidgetT<QWidget>
{
public:
    struct Record
    {
        int id;
        int param1;
        int param2;
        QString text;
        void* data;
    };

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override
    {
        records.append({eventId, param1, param2, text, data});
        return true;
    }

    int count(int eventId) const
    {
        int found = 0;
        for (const Record& record : records)
            found += record.id == eventId;
        return found;
    }

    QVector<Record> records;
};
