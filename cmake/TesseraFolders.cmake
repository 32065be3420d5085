# SPDX-License-Identifier: MIT
# The functions by which a folder becomes a target. A folder's CMakeLists.txt is a list of files and of the folders used.
#
#   tessera_support_library(SOURCES files... [LIBS libs...])             src/support -> libtessera-support.so
#   tessera_engine_headers()                                             src/engine  -> interface target tessera_engine
#   tessera_folder(NAME SOURCES files... [USES folders...] [LIBS libs...] [RESOURCES qrc...])
#                                                                        src/NAME    -> object library in libtessera.so
#   sim_folder(NAME SOURCES files... [LIBS libs...] [RESOURCES qrc...])  simengine/NAME -> object library in libmarkengine.so
#   tessera_program(NAME SOURCES files... [LIBS libs...] [RESOURCES qrc...])     an executable in bin/
#   tests_support_library(SOURCES files... [LIBS libs...])               tests/support -> static library linked to every test
#   tessera_test(NAME SOURCES files... [LIBS libs...] [LABELS labels...] [XVFB] [TIMEOUT seconds])
#   plain_test(NAME SOURCES files... [LIBS libs...] [LABELS labels...] [TIMEOUT seconds])     no Qt Test, no fixtures
#   tessera_bench(NAME SOURCES files... [LIBS libs...])
#   tessera_add_subfolders()                                             every folder below that has a CMakeLists.txt
#
# SOURCES lists headers too, so that moc sees them. The engine implements the boundary's QObject classes: the folder of
# simengine/ that does so lists their headers as "${TESSERA_ENGINE_DIR}/x.h".
#
# USES names the folders of src/ whose headers are included. engine/ and support/ may be used by all, and so may
# shell/mainwindow.h, the meeting point. scripts/check-includes holds a folder to its USES.

include(TesseraPrecompiled)

set(TESSERA_ENGINE_DIR "${PROJECT_SOURCE_DIR}/src/engine")

# Parses the arguments of the calling function into ARG_... and refuses what it does not know. options, one and many are
# lists of keywords without, with one and with several values.
macro(tessera_parse function options one many)
    cmake_parse_arguments(ARG "${options}" "${one}" "${many}" ${ARGN})
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "${function}: unknown argument: ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    if(ARG_KEYWORDS_MISSING_VALUES)
        message(FATAL_ERROR "${function}: nothing given for: ${ARG_KEYWORDS_MISSING_VALUES}")
    endif()
    # A misspelled keyword would pass for one more value of the list before it.
    foreach(value IN LISTS ARG_SOURCES ARG_USES ARG_LIBS ARG_LABELS ARG_RESOURCES)
        if(value MATCHES "^[A-Z_]+$")
            message(FATAL_ERROR "${function}: unknown keyword: ${value}")
        endif()
    endforeach()
    if(NOT ARG_SOURCES)
        message(FATAL_ERROR "${function}: SOURCES is missing")
    endif()
endmacro()

