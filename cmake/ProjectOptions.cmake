# Compiler settings that every target of the project shares, through one interface library.
option(AUTHSETTING_WERROR "Treat compiler warnings as errors" OFF)
option(AUTHSETTING_SANITIZE "Build with address and undefined-behaviour sanitizers" OFF)
option(AUTHSETTING_PCH "Precompile the Qt and Boost headers" ON)

add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_20)
target_include_directories(project_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(project_options INTERFACE -Wall -Wextra $<$<BOOL:${AUTHSETTING_WERROR}>:-Werror>)
target_compile_definitions(
    project_options
    INTERFACE QT_NO_CAST_TO_ASCII
              QT_NO_URL_CAST_FROM_STRING
              QT_NO_CAST_FROM_BYTEARRAY
              QT_USE_QSTRINGBUILDER
              # What the oldest supported Qt already discourages is not there at all.
              QT_DISABLE_DEPRECATED_BEFORE=0x060400
              # Boost.Bind's global placeholders would warn on every include.
              BOOST_BIND_GLOBAL_PLACEHOLDERS)
if(AUTHSETTING_SANITIZE)
    # The vptr check needs the type information of every Qt class, which Qt does not export.
    set(sanitize -fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=undefined)
    target_compile_options(project_options INTERFACE ${sanitize} -O1 -g1 -fno-omit-frame-pointer)
    target_link_options(project_options INTERFACE ${sanitize})
endif()

set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

# Applies the shared settings; every target of the project goes through here.
function(project_target target)
    target_link_libraries(${target} PRIVATE project_options)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_compile_features(${target} PUBLIC cxx_std_20)
    if(AUTHSETTING_PCH AND NOT ARGV1 STREQUAL "NO_PCH")
        target_precompile_headers(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/Precompiled.h)
    endif()
endfunction()
