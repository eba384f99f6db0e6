set(services_SOURCES
    Account.cpp Account.h AccountInfo.cpp AccountInfo.h AccountKey.cpp AccountKey.h
    AuthClient.cpp AuthClient.h AuthDetail.h AuthLimit.cpp AuthLimit.h AuthType.cpp AuthType.h
    BrokerInfo.h Config.cpp Config.h MsgLevel.h MsgService.cpp MsgService.h MsgType.h
    PlatformInfo.h Services.cpp Services.h TimeService.cpp TimeService.h UserConfig.cpp
    UserConfig.h)
