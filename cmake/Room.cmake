# A room is a folder under src/ with one static library. Its target is named like the folder, with
# dashes: src/platform/files is platform-files. Every .cpp in the folder itself belongs to it.
#
#   lumisort_room(USES platform-files PkgConfig::VIPS)
#
# USES lists the rooms further down and the third-party targets; a header that shows a third-party
# type is the exception, so nothing here tells the two apart.
function(lumisort_room)
    cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE "/" "-" target ${folder})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    if(sources)
        add_library(${target} STATIC ${sources})
        target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
        target_link_libraries(${target} PUBLIC ${ROOM_USES})
    else()
        add_library(${target} INTERFACE)
        target_include_directories(${target} INTERFACE ${PROJECT_SOURCE_DIR}/src)
        target_link_libraries(${target} INTERFACE ${ROOM_USES})
    endif()
endfunction()

# A room with windows or what they are made of: besides the .cpp files, every .qml file and every .svg below
# icons/ belongs to its QML module. Whatever links the room has the module at qrc:/qt/qml.
#
#   lumisort_qml_room(Lumisort.Ui SINGLETONS Theme.qml USES Qt6::Quick)
function(lumisort_qml_room uri)
    cmake_parse_arguments(ROOM "" "" "USES;SINGLETONS" ${ARGN})
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE "/" "-" target ${folder})
    string(REPLACE "." "/" path ${uri})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    file(GLOB views RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.qml)
    file(GLOB icons RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/icons/*.svg)
    set_source_files_properties(${ROOM_SINGLETONS} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
    qt_add_library(${target} STATIC)
    # Views stay bytecode: as C++, which Qt 6.4 makes of them otherwise, bindings of colours read memory that
    # nobody wrote, and some statements are left out.
    set_target_properties(${target} PROPERTIES AUTOMOC ON AUTOMOC_COMPILER_PREDEFINES OFF
                                               QT_QMLCACHEGEN_ARGUMENTS --only-bytecode)
    qt_add_qml_module(${target} URI ${uri} VERSION 1.0 NO_PLUGIN DEPENDENCIES QtQml QtQml.Models QtQuick RESOURCE_PREFIX /qt/qml
                      OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml/${path}
                      SOURCES ${sources} QML_FILES ${views} RESOURCES ${icons})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    # What Qt generates of the views is little code below the same many headers: compiled together, in a tenth of
    # the time.
    get_target_property(compiled ${target} SOURCES)
    set(own ${compiled})
    list(FILTER own EXCLUDE REGEX /qmlcache/.*_qml\\.cpp$)
    set_source_files_properties(${own} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
    # What Qt generates for the module includes the room's headers by name alone.
    target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
    target_compile_definitions(${target} PUBLIC QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII
                               PRIVATE QT_NO_CAST_FROM_ASCII)
    # Ninja looks for new meta-objects only in the files that were there last time.
    set(seen ${CMAKE_CURRENT_BINARY_DIR}/${target}-sources.txt)
    set(before "")
    if(EXISTS ${seen})
        file(READ ${seen} before)
    endif()
    if(NOT before STREQUAL "${sources}")
        file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
        file(WRITE ${seen} "${sources}")
    endif()
    # Qt's generated code converts signs and shadows names.
    target_compile_options(${target} PRIVATE -Wno-conversion -Wno-shadow)
    target_link_libraries(${target} PUBLIC ${ROOM_USES})
    # Nothing calls the function that tells QML the module's types, and a linker leaves out of a static library
    # what nothing calls. This is its name as the compiler writes it.
    string(REPLACE "." "_" register qml_register_types_${uri})
    string(LENGTH ${register} length)
    target_link_options(${target} INTERFACE LINKER:--undefined=_Z${length}${register}v)
endfunction()

# The tests of one room: tests/<folder>/*.cpp become one GoogleTest program, and each test in it one
# entry of ctest.
#
#   lumisort_tests(USES library)
#   lumisort_tests(THREADS USES similarity)
#
# THREADS marks tests that share data between threads: `threaded-tests` builds them, and they carry the
# label "threads", under which the thread sanitizer runs them.
add_custom_target(threaded-tests)
function(lumisort_tests)
    cmake_parse_arguments(TESTS "THREADS" "" "USES" ${ARGN})
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE "/" "-" target ${folder})
    set(target ${target}-tests)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(${target} ${sources})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${target} PRIVATE ${TESTS_USES} test-support GTest::gmock GTest::gtest_main)
    set(label "")
    if(TESTS_THREADS)
        add_dependencies(threaded-tests ${target})
        set(label LABELS threads)
    endif()
    gtest_discover_tests(${target} TEST_PREFIX "${folder}: " DISCOVERY_TIMEOUT 120
                         PROPERTIES TIMEOUT 600 ${label})
endfunction()

# One benchmark program: benchmarks/<name>.cpp.
#
#   lumisort_benchmark(exact_copies USES similarity)
function(lumisort_benchmark name)
    cmake_parse_arguments(BENCH "" "" "USES" ${ARGN})
    add_executable(benchmark-${name} ${name}.cpp)
    target_link_libraries(benchmark-${name} PRIVATE ${BENCH_USES})
endfunction()
