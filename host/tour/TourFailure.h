#pragma once

#include <QString>

#include <stdexcept>

namespace host {

/// Ends the tour: a step did not do what it has to.
class TourFailure : public std::runtime_error
{
public:
    /// `text` says what was expected and what was there, in Chinese.
    explicit TourFailure(const QString& text) : std::runtime_error(text.toStdString()) {}
};

} // namespace host
