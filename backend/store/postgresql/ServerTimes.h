#pragma once

#include <chrono>

/// How long the parts of a conversation with the server may take. Together they make sure that a
/// client knows within 15 s that its server is gone: 5 s until the next look, 5 s for the look to
/// fail, or 8 s for a request, 5 s for
/// one more connection and 1 s for a last attempt.
namespace backend::servertimes {

using namespace std::chrono_literals;

/// Between two looks for changes that no notice told of.
inline constexpr std::chrono::milliseconds lookInterval = 5s;
/// For a look, or for reading what changed.
inline constexpr std::chrono::milliseconds look = 5s;
inline constexpr std::chrono::milliseconds listen = 2s;
/// For one attempt at a request.
inline constexpr std::chrono::milliseconds request = 8s;
inline constexpr std::chrono::milliseconds lastAttempt = 1s;
/// After which no further attempt is begun.
inline constexpr std::chrono::milliseconds attempts = 10s;
/// Before the second attempt; it doubles up to a second.
inline constexpr std::chrono::milliseconds firstPause = 20ms;
/// Between attempts to find the server again; it doubles up to the longest.
inline constexpr std::chrono::milliseconds firstRetry = 250ms;
inline constexpr std::chrono::milliseconds longestRetry = 5s;
/// After the server refused the login, which nothing but an administrator mends.
inline constexpr std::chrono::milliseconds refusedRetry = 30s;

} // namespace backend::servertimes
