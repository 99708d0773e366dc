# ondavia_qml_library(NAME URI <module> DEPENDS <public targets> PRIVATE <private targets> SOURCES <files>
#                     QML <files> SINGLETONS <QML files> RESOURCES <files> USES <QML modules>)
#
# A room with QML in it: one static library and one QML module, whose compiled documents lie under
# qrc:/qt/qml. USES names the rooms' modules whose types stand in the interfaces of this one's C++ classes.
# Who shows the module calls its registration, since nothing in a static library registers by itself.
function(ondavia_qml_library name)
    cmake_parse_arguments(ARG "" "URI" "DEPENDS;PRIVATE;SOURCES;QML;SINGLETONS;RESOURCES;USES" ${ARGN})
    # QCoro is for the precompiled header.
    ondavia_library(${name} QT
        DEPENDS ${ARG_DEPENDS} Qt6::Quick
        PRIVATE ${ARG_PRIVATE} QCoro6::Coro
        SOURCES ${ARG_SOURCES})
    # The generated registration names headers without their folders.
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    if(ARG_SINGLETONS)
        set_source_files_properties(${ARG_SINGLETONS} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
    endif()
    qt_add_qml_module(${name}
        URI ${ARG_URI}
        VERSION 1.0
        DEPENDENCIES QtQuick ${ARG_USES}
        NO_PLUGIN
        RESOURCE_PREFIX /qt/qml
        QML_FILES ${ARG_QML} ${ARG_SINGLETONS}
        RESOURCES ${ARG_RESOURCES})
    # What the QML compiler writes is not ours to make warning-free, nor to search for faults. Its documents are
    # compiled as one file: each alone would read the same headers of Qt once more.
    get_target_property(sources ${name} SOURCES)
    list(FILTER sources INCLUDE REGEX "qmlcache|qmltyperegistrations")
    set(unit "${CMAKE_CURRENT_BINARY_DIR}/${name}_documents.cpp")
    set_source_files_properties(${sources} "${unit}" PROPERTIES COMPILE_OPTIONS "-w")
    if(ONDAVIA_SANITIZE)
        set_source_files_properties(${sources} "${unit}" PROPERTIES
            COMPILE_OPTIONS "-w;-O0;-fno-sanitize=all" SKIP_PRECOMPILE_HEADERS ON)
    endif()
    list(FILTER sources INCLUDE REGEX "qmlcache/.*_qml\\.cpp$")
    set_source_files_properties(${sources} PROPERTIES HEADER_FILE_ONLY ON)
    list(TRANSFORM sources REPLACE "^.*/(\\.rcc/.*)$" "#include \"\\1\"\n")
    list(JOIN sources "" includes)
    file(CONFIGURE OUTPUT "${unit}" CONTENT "${includes}" @ONLY)
    target_sources(${name} PRIVATE "${unit}")
endfunction()
