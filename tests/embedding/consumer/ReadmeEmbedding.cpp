// The includes and the statements of the README's block on embedding, letter by letter, in the
// surroundings that it takes for granted; compiled and linked, never run.
#include "includes.inc"

void embed(GW::CAuthClient& authClient, GW::CUserConfig& userConfig, GW::CConfig& config,
           GW::CMsgService& msgService, GW::CTimeService& timeService, QWidget* mainWindow)
{
#include "statements.inc"
}
