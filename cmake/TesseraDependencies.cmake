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

# tessera_plain_library(TARGET NAME HEADER): a library that comes without a package file.
function(tessera_plain_library target name header)
    string(TOUPPER "${name}" prefix)
    find_path(${prefix}_INCLUDE_DIR "${header}" REQUIRED)
    find_library(${prefix}_LIBRARY "${name}" REQUIRED)
    add_library(${target} UNKNOWN IMPORTED GLOBAL)
    set_target_properties(${target} PROPERTIES IMPORTED_LOCATION "${${prefix}_LIBRARY}"
                                               INTERFACE_INCLUDE_DIRECTORIES "${${prefix}_INCLUDE_DIR}")
endfunction()

tessera_plain_library(Hershey::font hersheyfont hersheyfont.h) # single-line fonts
tessera_plain_library(Potrace::potrace potrace potracelib.h)   # pictures traced to outlines
tessera_plain_library(Zint::zint zint zint.h)                  # bar and matrix codes
tessera_plain_library(Dxf::dxflib dxflib dxflib/dl_dxf.h)      # the reader of DXF files
pkg_check_modules(GOOGLEPINYIN REQUIRED IMPORTED_TARGET googlepinyin)
if(BUILD_TESTING)
    # readers of codes that are not of the encoder's making
    pkg_check_modules(ZBAR REQUIRED IMPORTED_TARGET zbar)
    pkg_check_modules(DMTX REQUIRED IMPORTED_TARGET libdmtx)
endif()
find_package(Threads REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
