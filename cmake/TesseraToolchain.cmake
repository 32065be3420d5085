# SPDX-License-Identifier: MIT
# Language level, warnings, sanitizers, linker and output folders of every target.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(TESSERA_SANITIZE "" CACHE STRING "Value of -fsanitize=, empty for none")
set(TESSERA_TIMEOUT_SCALE 1 CACHE STRING "Factor on every time-out of a test; sanitized code is slower")

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../lib")

find_program(TESSERA_CCACHE ccache)
if(TESSERA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${TESSERA_CCACHE}")
endif()

find_program(TESSERA_MOLD mold)
if(TESSERA_MOLD)
    include(CheckCXXSourceCompiles)
    set(CMAKE_REQUIRED_LINK_OPTIONS -fuse-ld=mold)
    check_cxx_source_compiles("int main() { return 0; }" TESSERA_COMPILER_TAKES_MOLD)
    unset(CMAKE_REQUIRED_LINK_OPTIONS)
    if(TESSERA_COMPILER_TAKES_MOLD)
        add_link_options(-fuse-ld=mold)
    endif()
endif()

if(TESSERA_SANITIZE)
    add_compile_options(-fsanitize=${TESSERA_SANITIZE})
    add_link_options(-fsanitize=${TESSERA_SANITIZE})
    if(TESSERA_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()

# Warnings go to our own targets only (see tessera_own_target), never to what Qt's generators write for us.
set(TESSERA_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