# Warnings and Qt's generators for a target whose sources are ours.
function(tessera_own_target target)
    target_compile_options(${target} PRIVATE ${TESSERA_WARNINGS})
    set_target_properties(${target} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
    if(TARGET check_includes)
        add_dependencies(${target} check_includes)
    endif()
endfunction()

# A test's own code is compiled once and run for seconds, so it is compiled quickly; what it tests keeps its level. Under the
# sanitizers that halves its time: undefined behaviour is looked for in the system, wrong accesses and races in the test too.
function(tessera_compile_test_quickly target)
    if(TESSERA_SANITIZE)
        target_compile_options(${target} PRIVATE -O0)
        if(TESSERA_SANITIZE MATCHES "undefined")
            target_compile_options(${target} PRIVATE -fno-sanitize=undefined)
        endif()
    else()
        target_compile_options(${target} PRIVATE -O1)
    endif()
endfunction()

# A folder below the build folder that shows the boundary headers and nothing else of src/, for targets that may see no more.
function(tessera_boundary_view variable)
    set(view "${PROJECT_BINARY_DIR}/boundary")
    file(MAKE_DIRECTORY "${view}")
    foreach(folder engine support)
        file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src/${folder}" "${view}/${folder}" SYMBOLIC)
    endforeach()
    set(${variable} "${view}" PARENT_SCOPE)
endfunction()

# The same for the launcher: of the simulator it sees the control header alone.
function(tessera_launcher_view variable)
    set(view "${PROJECT_BINARY_DIR}/launcher-view")
    file(MAKE_DIRECTORY "${view}/simengine")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/simengine/simcontrol.h" "${view}/simengine/simcontrol.h" SYMBOLIC)
    set(${variable} "${view}" PARENT_SCOPE)
endfunction()

function(tessera_add_subfolders)
    tessera_subfolders(folders)
    foreach(folder IN LISTS folders)
        add_subdirectory("${folder}")
    endforeach()
endfunction()

function(tessera_subfolders variable)
    file(GLOB lists RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt")
    list(TRANSFORM lists REPLACE "/CMakeLists.txt$" "")
    set(${variable} "${lists}" PARENT_SCOPE)
endfunction()

function(tessera_support_library)
    tessera_parse(tessera_support_library "" "" "SOURCES;LIBS" ${ARGN})
    add_library(tessera-support SHARED ${ARG_SOURCES})
    tessera_own_target(tessera-support)
    tessera_boundary_view(view)
    target_include_directories(tessera-support PUBLIC "${view}")
    target_link_libraries(tessera-support PUBLIC Qt5::Core PRIVATE ${ARG_LIBS})
    tessera_refuse_open_symbols(tessera-support)
    set_property(SOURCE version.cpp APPEND PROPERTY COMPILE_DEFINITIONS TESSERA_VERSION="${PROJECT_VERSION}")
endfunction()

function(tessera_engine_headers)
    if(ARGN)
        message(FATAL_ERROR "tessera_engine_headers: unknown argument: ${ARGN}")
    endif()
    add_library(tessera_engine INTERFACE)
    tessera_boundary_view(view)
    target_include_directories(tessera_engine INTERFACE "${view}")
    target_link_libraries(tessera_engine INTERFACE Qt5::Core Qt5::Gui Qt5::Widgets)
endfunction()

function(tessera_folder name)
    tessera_parse("tessera_folder(${name})" "" "" "SOURCES;USES;LIBS;RESOURCES" ${ARGN})
    set(target tessera_${name})
    add_library(${target} OBJECT ${ARG_SOURCES} ${ARG_RESOURCES})
    tessera_own_target(${target})
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${target} PUBLIC tessera_engine tessera-support Qt5::Widgets Qt5::Network Qt5::Concurrent Qt5::Svg
                                           ${ARG_LIBS})
    set_property(GLOBAL APPEND PROPERTY TESSERA_FOLDERS ${name})
    tessera_precompile(${target} library)
    foreach(used IN LISTS ARG_USES)
        set_property(GLOBAL APPEND PROPERTY TESSERA_USED_FOLDERS "${name}>${used}")
    endforeach()
endfunction()

function(sim_folder name)
    tessera_parse("sim_folder(${name})" "" "" "SOURCES;LIBS;RESOURCES" ${ARGN})
    set(target sim_${name})
    add_library(${target} OBJECT ${ARG_SOURCES} ${ARG_RESOURCES})
    tessera_own_target(${target})
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${target} PUBLIC tessera_engine tessera-support Qt5::Widgets Qt5::Svg Qt5::Sql Qt5::Network
                                           PkgConfig::SODIUM PkgConfig::POLYCLIPPING Threads::Threads ${CMAKE_DL_LIBS} ${ARG_LIBS})
    tessera_precompile(${target} library)
    set_property(GLOBAL APPEND PROPERTY SIM_FOLDERS ${name})
endfunction()

# A symbol that a library neither has nor links stops the build and not the program. The sanitizers' own symbols are in the
# program only, so that a library built with them may leave these open.
function(tessera_refuse_open_symbols target)
    if(NOT TESSERA_SANITIZE)
        target_link_options(${target} PRIVATE LINKER:-z,defs)
    endif()
endfunction()

# Makes the two shared libraries out of the folders that joined. A library without a folder is left out.
function(tessera_join_libraries)
    get_property(folders GLOBAL PROPERTY TESSERA_FOLDERS)
    get_property(sims GLOBAL PROPERTY SIM_FOLDERS)
    get_property(uses GLOBAL PROPERTY TESSERA_USED_FOLDERS)
    foreach(use IN LISTS uses)
        string(REGEX REPLACE "^.*>" "" used "${use}")
        if(NOT used IN_LIST folders)
            message(WARNING "src/: \"${use}\": no such folder has joined")
        endif()
    endforeach()
    if(sims)
        list(TRANSFORM sims PREPEND sim_)
        add_library(markengine SHARED)
        target_link_libraries(markengine PUBLIC tessera_engine tessera-support PRIVATE ${sims})
        set_target_properties(markengine PROPERTIES LINKER_LANGUAGE CXX)
        tessera_refuse_open_symbols(markengine)
    endif()
    if(folders)
        list(TRANSFORM folders PREPEND tessera_)
        add_library(tessera SHARED)
        target_include_directories(tessera INTERFACE "${PROJECT_SOURCE_DIR}/src")
        target_link_libraries(tessera PUBLIC tessera_engine tessera-support Qt5::Widgets Qt5::Network Qt5::Concurrent Qt5::Svg
                                      PRIVATE ${folders})
        if(TARGET markengine)
            target_link_libraries(tessera PRIVATE markengine)
        endif()
        set_target_properties(tessera PROPERTIES LINKER_LANGUAGE CXX)
        tessera_refuse_open_symbols(tessera)
    endif()
endfunction()

# The libraries of the system that exist in this configuration.
function(tessera_link_system target)
    foreach(library tessera markengine tessera-support)
        if(TARGET ${library})
            target_link_libraries(${target} PRIVATE ${library})
        endif()
    endforeach()
