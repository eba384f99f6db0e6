#include "tests/support/TipTestCase.h"

#include "kit/tips/MessageTip.h"

void TipTestCase::cleanup()
{
    KZ::CMessageTip::closeAll();
    TestCase::cleanup();
}
