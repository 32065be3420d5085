# SPDX-License-Identifier: MIT
# Headers that nearly every file reads, compiled once for all targets of a kind. More than half of the time of a first build goes
# into the toolkit's headers. Off by default: with them a file compiles that forgets an include, and a compiler cache is shared
# between checkouts only without them. test.sh and run.sh switch them on.

option(TESSERA_PRECOMPILED "Compile the toolkit's headers once for all targets" OFF)

set(TESSERA_PRECOMPILED_COMMON
    <algorithm> <array> <atomic> <chrono> <cmath> <condition_variable> <functional> <limits> <map> <memory> <mutex> <optional>
    <string> <thread> <utility> <variant> <vector>
    <QApplication> <QByteArray> <QCheckBox> <QComboBox> <QDateTime> <QDialog> <QDir> <QElapsedTimer> <QFile> <QFileInfo>
    <QHBoxLayout> <QHash> <QKeyEvent> <QLabel> <QLineEdit> <QList> <QMap> <QMessageBox> <QMouseEvent> <QObject> <QPainter>
    <QPainterPath> <QPointer> <QPointF> <QPushButton> <QRadioButton> <QSet> <QSpinBox> <QString> <QStringList> <QTableWidget>
    <QThread> <QTimer> <QTransform> <QVariant> <QVBoxLayout> <QVector> <QWidget>)
set(TESSERA_PRECOMPILED_TEST <QtTest> <QAction> <QDoubleSpinBox> <QMenu> <QProcess> <QRandomGenerator> <QSignalSpy> <QTabWidget>
                             <QTemporaryDir> <QToolBar> <QToolButton>)

# What every Qt test reads before its own text, precompiled or not.
set(TESSERA_SCALED_TRIES "${PROJECT_SOURCE_DIR}/tests/support/scaledtries.h")

# The target that compiles the headers of KIND, library or test; made with the first target that uses it.
function(tessera_precompiled_carrier kind)
    set(carrier tessera_precompiled_${kind})
    if(TARGET ${carrier})
        return()
    endif()
    set(source "${PROJECT_BINARY_DIR}/precompiled/${kind}.cpp")
    if(kind STREQUAL "test")
        file(CONFIGURE OUTPUT "${source}" CONTENT "int main() { return 0; }\n")
        add_executable(${carrier} "${source}")
        tessera_compile_test_quickly(${carrier})
        target_link_libraries(${carrier} PRIVATE tessera_engine Qt5::Test Qt5::Widgets Qt5::Network)
        target_include_directories(${carrier} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
        target_precompile_headers(${carrier} PRIVATE ${TESSERA_PRECOMPILED_COMMON} ${TESSERA_PRECOMPILED_TEST} ${TESSERA_SCALED_TRIES})
        set_target_properties(${carrier} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/precompiled")
    else()
        file(CONFIGURE OUTPUT "${source}" CONTENT "\n")
        add_library(${carrier} OBJECT "${source}")
        target_link_libraries(${carrier} PRIVATE tessera_engine Qt5::Widgets Qt5::Network)
        target_precompile_headers(${carrier} PRIVATE ${TESSERA_PRECOMPILED_COMMON})
    endif()
    target_compile_options(${carrier} PRIVATE ${TESSERA_WARNINGS})
endfunction()

# tessera_precompile(TARGET KIND): the target takes the headers of its kind. It must be compiled as the carrier is.
function(tessera_precompile target kind)
    if(NOT TESSERA_PRECOMPILED)
        return()
    endif()
    tessera_precompiled_carrier(${kind})
    target_precompile_headers(${target} REUSE_FROM tessera_precompiled_${kind})
endfunction()
