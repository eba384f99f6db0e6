set(subusers_SOURCES
    AuthSettingRestrictedUsersManageTabPage.cpp AuthSettingRestrictedUsersManageTabPage.h
    AuthSettingSingleRestrictedUserGeneralTabPage.cpp
    AuthSettingSingleRestrictedUserGeneralTabPage.h BurstGate.cpp BurstGate.h PendingGrant.h
    PendingGrants.cpp PendingGrants.h RestrictedUserForm.cpp RestrictedUserForm.h
    RestrictedUserTable.cpp RestrictedUserTable.h
    SingleRestrictedUserGrants.cpp SubUserPassword.cpp SubUserPassword.h)
