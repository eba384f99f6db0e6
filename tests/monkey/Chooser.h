#pragma once

#include "tests/monkey/Action.h"

#include <functional>
#include <random>

class OpenDialog;
class QWidget;

namespace monkey {

class Hands;
class World;

/// Chooses what happens next: anything at all, but more often what gets somewhere, by a generator
/// that gives the same everywhere for the same seed and the same dialog.
class Chooser
{
public:
    Chooser(quint64 seed, const OpenDialog& dialog, const Hands& hands, const World& world);

    Action next();

private:
    int below(int bound);
    bool chance(int percent) { return below(100) < percent; }
    Action users();
    Action control();
    /// The next step of a user who means to grant something.
    Action towardsGrant();
    Action towardsGrantee();
    Action towardsState();
    /// A press on one of the controls in sight that are meant; anything at all without one.
    Action pressOne(const std::function<bool(const QWidget*)>& isMeant);
    Action key();
    Action typing();
    Action inMenu();
    Action inPasswordDialog();
    Action surroundings();
    Action answer();
    Action open();

    std::mt19937_64 m_random;
    const OpenDialog& m_dialog;
    const Hands& m_hands;
    const World& m_world;
    int m_nextFile = 1;
};

} // namespace monkey
