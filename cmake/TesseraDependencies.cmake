# SPDX-License-Identifier: MIT
# Libraries of the system, all from Debian. What a folder needs beyond the common ones it names as LIBS.

find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Network Concurrent Svg Sql Qml Quick VirtualKeyboard)
if(BUILD_TESTING)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
endif()
find_package(PkgConfig REQUIRED)
pkg_check_modules(SODIUM REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(NETTLE REQUIRED IMPORTED_TARGET nettle)
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
# and so does the library that traces pictures
find_path(POTRACE_INCLUDE_DIR potracelib.h REQUIRED)
find_library(POTRACE_LIBRARY potrace REQUIRED)
add_library(Potrace::potrace UNKNOWN IMPORTED)
set_target_properties(Potrace::potrace PROPERTIES IMPORTED_LOCATION "${POTRACE_LIBRARY}"
                                                  INTERFACE_INCLUDE_DIRECTORIES "${POTRACE_INCLUDE_DIR}")
# and so does that of the codes
find_path(ZINT_INCLUDE_DIR zint.h REQUIRED)
find_library(ZINT_LIBRARY zint REQUIRED)
add_library(Zint::zint UNKNOWN IMPORTED)
set_target_properties(Zint::zint PROPERTIES IMPORTED_LOCATION "${ZINT_LIBRARY}"
                                            INTERFACE_INCLUDE_DIRECTORIES "${ZINT_INCLUDE_DIR}")
# so does the reader of DXF files
find_path(DXFLIB_INCLUDE_DIR dxflib/dl_dxf.h REQUIRED)
find_library(DXFLIB_LIBRARY dxflib REQUIRED)
add_library(Dxf::dxflib UNKNOWN IMPORTED)
set_target_properties(Dxf::dxflib PROPERTIES IMPORTED_LOCATION "${DXFLIB_LIBRARY}"
                                             INTERFACE_INCLUDE_DIRECTORIES "${DXFLIB_INCLUDE_DIR}")
pkg_check_modules(GOOGLEPINYIN REQUIRED IMPORTED_TARGET googlepinyin)
if(BUILD_TESTING)
    # readers of codes that are not of the encoder's making
    pkg_check_modules(ZBAR REQUIRED IMPORTED_TARGET zbar)
    pkg_check_modules(DMTX REQUIRED IMPORTED_TARGET libdmtx)
endif()
find_package(Threads REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
