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

# ondavia_test(NAME DEPENDS <targets> SOURCES <files> [GUI] [THREADS] [TIMEOUT <seconds>] [COST <seconds>])
#
# A GoogleTest program that CTest runs with an event loop and in fresh folders; with GUI it has a
# QGuiApplication and the label "gui", and runs on a display of its own. With THREADS what it tests runs on several
# threads: it has the label "threads", belongs to the target thread_tests, and runs under the thread sanitizer too.
# COST is about how long it takes: the longest begin first, so that none of them is the last one, alone.
function(ondavia_test name)
    cmake_parse_arguments(ARG "GUI;THREADS" "TIMEOUT;COST" "DEPENDS;SOURCES" ${ARGN})
    if(NOT ARG_TIMEOUT)
        # Generous: under the sanitizers, on a machine that does other things too.
        set(ARG_TIMEOUT 1800)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    if(ARG_GUI)
        set(support ondavia_test_support_gui)
        set(label gui)
        set(runner "${PROJECT_SOURCE_DIR}/scripts/on-display")
    else()
        set(support ondavia_test_support)
        set(label headless)
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} ${support} GTest::gmock)
    ondavia_configure(${name} TEST)
    add_test(NAME ${name} COMMAND ${runner} $<TARGET_FILE:${name}>)
    if(ARG_THREADS)
        list(APPEND label threads)
        add_dependencies(thread_tests ${name})
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${label}")
    if(ARG_COST)
        set_tests_properties(${name} PROPERTIES COST ${ARG_COST})
    endif()
endfunction()

add_custom_target(thread_tests)

# ondavia_configure(NAME PURE|QT|TEST): what every target of a kind has in common.
#
# Each kind has one precompiled header, made once in a target of its own and reused by all others.
function(ondavia_configure name kind)
    if(kind STREQUAL "PURE")
        target_precompile_headers(${name} REUSE_FROM ondavia_pch_pure)
        return()
    endif()
    target_compile_definitions(${name} PRIVATE ${ONDAVIA_QT_DEFINITIONS})
    if(kind STREQUAL "QT")
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
        target_precompile_headers(${name} REUSE_FROM ondavia_pch_qt)
    elseif(kind STREQUAL "TEST")
        target_precompile_headers(${name} REUSE_FROM ondavia_pch_test)
    else()
        message(FATAL_ERROR "${name}: PURE, QT or TEST expected, got ${kind}")
    endif()
endfunction()

set(ONDAVIA_QT_DEFINITIONS QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_USE_QSTRINGBUILDER)

# ondavia_precompile(KIND HEADER <libraries>)
function(ondavia_precompile kind header)
    add_library(ondavia_pch_${kind} OBJECT "${CMAKE_SOURCE_DIR}/cmake/pch.cpp")
    target_precompile_headers(ondavia_pch_${kind} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/${header}")
    target_link_libraries(ondavia_pch_${kind} PRIVATE ${ARGN})
    if(NOT kind STREQUAL "pure")
        target_compile_definitions(ondavia_pch_${kind} PRIVATE ${ONDAVIA_QT_DEFINITIONS})
    endif()
endfunction()

ondavia_precompile(pure pch_pure.h)
if(NOT ONDAVIA_FUZZ)
    ondavia_precompile(qt pch_qt.h Qt6::Core QCoro6::Core)
    ondavia_precompile(test pch_test.h Qt6::Core QCoro6::Core GTest::gtest GTest::gmock)
endif()
