# SPDX-License-Identifier: MIT
# Libraries of the system, all from Debian. What a folder needs beyond the common ones it names as LIBS.

find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Network Concurrent Svg Sql Qml Quick VirtualKeyboard)
if(BUILD_TESTING)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
endif()
find_package(PkgConfig REQUIRED)
pkg_check_modules(SODIUM REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(POLYCLIPPING REQUIRED IMPORTED_TARGET polyclipping)
pkg_check_modules(X11 REQUIRED IMPORTED_TARGET x11)
find_package(QuaZip-Qt5 REQUIRED)
find_package(nlohmann_json REQUIRED)
# the library of the single-line fonts comes without a package file
find_path(HERSHEY_INCLUDE_DIR hersheyfont.h REQUIRED)
find_library(HERSHEY_LIBRARY hersheyfont REQUIRED)
add_library(Hershey::font UNKNOWN IMPORTED)
set_target_properties(Hershey::font PROPERTIES IMPORTED_LOCATION "${HERSHEY_LIBRARY}"
                                               INTERFACE_INCLUDE_DIRECTORIES "${HERSHEY_INCLUDE_DIR}")
pkg_check_modules(GOOGLEPINYIN REQUIRED IMPORTED_TARGET googlepinyin)
find_package(Threads REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
