# Language, warnings, ccache and the packages that every target may use.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_INCLUDE_CURRENT_DIR OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
# Where the QML tools find the modules of the other rooms.
set(QT_QML_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/qml")

option(ONDAVIA_BENCH "Build the benchmarks" OFF)
set(ONDAVIA_SANITIZE "" CACHE STRING "Value of -fsanitize= for every target, empty for none")
set(ONDAVIA_COVERAGE OFF CACHE BOOL "Instrument for gcov")

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND};-E;env;CCACHE_BASEDIR=${CMAKE_SOURCE_DIR};CCACHE_NOHASHDIR=1;CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime;${CCACHE}")
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    -fno-omit-frame-pointer -pthread)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 sees uninitialised coroutine frames and overlong copies of short strings where there
    # are none; -fpch-preprocess lets
    # ccache reuse precompiled headers.
    add_compile_options(-Wno-maybe-uninitialized -Wno-dangling-pointer
        -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -fpch-preprocess)
endif()
if(CMAKE_UNITY_BUILD)
    # Several files in one: what each of them keeps to itself looks as if it stood in a header.
    add_compile_options(-Wno-subobject-linkage)
endif()
if(ONDAVIA_SANITIZE)
    add_compile_options(-fsanitize=${ONDAVIA_SANITIZE} -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ONDAVIA_SANITIZE})
endif()
if(ONDAVIA_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(simdjson REQUIRED)
pkg_check_modules(icu REQUIRED IMPORTED_TARGET icu-uc icu-i18n)

if(NOT ONDAVIA_FUZZ)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Core Concurrent DBus Gui Network OpenGL Qml Quick QuickControls2 QuickTest Test)
    find_package(QCoro6 REQUIRED COMPONENTS Coro Core Network)
    qcoro_enable_coroutines()
    find_package(SQLiteCpp REQUIRED)
    find_package(GTest REQUIRED)
    find_package(CLI11 REQUIRED)
    pkg_check_modules(curl REQUIRED IMPORTED_TARGET libcurl)
    pkg_check_modules(egl REQUIRED IMPORTED_TARGET egl)
    pkg_check_modules(gio REQUIRED IMPORTED_TARGET gio-2.0)
    pkg_check_modules(libsecret REQUIRED IMPORTED_TARGET libsecret-1)
    pkg_check_modules(mpv REQUIRED IMPORTED_TARGET mpv)
    pkg_check_modules(pulse REQUIRED IMPORTED_TARGET libpulse)
    pkg_check_modules(httplib REQUIRED IMPORTED_TARGET cpp-httplib)
    pkg_check_modules(zlib REQUIRED IMPORTED_TARGET zlib)
endif()
