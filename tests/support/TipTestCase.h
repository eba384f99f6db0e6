#pragma once

#include "tests/support/TestCase.h"

/// Base of the tests that make tips come up: a tip may outlive its page, so the open ones are
/// closed before the windows that are left are looked for.
class TipTestCase : public TestCase
{
    Q_OBJECT

protected Q_SLOTS:
    void cleanup();
};
