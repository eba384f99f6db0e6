# What `cmake --install` gives a client team: the three shared libraries, the headers it writes
# against and the package files that find_package(AuthSetting) looks for.
include(CMakePackageConfigHelpers)

set(package_headers
    authsetting/AuthSettingExport.h
    authsetting/services/Account.h
    authsetting/services/AccountInfo.h
    authsetting/services/AccountKey.h
    authsetting/services/AuthClient.h
    authsetting/services/AuthDetail.h
    authsetting/services/AuthLimit.h
    authsetting/services/AuthType.h
    authsetting/services/BrokerInfo.h
    authsetting/services/Config.h
    authsetting/services/MsgLevel.h
    authsetting/services/MsgService.h
    authsetting/services/MsgType.h
    authsetting/services/PlatformInfo.h
    authsetting/services/Services.h
    authsetting/services/TimeService.h
    authsetting/services/UserConfig.h
    authsetting/shell/AuthSettingDialog.h
    authsetting/shell/AuthSettingIds.h
    authsetting/shell/AuthSettingNavigator.h
    authsetting/shell/NavigatorFiller.h
    kit/KitExport.h
    kit/dates/DateConversions.h
    kit/dialogs/BaseDialog.h
    kit/dialogs/CommonDialog.h
    kit/dialogs/CustomDialog.h
    kit/events/EventDeliverer.h
    kit/events/EventIds.h
    kit/events/EventWidget.h
    kit/resources/UiResource.h
    kit/resources/UiResourceChangeHandler.h
    utils/Clock.h
    utils/Digest.h
    utils/ExchangeTimeZone.h
    utils/LogCenter.h
    utils/UtilsExport.h)
# A folder of their own: names such as utils/Clock.h are not for everybody's include path.
set(package_include_folder ${CMAKE_INSTALL_INCLUDEDIR}/AuthSetting)
set(package_cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/AuthSetting)

foreach(header IN LISTS package_headers)
    get_filename_component(folder ${header} DIRECTORY)
    install(
        FILES ${PROJECT_SOURCE_DIR}/${header}
        DESTINATION ${package_include_folder}/${folder}
        COMPONENT AuthSetting)
endforeach()

install(
    TARGETS authutils kzkit authsetting
    EXPORT AuthSettingTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT AuthSetting
    INCLUDES
    DESTINATION ${package_include_folder})
# Before version 1 a minor version may change the interface, so it is part of the name that programs
# look for. The libraries find each other wherever the folder is moved to.
set_target_properties(
    authutils kzkit authsetting
    PROPERTIES VERSION ${PROJECT_VERSION}
               SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
               INSTALL_RPATH "$ORIGIN")

install(
    EXPORT AuthSettingTargets
    NAMESPACE AuthSetting::
    DESTINATION ${package_cmake_folder}
    COMPONENT AuthSetting)
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/AuthSettingConfig.cmake.in
    ${PROJECT_BINARY_DIR}/AuthSettingConfig.cmake INSTALL_DESTINATION ${package_cmake_folder})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/AuthSettingConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(
    FILES ${PROJECT_BINARY_DIR}/AuthSettingConfig.cmake
          ${PROJECT_BINARY_DIR}/AuthSettingConfigVersion.cmake
    DESTINATION ${package_cmake_folder}
    COMPONENT AuthSetting)
