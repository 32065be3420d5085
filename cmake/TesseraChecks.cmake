# SPDX-License-Identifier: MIT
# Checks of the sources that are part of every build.

# Each object of ours depends on this, so that a forbidden include stops the build and not only a test.
set(TESSERA_SCRIPTS_DIR "${CMAKE_CURRENT_LIST_DIR}/../scripts")
add_custom_target(check_includes ALL
    COMMAND "${Python3_EXECUTABLE}" "${TESSERA_SCRIPTS_DIR}/check-includes" --quiet "${PROJECT_SOURCE_DIR}"
    COMMENT "" VERBATIM)

# Makes the object library NAME that compiles every header of FOLDER alone, twice in a row, so that a header that leans on
# another's includes or has no guard fails. ROOT is the include root the headers are named from.
function(compile_headers_alone name)
    cmake_parse_arguments(ARG "" "ROOT;FOLDER" "LIBS" ${ARGN})
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "compile_headers_alone(${name}): unknown argument: ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    file(GLOB headers RELATIVE "${ARG_ROOT}" CONFIGURE_DEPENDS "${ARG_ROOT}/${ARG_FOLDER}/*.h")
    if(NOT headers)
        return()
    endif()
    set(units "")
    foreach(header IN LISTS headers)
        string(REPLACE "/" "_" unit "${header}")
        set(unit "${CMAKE_CURRENT_BINARY_DIR}/${name}/${unit}.cpp")
        file(CONFIGURE OUTPUT "${unit}" CONTENT "#include \"${header}\"\n#include \"${header}\" // the guard holds\n")
        list(APPEND units "${unit}")
    endforeach()
    add_library(${name} OBJECT ${units})
    target_include_directories(${name} PRIVATE "${ARG_ROOT}")
    target_compile_options(${name} PRIVATE ${TESSERA_WARNINGS})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS})
endfunction()
