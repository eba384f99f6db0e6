#pragma once

#include "authsetting/authorize/GrantRequest.h"

#include <QObject>
#include <QVector>

#include <boost/shared_ptr.hpp>

class QWidget;

namespace GW {

/// The grants that one page has asked for, until their outcome was shown. Results carry only the
/// page's tag, so a result is told by its values whose it is; the dialog may have been closed while
/// a request was out, and another made since. GUI thread only.
class CGrantRequests
{
public:
    using Pointer = boost::shared_ptr<CGrantRequest>;

    /// Takes a request that goes out now. An earlier one that it repeats wholly is forgotten: the
    /// results of both are those of the later.
    void begin(const Pointer& request);

    /// The request that a result with these values answers: of several the latest that still waits
    /// for it, else the latest; null when there is none.
    Pointer find(const QString& key, const QString& grantee, const CAuthLimit& limit,
                 bool toServer) const;
    /// The same for a result that carries the tag of `page`; null for one that it did not ask for.
    /// Alone, outside the dialog, a page takes every such result: it counts for the present
    /// request, or else for one with `path` and `password` that asks for nothing.
    Pointer takeResult(const QWidget* page, const QString& key, const QString& grantee,
                       const CAuthLimit& limit, bool toServer, const QString& path,
                       const QString& password) const;
    /// The request begun last, null when its outcome was shown already.
    Pointer present() const;
    /// Whether the dialog waits for this request, and not for one that was begun since.
    bool isAwaited(const Pointer& request) const;

    /// The outcome was shown: the request is forgotten on the return to the event loop, because its
    /// last result may be delivered more than once.
    void end(const Pointer& request);

private:
    QVector<Pointer> m_open;
    QVector<Pointer> m_ended;
    Pointer m_present;
    /// What is put off ends with this object.
    QObject m_context;
};

} // namespace GW
