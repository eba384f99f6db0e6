# Fails, naming each place, when a source includes a header of a layer above its own.
# Run as: cmake -DROOT=<source dir> -P CheckIncludes.cmake
cmake_minimum_required(VERSION 3.21)

set(layers utils kit authsetting backend admin host)
set(failures "")

foreach(layer IN LISTS layers)
    list(FIND layers ${layer} rank)
    file(GLOB_RECURSE sources ${ROOT}/${layer}/*.h ${ROOT}/${layer}/*.cpp)
    foreach(source IN LISTS sources)
        file(STRINGS ${source} includes REGEX "^#include \"")
        foreach(include IN LISTS includes)
            if(include MATCHES "^#include \"([a-z]+)/")
                list(FIND layers ${CMAKE_MATCH_1} included)
                if(included GREATER rank)
                    file(RELATIVE_PATH name ${ROOT} ${source})
                    string(APPEND failures "\n  ${name}: ${include}")
                endif()
            endif()
        endforeach()
    endforeach()
endforeach()

if(failures)
    message(FATAL_ERROR "Dependencies point from host down to utils only; these do not:${failures}")
endif()