endfunction()

function(tessera_program name)
    tessera_parse("tessera_program(${name})" "" "" "SOURCES;LIBS;RESOURCES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES} ${ARG_RESOURCES})
    tessera_own_target(${name})
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE ${ARG_LIBS})
endfunction()

function(tests_support_library)
    tessera_parse(tests_support_library "" "" "SOURCES;LIBS" ${ARGN})
    add_library(tests_support STATIC ${ARG_SOURCES})
    tessera_own_target(tests_support)
    tessera_compile_test_quickly(tests_support)
    target_include_directories(tests_support PUBLIC "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}")
    target_link_libraries(tests_support PUBLIC tessera_engine tessera-support Qt5::Test Qt5::Widgets Qt5::Network ${ARG_LIBS})
    tessera_link_system(tests_support)
endfunction()

# Environment and properties that all tests share. A test that has no label of its own is a unit test.
function(tessera_register_test name timeout)
    set(labels ${ARGN})
    if(NOT labels)
        set(labels unit)
    endif()
    if(NOT timeout)
        set(timeout 120)
    endif()
    math(EXPR timeout "${timeout} * ${TESSERA_TIMEOUT_SCALE}")
    set(suppressions "${PROJECT_SOURCE_DIR}/tests/support/lsan.supp")
    set(home "${PROJECT_BINARY_DIR}/test-home")
    set(environment LC_ALL=C.UTF-8 TZ=UTC "XDG_CONFIG_HOME=${home}/${name}" "XDG_RUNTIME_DIR=${home}/runtime"
                    TESSERA_TIMEOUT_SCALE=${TESSERA_TIMEOUT_SCALE} "TESSERA_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
    file(MAKE_DIRECTORY "${home}/runtime")
    file(CHMOD "${home}/runtime" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    if(TESSERA_SANITIZE MATCHES "address")
        set(foreign "${PROJECT_SOURCE_DIR}/tests/support/asan.supp")
        list(APPEND environment "ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:strict_string_checks=1:suppressions=${foreign}"
                                "UBSAN_OPTIONS=print_stacktrace=1"
                                "LSAN_OPTIONS=print_suppressions=0:suppressions=${suppressions}")
    elseif(TESSERA_SANITIZE MATCHES "thread")
        list(APPEND environment "TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:suppressions=${PROJECT_SOURCE_DIR}/tests/support/tsan.supp")
    endif()
    if(TARGET ${name})
        foreach(label IN LISTS labels)
            set_property(GLOBAL APPEND PROPERTY TESSERA_TEST_LABELS ${label})
            set_property(GLOBAL APPEND PROPERTY TESSERA_TESTS_${label} ${name})
        endforeach()
    endif()
    set_tests_properties(${name} PROPERTIES LABELS "${labels}" TIMEOUT ${timeout} ENVIRONMENT "${environment}")
endfunction()

function(tessera_test name)
    tessera_parse("tessera_test(${name})" "XVFB" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    tessera_own_target(${name})
    tessera_compile_test_quickly(${name})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/tests"
                                               "${CMAKE_CURRENT_SOURCE_DIR}")
    if(TARGET tests_support)
        target_link_libraries(${name} PRIVATE tests_support)
    endif()
    tessera_link_system(${name})
    target_link_libraries(${name} PRIVATE tessera_engine Qt5::Test Qt5::Widgets Qt5::Network ${ARG_LIBS})
    tessera_precompile(${name} test)
    if(NOT TESSERA_PRECOMPILED)
        target_compile_options(${name} PRIVATE "SHELL:-include ${TESSERA_SCALED_TRIES}")
    endif()
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin/tests")
    if(ARG_XVFB)
        find_program(TESSERA_XVFB_RUN xvfb-run REQUIRED)
        add_test(NAME ${name} COMMAND "${TESSERA_XVFB_RUN}" -a -s "-screen 0 1920x1080x24" $<TARGET_FILE:${name}>)
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK xvfb)
        set(platform xcb)
    else()
        add_test(NAME ${name} COMMAND ${name})
        set(platform offscreen)
    endif()
    tessera_register_test(${name} "${ARG_TIMEOUT}" ${ARG_LABELS})
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT QT_QPA_PLATFORM=${platform})
endfunction()

function(plain_test name)
    tessera_parse("plain_test(${name})" "" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_compile_options(${name} PRIVATE ${TESSERA_WARNINGS})
    tessera_compile_test_quickly(${name})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE Threads::Threads ${ARG_LIBS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin/tests")
    add_test(NAME ${name} COMMAND ${name})
    tessera_register_test(${name} "${ARG_TIMEOUT}" ${ARG_LABELS})
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT QT_QPA_PLATFORM=offscreen)
endfunction()

function(tessera_bench name)
    tessera_parse("tessera_bench(${name})" "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    tessera_own_target(${name})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    tessera_link_system(${name})
    target_link_libraries(${name} PRIVATE tessera_engine Qt5::Widgets Qt5::Network ${ARG_LIBS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin/bench")
endfunction()
