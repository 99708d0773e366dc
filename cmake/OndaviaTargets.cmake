# ondavia_library(NAME PURE|QT DEPENDS <public targets> PRIVATE <private targets> SOURCES <files>)
#
# One room, one static library. DEPENDS is the room's line in the architecture: whatever is not
# named there cannot be included. PURE rooms see no Qt at all and can be fuzzed alone.
function(ondavia_library name kind)
    cmake_parse_arguments(ARG "" "" "DEPENDS;PRIVATE;SOURCES" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE})
    ondavia_configure(${name} ${kind})
endfunction()

# ondavia_program(NAME DEPENDS <targets> SOURCES <files>): an executable with Qt.
function(ondavia_program name)
    cmake_parse_arguments(ARG "" "" "DEPENDS;SOURCES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS})
    ondavia_configure(${name} QT)
endfunction()

# ondavia_test(NAME DEPENDS <targets> SOURCES <files> [GUI] [TIMEOUT <seconds>])
#
# A GoogleTest program that CTest runs with an event loop and in fresh folders; with GUI it has a
# QGuiApplication and the label "gui", and wants a display.
function(ondavia_test name)
    cmake_parse_arguments(ARG "GUI" "TIMEOUT" "DEPENDS;SOURCES" ${ARGN})
    if(NOT ARG_TIMEOUT)
        # Generous: under the sanitizers, on a machine that does other things too.
        set(ARG_TIMEOUT 600)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    if(ARG_GUI)
        set(support ondavia_test_support_gui)
        set(label gui)
    else()
        set(support ondavia_test_support)
        set(label headless)
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} ${support} GTest::gmock)
    ondavia_configure(${name} QT)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS ${label})
endfunction()

function(ondavia_configure name kind)
    if(kind STREQUAL "QT")
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
        target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_USE_QSTRINGBUILDER)
        target_precompile_headers(${name} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/pch_qt.h")
    elseif(kind STREQUAL "PURE")
        target_precompile_headers(${name} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/pch_pure.h")
    else()
        message(FATAL_ERROR "${name}: PURE or QT expected, got ${kind}")
    endif()
endfunction()
