# The one way to make a target:
#
#   tevora_add_library(<name> LAYER <layer> SOURCES <file>... [HEADERS <file>...]
#                      [DEPENDS <tevora target>...] [LIBRARIES <imported library>...] [QT])
#   tevora_add_executable(<name> ... as above ...)
#
# DEPENDS names targets of this program: configuring stops when one of them is not in a lower layer.
# LIBRARIES names libraries of others. QT runs moc and rcc and uses the shared precompiled header.
# What is declared here is also written to targets.txt in the build folder; a test holds every
# #include against it, and another one compiles each header alone.
include(Layers)
include(Sanitizers)

set_property(GLOBAL PROPERTY TEVORA_TARGETS "")

function(_tevora_declare name)
    cmake_parse_arguments(ARG "QT" "LAYER" "SOURCES;HEADERS;DEPENDS;LIBRARIES" ${ARGN})
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "${name}: unknown arguments ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    list(FIND TEVORA_LAYERS "${ARG_LAYER}" layer)
    if(layer EQUAL -1)
        message(FATAL_ERROR "${name}: unknown layer '${ARG_LAYER}'")
    endif()
    foreach(dependency IN LISTS ARG_DEPENDS)
        get_property(below GLOBAL PROPERTY "TEVORA_LAYER_${dependency}")
        if(NOT below)
            message(FATAL_ERROR "${name} depends on ${dependency}, which is not declared before it")
        endif()
        if(NOT below GREATER layer)
            message(FATAL_ERROR "${name} (${ARG_LAYER}) may not depend on ${dependency}: it is not in a lower layer")
        endif()
    endforeach()
    set_property(GLOBAL PROPERTY "TEVORA_LAYER_${name}" ${layer})
    set_property(GLOBAL APPEND PROPERTY TEVORA_TARGETS ${name})
    file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    set_property(GLOBAL PROPERTY "TEVORA_FOLDER_${name}" "${folder}")
    set_property(GLOBAL PROPERTY "TEVORA_DEPENDS_${name}" "${ARG_DEPENDS}")

    target_link_libraries(${name} PUBLIC tevora_flags ${ARG_DEPENDS} ${ARG_LIBRARIES})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}")
    if(ARG_QT)
        set_target_properties(${name} PROPERTIES AUTOMOC ON AUTORCC ON)
        tevora_use_qt_header(${name})
    endif()
endfunction()

# One precompiled header of common toolkit classes for all targets that use the toolkit's widgets. It must be
# compiled with the same definitions as its users, hence the common libraries.
set(TEVORA_QT_LIBRARIES Qt6::Widgets Qt6::OpenGL Qt6::OpenGLWidgets)

function(tevora_make_qt_header)
    file(WRITE "${CMAKE_BINARY_DIR}/qt_header.cpp" "")
    add_library(tevora_qt_header OBJECT "${CMAKE_BINARY_DIR}/qt_header.cpp")
    target_link_libraries(tevora_qt_header PUBLIC tevora_flags ${TEVORA_QT_LIBRARIES})
    target_precompile_headers(tevora_qt_header PRIVATE
        <QAbstractItemModel> <QAction> <QApplication> <QComboBox> <QDialog> <QEvent> <QLabel> <QMainWindow>
        <QMenu> <QMouseEvent> <QObject> <QOpenGLWidget> <QPainter> <QPointer> <QSettings> <QString>
        <QTreeView> <QVariant> <QWidget> <cmath> <functional> <map> <memory> <string> <vector>)
endfunction()

function(tevora_use_qt_header name)
    target_link_libraries(${name} PUBLIC ${TEVORA_QT_LIBRARIES})
    target_precompile_headers(${name} REUSE_FROM tevora_qt_header)
endfunction()

function(tevora_add_library name)
    cmake_parse_arguments(ARG "QT" "LAYER" "SOURCES;HEADERS;DEPENDS;LIBRARIES" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES} ${ARG_HEADERS})
    _tevora_declare(${name} ${ARGN})
endfunction()

function(tevora_add_executable name)
    cmake_parse_arguments(ARG "QT" "LAYER" "SOURCES;HEADERS;DEPENDS;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES} ${ARG_HEADERS})
    _tevora_declare(${name} ${ARGN})
    tevora_use_sanitizer(${name} DRAWS)
endfunction()

# Writes one line per target: name, folder, layer, dependencies (comma separated).
function(tevora_finish_targets)
    get_property(targets GLOBAL PROPERTY TEVORA_TARGETS)
    set(lines "")
    foreach(name IN LISTS targets)
        get_property(folder GLOBAL PROPERTY "TEVORA_FOLDER_${name}")
        get_property(layer GLOBAL PROPERTY "TEVORA_LAYER_${name}")
        get_property(depends GLOBAL PROPERTY "TEVORA_DEPENDS_${name}")
        list(GET TEVORA_LAYERS ${layer} layerName)
        list(JOIN depends "," depends)
        string(APPEND lines "${name}|${folder}|${layerName}|${depends}\n")
    endforeach()
    file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/targets.txt" CONTENT "${lines}")
endfunction()
