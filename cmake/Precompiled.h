// Headers that most sources include anyway; only a matter of build time, never relied upon.
#pragma once

#include <QtCore/QtCore>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#ifdef QT_WIDGETS_LIB
#include <QtWidgets/QtWidgets>
#endif
