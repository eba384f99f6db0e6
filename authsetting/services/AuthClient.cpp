#include "authsetting/services/AuthClient.h"

namespace GW {

namespace {

// Queued connections by name look the argument types up as the signals write them.
void registerSignalTypes()
{
    qRegisterMetaType<mbservice::CAccountInfo>("mbservice::CAccountInfo");
    qRegisterMetaType<CAuthLimit>("CAuthLimit");
    qRegisterMetaType<CAuthLimit>("GW::CAuthLimit");
}

} // namespace

CAuthClient::CAuthClient(QObject* parent) : QObject(parent)
{
    registerSignalTypes();
}

CAuthClient::~CAuthClient() = default;

} // namespace GW
