# SPDX-License-Identifier: MIT
# Renders the drawn pictures to PNG and packs them with the style sheet. Sets TESSERA_RESOURCES to the source file that
# holds them; to be included where the target is that takes it.

set(dir "${PROJECT_SOURCE_DIR}/resources")
set(out "${PROJECT_BINARY_DIR}/resources")
set(TESSERA_RESOURCES "${out}/qrc_tessera.cpp")
file(GLOB_RECURSE pictures CONFIGURE_DEPENDS "${dir}/icons/*.svg")

if(NOT TARGET render_icons)
    add_executable(render_icons "${dir}/render_icons.cpp")
    target_compile_options(render_icons PRIVATE ${TESSERA_WARNINGS})
    target_link_libraries(render_icons PRIVATE Qt5::Gui Qt5::Svg)
endif()

add_custom_command(OUTPUT "${TESSERA_RESOURCES}"
    COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 $<TARGET_FILE:render_icons>
            "${dir}/icons" "${dir}/myQSS.qss" "${out}"
    COMMAND Qt5::rcc --name tessera --output "${TESSERA_RESOURCES}" "${out}/tessera.qrc"
    DEPENDS render_icons "${dir}/myQSS.qss" ${pictures}
    COMMENT "Rendering the icons" VERBATIM)
set_source_files_properties("${TESSERA_RESOURCES}" PROPERTIES GENERATED ON SKIP_AUTOGEN ON)
