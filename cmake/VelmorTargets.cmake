# Settings and helpers that all targets share.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/archive")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

find_program(VELMOR_CCACHE ccache)
if(VELMOR_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Precompiled headers hit the cache only with these; the base folder lets several checkouts share it.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env
        "CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime"
        "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" "CCACHE_NOHASHDIR=1" "${VELMOR_CCACHE}")
endif()

add_library(velmor_settings INTERFACE)
target_compile_options(velmor_settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Werror)
target_include_directories(velmor_settings INTERFACE "${CMAKE_SOURCE_DIR}")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # False alarms of this compiler's optimiser passes on library code.
    target_compile_options(velmor_settings INTERFACE -Wno-maybe-uninitialized -Wno-stringop-overflow
                           -Wno-stringop-overread -Wno-array-bounds -Wno-restrict -Wno-dangling-pointer)
    target_compile_options(velmor_settings INTERFACE $<$<BOOL:${VELMOR_CCACHE}>:-fpch-preprocess>)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Clang also calls it shadowing when a nested class has a parameter of an outer member's name.
    target_compile_options(velmor_settings INTERFACE -Wno-shadow)
endif()
if(VELMOR_SANITIZE)
    add_compile_options(-fsanitize=${VELMOR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${VELMOR_SANITIZE})
endif()
if(VELMOR_FUZZ)
    # Coverage of the code under test is what leads the fuzzer on.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# velmor_library(NAME [QT] [LINK lib...] [PRIVATE lib...]): a static library of all sources of this folder.
function(velmor_library NAME)
    cmake_parse_arguments(ARG "QT;RECURSE" "" "LINK;PRIVATE" ${ARGN})
    if(ARG_RECURSE)
        file(GLOB_RECURSE SOURCES CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    else()
        file(GLOB SOURCES CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    endif()
    if(NOT SOURCES MATCHES "[.]cpp") # nothing to compile in this folder
        add_library(${NAME} INTERFACE)
        return()
    endif()
    add_library(${NAME} STATIC ${SOURCES})
    target_link_libraries(${NAME} PUBLIC velmor_contracts ${ARG_LINK} PRIVATE velmor_settings ${ARG_PRIVATE})
    if(ARG_QT)
        velmor_use_qt(${NAME})
    endif()
endfunction()

# velmor_precompiled(NAME [LINK lib...] HEADERS header...): headers that are compiled once for all programs that say
# REUSE_FROM NAME and velmor_like_precompiled.
function(velmor_precompiled NAME)
    cmake_parse_arguments(ARG "" "" "LINK;HEADERS" ${ARGN})
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/${NAME}.cpp" CONTENT "int main() {}\n")
    add_executable(${NAME} EXCLUDE_FROM_ALL "${CMAKE_BINARY_DIR}/${NAME}.cpp")
    target_link_libraries(${NAME} PRIVATE ${ARG_LINK} velmor_settings)
    target_precompile_headers(${NAME} PRIVATE ${ARG_HEADERS})
    velmor_like_precompiled(${NAME})
endfunction()

# One code model for all programs that share precompiled headers: the one that Qt asks for.
function(velmor_like_precompiled NAME)
    set_target_properties(${NAME} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${NAME} PRIVATE -fPIC)
endfunction()

# Qt with moc.
function(velmor_link_qt NAME)
    set_target_properties(${NAME} PROPERTIES AUTOMOC ON)
    target_link_libraries(${NAME} PUBLIC Qt6::Widgets)
    target_compile_definitions(${NAME} PRIVATE QT_NO_KEYWORDS)
endfunction()

# The same with a precompiled header of its own.
function(velmor_use_qt NAME)
    velmor_link_qt(${NAME})
    target_precompile_headers(${NAME} PRIVATE <QtWidgets>)
endfunction()

# velmor_test(NAME SOURCES file... [LINK lib...]): one test program, one ctest entry.
function(velmor_test NAME)
    cmake_parse_arguments(ARG "QT" "" "SOURCES;LINK" ${ARGN})
    add_executable(${NAME} ${ARG_SOURCES})
    target_link_libraries(${NAME} PRIVATE ${ARG_LINK} velmor_settings GTest::gmock_main)
    velmor_like_precompiled(${NAME})
    if(ARG_QT)
        velmor_link_qt(${NAME})
        target_precompile_headers(${NAME} REUSE_FROM velmor_qt_test_headers)
    else()
        target_precompile_headers(${NAME} REUSE_FROM velmor_test_headers)
    endif()
    add_test(NAME ${NAME} COMMAND ${NAME})
    set_tests_properties(${NAME} PROPERTIES TIMEOUT 600 ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;VELMOR_SOURCE_DIR=${CMAKE_SOURCE_DIR};VELMOR_BINARY_DIR=${CMAKE_BINARY_DIR};VELMOR_CONFIG_DIR=${CMAKE_BINARY_DIR}/test-config")
endfunction()
